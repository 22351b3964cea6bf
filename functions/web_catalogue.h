// The catalogue and its texts as data, for hosts that are written in other languages.
#pragma once

#include <string>

namespace kestran {

/// All functions as one JSON object, in the order of the README: names, twins, families, arguments with
/// units, choices and examples, results. bindings/web/index.d.ts.in describes its form.
std::string web_catalogue(const std::string& version);

}  // namespace kestran
