// The loops that NumPy runs over arrays: one for functions of numbers, one for functions of ranges, and one
// that reads the codes of refusals.
#pragma once

#include <cstddef>

#include "functions/catalogue.h"

namespace kestran {

/// How many threads share a loop. 1 to begin with.
void set_loop_threads(int threads);
int loop_threads();

/// Dimensions of an argument beyond those of the loop: 0 for a number, 1 for a range, 2 for a square block.
int core_dimensions(const Argument& argument);

/// NumPy's PyUFuncGenericFunction; `function` is the Function to call.
void number_loop(char** arrays, const std::ptrdiff_t* sizes, const std::ptrdiff_t* strides, void* function);
void range_loop(char** arrays, const std::ptrdiff_t* sizes, const std::ptrdiff_t* strides, void* function);
void code_loop(char** arrays, const std::ptrdiff_t* sizes, const std::ptrdiff_t* strides, void*);

/// One call of arrays without dimensions of a loop; what `sizes` and `strides` say is of the core dimensions,
/// in the order of the arguments. `room` has a double for each cell of all arguments.
void take_call(const Function& function, char* const* arrays, const std::ptrdiff_t* sizes,
               const std::ptrdiff_t* strides, double* room, Operand* given);

/// How many doubles of room the call takes.
std::size_t call_room(const Function& function, const std::ptrdiff_t* sizes);

}  // namespace kestran
