// Stands in for the compiler's header, which WebAssembly has none of.
#pragma once

#include "emmintrin.h"
