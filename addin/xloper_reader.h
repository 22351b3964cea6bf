// The reader of the records that KESTRAN.xll gets.
#pragma once

#include "addin/excel_call.h"
#include "addin/record_reader.h"

namespace kestran {

struct XloperInterface {
  using Record = XLOPER;

  static bool to_array(XLOPER* given, XLOPER& cells) {
    return Excel(xlCoerce, &cells, 2, given, TempInt(xltypeMulti)) == xlretSuccess;
  }
  static void release(XLOPER& cells) { Excel(xlFree, nullptr, 1, &cells); }
};

using XloperReader = RecordReader<XloperInterface>;

}  // namespace kestran
