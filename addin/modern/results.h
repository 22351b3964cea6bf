// The records in which functions answer. Each is made for one call, marked for Excel to give back, and free
// again when it comes back through xlAutoFree12. So nothing belongs to a thread: one may end, and the library
// be unloaded, at any time. Single answers are held in records of the library, of which each thread has its
// own as long as there are few; arrays, and answers beyond that, in memory. Without memory the answer is a
// record that nobody writes to or frees: #VALUE!.
#pragma once

#include "addin/modern/system12.h"
#include "functions/answer.h"

namespace kestran {

void write_answer(const Answer& answer, XLOPER12& record);

/// A record that holds one answer.
XLOPER12* give(const Answer& answer);

/// A record with an array of elements yet to be written; null without memory.
XLOPER12* new_array(int rows, int columns);

/// What is answered without memory.
XLOPER12* no_memory();

/// Of a record that was not handed out.
void discard(XLOPER12* record);

extern "C" {
/// Takes back a record that a function answered with.
KESTRAN_EXPORT void EXCEL_STDCALL xlAutoFree12(XLOPER12* record);
}

}  // namespace kestran
