// What a loader does elsewhere: the add-in in a WebAssembly module is linked with its host program.
#pragma once

namespace kestran {

/// Address of what the add-in exports under this name; null when it exports none.
void* find_export(const char* name);

}  // namespace kestran
