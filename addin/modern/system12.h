// What the add-in asks of the operating system.
#pragma once

#include <string>

#include "addin/excel_api.h"
#include "addin/system.h"

namespace kestran {

/// What the host program exports for add-ins; null when it exports nothing.
Excel12Function host_entry_point();

/// Whether there is a file of this name.
bool is_file(const std::u16string& name);

}  // namespace kestran
