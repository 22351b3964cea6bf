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
#define Scalar(function, pointers) ScalarFrame<worksheet::function>
#define BasketRanges(function, pointers) \
  RangeFrame<worksheet::function, Length::shortest, FirstCell::uncounted>
#define StripRanges(function, pointers) RangeFrame<worksheet::function, Length::last, FirstCell::uncounted>
#define CapRanges(function, pointers) \
  RangeFrame<worksheet::function, Length::last, FirstCell::error_passed_on>
#define SwapRanges(function, pointers) \
  SparePointer<RangeFrame<worksheet::function, Length::last, FirstCell::error_passed_on, Singles::refused>>
#define EqualRanges(function, pointers) RangeFrame<worksheet::function, Length::equal, FirstCell::refused>
#define LooseScalars(function, pointers) RangeFrame<worksheet::function, Length::equal, FirstCell::refused>
#define Blocks(function, pointers) BlockFrame<worksheet::function>
#define Unavailable(function, pointers) UnavailableFrame<pointers>

namespace kestran {

#define FUNCTION(name, function, frame, pointers, description, names)                         \
  static_assert(frame(function, pointers)::arguments == pointers, "arguments of " #function); \
  extern "C" KESTRAN_EXPORT XLOPER* EXCEL_STDCALL name(XLOPER_PARAMETERS_##pointers) {        \
    static XLOPER result;                                                                     \
    XLOPER* const given[] = {XLOPER_ARGUMENTS_##pointers};                                    \
    frame(function, pointers)::call(given, result);                                           \
    return &result;                                                                           \
  }
#include "addin/function_list.h"

}  // namespace kestran
