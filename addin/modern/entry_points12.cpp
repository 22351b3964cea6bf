// The exported entry points that Excel calls, on any thread, one XLOPER12 pointer an argument.
#include "addin/arity.h"
#include "addin/modern/excel12_call.h"
#include "addin/modern/results.h"
#include "addin/modern/spill.h"

#define RECORD XLOPER12

namespace kestran {

static XLOPER12* evaluate(const Function& function, XLOPER12* const* given) {
  if (wants_array(function, given)) return spill(function, given);
  return give(FrameReader<Xloper12Reader>::evaluate(function, given));
}

// Where each function stands in the catalogue.
enum {
#define FUNCTION(name, function, frame, pointers, description, names) place_of_##name,
#include "functions/function_list.h"
};

#define FUNCTION(name, function, frame, pointers, description, names)             \
  extern "C" KESTRAN_EXPORT XLOPER12* EXCEL_STDCALL name(PARAMETERS_##pointers) { \
    XLOPER12* const given[] = {ARGUMENTS_##pointers};                             \
    return evaluate(catalogue[place_of_##name], given);                           \
  }
#include "functions/function_list.h"

}  // namespace kestran
