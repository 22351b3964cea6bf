// All functions with their texts as data, for programs that are no C++.
#pragma once

#include <string>

namespace kestran {

/// The families with their functions as a JSON object: what arguments and results are called and mean, in
/// which unit, the choices of selectors, which numbers look like a slip, and an example.
std::string catalogue_json();

}  // namespace kestran
