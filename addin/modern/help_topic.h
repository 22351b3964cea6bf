// The pages that Excel opens for "Help on this function": those of the reference that came with the add-in.
#pragma once

#include <cstddef>
#include <string>

namespace kestran {

constexpr std::size_t longest_text = 255;  // that Excel takes in a registration

/// Address of the folder `reference` beside the library, or else beside the library's folder, with a slash at
/// its end; empty where neither holds an index page.
std::string reference_address(const std::u16string& library_path);

/// The page of one function, in the form of a help topic; empty without an address, or where it gets too
/// long.
std::string help_topic(const std::string& address, const char* function);

}  // namespace kestran
