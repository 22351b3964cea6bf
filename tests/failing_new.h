// For tests of what a caller does without memory: an allocation by `new` that fails.
#pragma once

namespace kestran {

/// The n-th allocation from now throws std::bad_alloc, all others are served.
void fail_new(int n);

/// Whether it came to that since; from now on all are served.
bool new_failed();

}  // namespace kestran
