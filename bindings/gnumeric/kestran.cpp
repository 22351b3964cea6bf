// The worksheet functions as functions of Gnumeric: under their own names, in a category for each family and
// with their help, and under the names _xll.NAME that files of Excel have.
#include "bindings/gnumeric/gnumeric_api.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "functions/describe.h"
#include "functions/intake.h"

namespace kestran {
namespace {

// By Gnumeric's numbers of errors, what the sheet's codes are.
constexpr int error_codes[] = {0, 7, value_code, 23, 29, 36, 42};
constexpr char missing_text[] = "#65535!";

int error_code(const GnmValue* value) {
  const GnmStdError error = value_error_classify(value);
  if (error < GNM_ERROR_UNKNOWN) return error_codes[error];
  return std::strcmp(value_peek_string(value), missing_text) == 0 ? missing_code : value_code;
}

bool is_area(const GnmValue* value) {
  return value != nullptr && (value->type == VALUE_CELLRANGE || value->type == VALUE_ARRAY);
}

// Null is an argument left out, or an empty cell.
Holds what_holds(const GnmValue* value) {
  if (value == nullptr) return Holds::nothing;
  switch (value->type) {
    case VALUE_EMPTY:
      return Holds::nothing;
    case VALUE_FLOAT:
      return Holds::number;
    case VALUE_ERROR:
      return Holds::error;
    default:  // text, logical values, areas
      return Holds::other;
  }
}

double to_number(const GnmValue* value) { return static_cast<double>(value_get_as_float(value)); }

// In the place of a reference to one cell Gnumeric gives what the cell holds. A number is one either way;
// otherwise the formula tells a cell from what stands in the formula itself.
struct GnumericReader {
  struct Given {
    const GnmValue* value;
    const GnmFuncEvalInfo* info;
    int place;

    bool is_cell() const {
      if (place >= gnm_eval_info_get_arg_count(info)) return false;
      GnmValue* range = gnm_expr_get_range(gnm_expr_get_func_arg(info->call, place));
      if (range != nullptr) value_release(range);
      return range != nullptr;
    }
  };

  static Holds holds(const Given& given) {
    const Holds held = what_holds(given.value);
    return held != Holds::number && (is_area(given.value) || given.is_cell()) ? Holds::cells : held;
  }
  static double number(const Given& given) { return to_number(given.value); }
  static int error(const Given& given) { return error_code(given.value); }

  class Block {
   public:
    explicit Block(const Given& given) : value(given.value), position(given.info->position) {
      if (!is_area(value)) return;
      height = value_area_get_height(value, position);
      width = value_area_get_width(value, position);
      if (height > 0 && width > 0) return;
      value = nullptr;  // {} is an empty cell
      height = width = 1;
    }

    // Cells of several sheets are no rectangle.
    bool ready() const {
      if (!is_area(value) || value->type != VALUE_CELLRANGE) return true;
      const GnmRangeRef& range = *value_get_rangeref(value);
      return range.last.sheet == nullptr || range.last.sheet == range.first.sheet;
    }
    int rows() const { return height; }
    int columns() const { return width; }
    Holds holds(int i) const { return what_holds(cell(i)); }
    double number(int i) const { return to_number(cell(i)); }
    int error(int i) const { return error_code(cell(i)); }

   private:
    const GnmValue* cell(int i) const {
      return is_area(value) ? value_area_get_x_y(value, i % width, i / width, position) : value;
    }

    const GnmValue* value;
    const GnmEvalPos* position;
    int height = 1;
    int width = 1;
  };
};

GnmValue* priced(const Function& function, const GnmFuncEvalInfo* info, const GnmValue* const* arguments) {
  GnumericReader::Given given[most_arguments];
  for (int i = 0; i < function.argument_count; ++i) given[i] = {arguments[i], info, i};
  const Answer answer = FrameReader<GnumericReader>::evaluate(function, given);
  if (answer.is_number())
    return std::isfinite(answer.number) ? value_new_float(answer.number)
                                        : value_new_error_std(info->position, GNM_ERROR_NUM);
  for (int error = 0; error < GNM_ERROR_UNKNOWN; ++error)
    if (answer.error == error_codes[error])
      return value_new_error_std(info->position, static_cast<GnmStdError>(error));
  return value_new_error(info->position, missing_text);
}

// Gnumeric calls a function without a word on which one it is.
template <int place>
GnmValue* priced_at(GnmFuncEvalInfo* info, const GnmValue* const* arguments) {
  return priced(catalogue[place], info, arguments);
}

enum Place {
#define FUNCTION(name, function, frame, pointers, description, names) place_of_##name,
#include "functions/function_list.h"
};

constexpr GnmFuncArgs entries[] = {
#define FUNCTION(name, function, frame, pointers, description, names) priced_at<place_of_##name>,
#include "functions/function_list.h"
};

std::string results(const Function& function) {
  const bool selects = result_argument(function) >= 0;
  std::string text = selects ? "Results:" : "Result:";
  for (const ResultText& result : text_of(function).results)
    if (answers(function, result))
      text += (selects ? "\n" + std::to_string(result.selector) + " " : "\n") + result.name + ": " +
              result_meaning(result);
  return text;
}

constexpr char text_domain[] = "kestran";  // tells our functions from others
constexpr char excel_prefix[] = "_xll.";

// Gnumeric copies all it is told. A function of its own that has the name becomes ours.
void add(GnmFuncGroup* group, const Function& function, const std::string& name, GnmFuncFlags flags) {
  const FunctionText& about = text_of(function);
  std::deque<std::string> texts;
  std::vector<GnmFuncHelp> help;
  const auto tell = [&](GnmFuncHelpType type, std::string text) {
    help.push_back({type, texts.emplace_back(std::move(text)).c_str()});
  };
  tell(GNM_FUNC_HELP_NAME, name + ":" + about.headline);
  for (int i = 0; i < function.argument_count; ++i)
    tell(GNM_FUNC_HELP_ARG, std::string(function.arguments[i].name) + ":" + argument_meaning(function, i));
  tell(GNM_FUNC_HELP_DESCRIPTION, about.prices);
  tell(GNM_FUNC_HELP_DESCRIPTION, results(function));
  tell(GNM_FUNC_HELP_NOTE, about.accuracy);
  tell(GNM_FUNC_HELP_EXAMPLES, example_formula(function));
  std::string related = about.related;
  related.erase(std::remove(related.begin(), related.end(), ' '), related.end());
  if (!related.empty()) tell(GNM_FUNC_HELP_SEEALSO, related);
  help.push_back({GNM_FUNC_HELP_END, nullptr});

  GnmFuncDescriptor descriptor{};
  const std::string arguments = "|" + std::string(static_cast<std::size_t>(function.argument_count), '?');
  descriptor.name = name.c_str();
  descriptor.arguments = arguments.c_str();
  descriptor.help = help.data();
  descriptor.compute = entries[&function - catalogue];
  descriptor.flags = flags;
  if (GnmFunc* found = gnm_func_lookup(descriptor.name, nullptr); found != nullptr) {
    gnm_func_set_from_desc(found, &descriptor);
    gnm_func_set_function_group(found, group);
  } else {
    gnm_func_add(group, &descriptor, text_domain);
  }
}

void add_functions() {
  for (const FamilyText* family : families) {
    GnmFuncGroup* group = gnm_func_group_fetch(("KESTRAN: " + std::string(family->title)).c_str(), nullptr);
    for (const FunctionText& text : family->functions)
      for (int i = 0; i < catalogue_size; ++i) {
        if (&text_of(catalogue[i]) != &text) continue;
        add(group, catalogue[i], catalogue[i].name, GNM_FUNC_SIMPLE);
        add(group, catalogue[i], std::string(excel_prefix) + catalogue[i].name, GNM_FUNC_INTERNAL);
      }
  }
}

// Those that cells use stay, as does this file (see CMakeLists.txt).
void remove(const std::string& name) {
  GnmFunc* found = gnm_func_lookup(name.c_str(), nullptr);
  if (found == nullptr || gnm_func_get_in_use(found) != 0) return;
  if (std::strcmp(gnm_func_get_translation_domain(found), text_domain) == 0) g_object_unref(found);
}

}  // namespace
}  // namespace kestran

const GOPluginModuleDepend go_plugin_depends[] = {{"goffice", go_plugin_interface},
                                                  {"gnumeric", GNM_VERSION_FULL}};
const GOPluginModuleHeader go_plugin_header = {go_plugin_magic, 2};

void go_plugin_init(void*, void*) { kestran::add_functions(); }

void go_plugin_shutdown(void*, void*) {
  for (int i = 0; i < kestran::catalogue_size; ++i) {
    kestran::remove(kestran::catalogue[i].name);
    kestran::remove(std::string(kestran::excel_prefix) + kestran::catalogue[i].name);
  }
}
