// Calls as PostgreSQL reads them.
#pragma once

#include <string>

#include "functions/catalogue.h"

namespace kestran {

/// The function's name in SQL, or an argument's.
std::string sql_name(const char* name);

/// "kestran.euro(price => 100, strike => 95, ...)", with every number in a form that reads back exactly.
std::string sql_call(const Function& function, const Operand* given);

}  // namespace kestran
