// The command's manual page and its completion for bash, from its options and the texts of the functions.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace kestran {

/// The page kestran(1) in the form that man reads.
std::string manual_page(const CLI::App& command, const CLI::App& price);

/// A script for bash that completes options and names of functions.
std::string bash_completion(const CLI::App& command, const CLI::App& price);

}  // namespace kestran
