// The 81 exported entry points that Excel calls, one XLOPER pointer an argument. Each has a result record of
// its own, which lives as long as the library and is overwritten by the next call.
#include "addin/arity.h"
#include "addin/frame.h"
#include "addin/functions/asian.h"
#include "addin/functions/baskets.h"
#include "addin/functions/black_scholes.h"
#include "addin/functions/exotics.h"
#include "addin/functions/rates.h"
#include "addin/functions/strips.h"
#include "addin/system.h"

// The frames that function_list.h names.
#define Scalar(function) ScalarFrame<worksheet::function>
#define BasketRanges(function) RangeFrame<worksheet::function, Length::shortest, FirstCell::uncounted>
#define StripRanges(function) RangeFrame<worksheet::function, Length::last, FirstCell::uncounted>
#define CapRanges(function) RangeFrame<worksheet::function, Length::last, FirstCell::error_passed_on>
#define SwapRanges(function) \
  SparePointer<RangeFrame<worksheet::function, Length::last, FirstCell::error_passed_on, Singles::refused>>
#define EqualSwapRanges(function) \
  SparePointer<RangeFrame<worksheet::function, Length::equal, FirstCell::refused>>
#define EqualRanges(function) RangeFrame<worksheet::function, Length::equal, FirstCell::refused>
#define LooseScalars(function) RangeFrame<worksheet::function, Length::equal, FirstCell::refused>
#define Blocks(function) BlockFrame<worksheet::function>

namespace kestran {

#define FUNCTION(name, function, frame, pointers, description, names)                  \
  static_assert(frame(function)::arguments == pointers, "arguments of " #function);    \
  extern "C" KESTRAN_EXPORT XLOPER* EXCEL_STDCALL name(XLOPER_PARAMETERS_##pointers) { \
    static XLOPER result;                                                              \
    XLOPER* const given[] = {XLOPER_ARGUMENTS_##pointers};                             \
    frame(function)::call(given, result);                                              \
    return &result;                                                                    \
  }
#include "addin/function_list.h"

}  // namespace kestran
