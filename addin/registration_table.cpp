#include "addin/registration_table.h"

#include "addin/arity.h"
#include "addin/excel_call.h"

// A text's placeholder, to be replaced by its length.
#define COUNTED " "

namespace kestran {

static char blank[] = COUNTED " ";
static char product_category[] = COUNTED "KESTRAN Add-In";
static char worksheet_function[] = COUNTED "1";
static char command_macro[] = COUNTED "2";

#define FUNCTION(name, function, frame, pointers, description, arguments) \
  static char name##_name[] = COUNTED #name;                              \
  static char name##_type[] = COUNTED TYPE_TEXT_##pointers;               \
  static char name##_arguments[] = COUNTED arguments;                     \
  static char name##_description[] = COUNTED description;
#include "functions/function_list.h"

char* const function_table[function_count][function_columns] = {
#define FUNCTION(name, function, frame, pointers, description, arguments)              \
  {name##_name,      name##_type, name##_name, name##_arguments,   worksheet_function, \
   product_category, blank,       blank,       name##_description, blank},
#include "functions/function_list.h"
};

static char help_command[] = COUNTED "KESTRAN_Help";
static char exit_command[] = COUNTED "KESTRAN_Exit";
static char command_type[] = COUNTED "A";
static char help_letter[] = COUNTED "m";
static char exit_letter[] = COUNTED "n";

char* const command_table[command_count][command_columns] = {
    {help_command, command_type, help_command, blank, command_macro, product_category, help_letter},
    {exit_command, command_type, exit_command, blank, command_macro, product_category, exit_letter},
};

static char menu_text[] = COUNTED "KESTRA&N";
static char menu_status[] = COUNTED "The KESTRAN.XLL Add-In";
static char help_item[] = COUNTED "KESTRAN &Help";
static char help_status[] = COUNTED "KESTRAN Help";
static char exit_item[] = COUNTED "KESTRAN E&xit";
static char exit_status[] = COUNTED "Close the KESTRAN.XLL";

char* const menu_table[menu_rows][menu_columns] = {
    {menu_text, blank, blank, menu_status, blank},
    {help_item, help_command, blank, help_status, blank},
    {exit_item, exit_command, blank, exit_status, blank},
};

static char help_face[] = COUNTED "211";
static char gap_face[] = COUNTED "0";
static char exit_face[] = COUNTED "212";
static char no[] = COUNTED "FALSE";
static char yes[] = COUNTED "TRUE";
static char exit_tip[] = COUNTED "Exit KESTRAN.XLL";

char* const tool_table[tool_rows][tool_columns] = {
    {help_face, help_command, no, yes, blank, help_status, blank, blank},
    {gap_face, blank, blank, blank, blank, blank, blank, blank},
    {exit_face, exit_command, no, yes, blank, exit_tip, blank, blank},
};

template <int rows, int columns>
static void write_lengths(char* const (&table)[rows][columns]) {
  for (const auto& row : table)
    for (char* text : row) write_text_length(text);
}

void prepare_tables() {
  write_lengths(function_table);
  write_lengths(command_table);
  write_lengths(menu_table);
  write_lengths(tool_table);
}

}  // namespace kestran
