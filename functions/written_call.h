// A call as each host reads it, with every number in a form that reads back exactly.
#pragma once

#include <string>

#include "functions/catalogue.h"

namespace kestran {

/// "=EURO(100,95,...)", for a sheet and for the command; ranges are columns.
std::string sheet_call(const Function& function, const Operand* given);

/// "kestran.EURO(Price=100, Strike=95, ...)"
std::string python_call(const Function& function, const Operand* given);

/// The function's name in PostgreSQL, or an argument's.
std::string postgres_name(const char* name);

/// "kestran.euro(price => 100, strike => 95, ...)"
std::string postgres_call(const Function& function, const Operand* given);

/// "EURO(100,95,...)"
std::string duckdb_call(const Function& function, const Operand* given);

}  // namespace kestran
