// Calls that may take longer than a tenth of a second can be broken off.
#pragma once

#include "models/black_scholes/implied_vol.h"

namespace kestran {

/// Whether the answer of the call on this thread is still wanted. A host that can be interrupted sets it
/// once, before the first call; null: always.
extern StillWanted still_wanted;

}  // namespace kestran
