// The four tables of counted strings that the add-in hands to Excel. Every text starts with a placeholder
// character, over which prepare_tables() writes the text's length when the library is loaded.
#pragma once

namespace kestran {

constexpr int function_count = 0
#define FUNCTION(name, function, frame, pointers, description, arguments) +1
#include "functions/function_list.h"
    ;
constexpr int command_count = 2;
constexpr int menu_rows = 3;
constexpr int tool_rows = 3;

// Columns of the function table; the command table has the first seven.
enum RegistrationColumn {
  procedure_name,
  type_text,
  function_text,
  argument_names,
  macro_type,
  category,
  shortcut,
  help_topic,
  function_description,
  argument_help,
  function_columns
};
constexpr int command_columns = shortcut + 1;
constexpr int menu_columns = 5;  // text, command, shortcut, status text, help
constexpr int tool_columns = 8;

extern char* const function_table[function_count][function_columns];
extern char* const command_table[command_count][command_columns];
extern char* const menu_table[menu_rows][menu_columns];
extern char* const tool_table[tool_rows][tool_columns];

/// Writes the lengths of all texts of the four tables.
void prepare_tables();

}  // namespace kestran
