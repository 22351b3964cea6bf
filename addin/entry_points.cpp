// The exported entry points that Excel calls, one XLOPER pointer an argument. Each has a result record of its
// own, which lives as long as the library and is overwritten by the next call.
#include "addin/arity.h"
#include "addin/system.h"
#include "addin/xloper_reader.h"

#define RECORD XLOPER

namespace kestran {

static void evaluate(const Function& function, XLOPER* const* given, XLOPER& result) {
  const Answer answer = FrameReader<XloperReader>::evaluate(function, given);
  if (answer.is_number()) {
    result.type = xltypeNum;
    result.value.number = answer.number;
  } else {
    result.type = xltypeErr;
    result.value.error = static_cast<std::uint16_t>(answer.error);
  }
}

// Where each function stands in the catalogue.
enum {
#define FUNCTION(name, function, frame, pointers, description, names) place_of_##name,
#include "functions/function_list.h"
};

#define FUNCTION(name, function, frame, pointers, description, names)           \
  extern "C" KESTRAN_EXPORT XLOPER* EXCEL_STDCALL name(PARAMETERS_##pointers) { \
    static XLOPER result;                                                       \
    XLOPER* const given[] = {ARGUMENTS_##pointers};                             \
    evaluate(catalogue[place_of_##name], given, result);                        \
    return &result;                                                             \
  }
#include "functions/function_list.h"

}  // namespace kestran
