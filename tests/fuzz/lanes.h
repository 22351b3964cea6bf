// The same deals priced by kernels of other widths. How many lanes they use is decided once in a process, so
// that a process beside this one has two, and another none for books of European options.
#pragma once

#include <cstdint>

namespace kestran::fuzz {

/// Starts the processes. To be called before anything is priced.
void start_other_lanes();

/// Has them price deals that are drawn from this seed; all must answer with the same bits.
void compare_lanes(std::uint64_t seed);

}  // namespace kestran::fuzz
