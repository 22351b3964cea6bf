// The part of Gnumeric's interface for plugins that the plugin uses: names, layouts and numbers, written down
// from the installed program's description of them. The program says itself which version it is and how
// wide its numbers are.
#pragma once

#include <spreadsheet/gnumeric-features.h>

#include <cstdint>

#ifdef GNM_WITH_LONG_DOUBLE
using gnm_float = long double;
#else
using gnm_float = double;
#endif

extern "C" {

// What holds a value of a cell or an argument begins with its type.
enum GnmValueType {
  VALUE_EMPTY = 10,
  VALUE_BOOLEAN = 20,
  VALUE_FLOAT = 40,
  VALUE_ERROR = 50,
  VALUE_STRING = 60,
  VALUE_CELLRANGE = 70,
  VALUE_ARRAY = 80
};
struct GnmValue {
  GnmValueType type;
};

struct GnmCellRef {
  const void* sheet;  // null for that of the formula
  int column, row;
  unsigned char column_relative, row_relative;
};
struct GnmRangeRef {
  GnmCellRef first, last;
};

struct GnmEvalPos;
struct GnmExpr;
struct GnmFuncEvalInfo {
  const GnmEvalPos* position;
  const GnmExpr* call;
};
int gnm_eval_info_get_arg_count(const GnmFuncEvalInfo* info);
const GnmExpr* gnm_expr_get_func_arg(const GnmExpr* call, int place);
GnmValue* gnm_expr_get_range(const GnmExpr* argument);  // null where it is no reference

enum GnmStdError {
  GNM_ERROR_NULL,
  GNM_ERROR_DIV0,
  GNM_ERROR_VALUE,
  GNM_ERROR_REF,
  GNM_ERROR_NAME,
  GNM_ERROR_NUM,
  GNM_ERROR_NA,
  GNM_ERROR_UNKNOWN
};

GnmValue* value_new_float(gnm_float number);
GnmValue* value_new_error(const GnmEvalPos* position, const char* text);
GnmValue* value_new_error_std(const GnmEvalPos* position, GnmStdError error);
void value_release(GnmValue* value);
gnm_float value_get_as_float(const GnmValue* value);
const char* value_peek_string(const GnmValue* value);
GnmStdError value_error_classify(const GnmValue* value);
const GnmRangeRef* value_get_rangeref(const GnmValue* value);
int value_area_get_width(const GnmValue* area, const GnmEvalPos* position);
int value_area_get_height(const GnmValue* area, const GnmEvalPos* position);
const GnmValue* value_area_get_x_y(const GnmValue* area, int x, int y, const GnmEvalPos* position);

// Help on a function: lines of text up to one of the kind END. A NAME and an ARG are "name:text".
enum GnmFuncHelpType {
  GNM_FUNC_HELP_END,
  GNM_FUNC_HELP_NAME,
  GNM_FUNC_HELP_ARG,
  GNM_FUNC_HELP_DESCRIPTION,
  GNM_FUNC_HELP_NOTE,
  GNM_FUNC_HELP_EXAMPLES,
  GNM_FUNC_HELP_SEEALSO
};
struct GnmFuncHelp {
  GnmFuncHelpType type;
  const char* text;
};

enum GnmFuncFlags { GNM_FUNC_SIMPLE = 0, GNM_FUNC_INTERNAL = 1 << 6 };  // the latter is in no list

using GnmFuncArgs = GnmValue* (*)(GnmFuncEvalInfo* info, const GnmValue* const* arguments);
struct GnmFuncDescriptor {
  const char* name;
  const char* arguments;  // a letter for each, ? takes anything; those behind | may be left out
  const GnmFuncHelp* help;
  GnmFuncArgs compute;
  void* compute_nodes;
  GnmFuncFlags flags;
  int state, tested;
};

struct GnmFunc;
struct GnmFuncGroup;
GnmFuncGroup* gnm_func_group_fetch(const char* name, const char* translation);
GnmFunc* gnm_func_add(GnmFuncGroup* group, const GnmFuncDescriptor* function, const char* text_domain);
GnmFunc* gnm_func_lookup(const char* name, const void* workbook);
void gnm_func_set_from_desc(GnmFunc* found, const GnmFuncDescriptor* function);
void gnm_func_set_function_group(GnmFunc* function, GnmFuncGroup* group);
const char* gnm_func_get_translation_domain(const GnmFunc* function);
int gnm_func_get_in_use(GnmFunc* function);
void g_object_unref(void* function);

// What a plugin shows of itself: the versions that it was made for, and where it begins and ends.
struct GOPluginModuleDepend {
  const char* of;
  const char* version;
};
struct GOPluginModuleHeader {
  std::uint32_t magic, versions;
};
constexpr std::uint32_t go_plugin_magic = 0x476e756d;
constexpr char go_plugin_interface[] = "0.0";

extern const GOPluginModuleDepend go_plugin_depends[];
extern const GOPluginModuleHeader go_plugin_header;
void go_plugin_init(void* plugin, void* context);
void go_plugin_shutdown(void* plugin, void* context);
}
