#include "host/describe.h"

#include <cstdio>
#include <new>

#include "functions/describe.h"
#include "functions/nearest.h"
#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/explain.h"

namespace kestran {

void list_functions() {
  for (const Registration& function : standin().registrations) {
    if (is_command(function)) continue;
    std::printf("%s\t%s\t%s\n", registered_name(function).c_str(),
                registered_text(function, argument_names_text).c_str(),
                registered_text(function, description_text).c_str());
  }
}

void tell_unknown(const std::string& name) {
  try {
    std::fprintf(stderr, "kestran: %s\n", unknown_function(name).c_str());
  } catch (const std::bad_alloc&) {
    // The answer #NAME? says it as well.
  }
}

void explain_formula(std::string_view formula, Outcome& outcome) {
  const Explanation explained = explanation(formula);
  std::fputs(explained.text.c_str(), stdout);
  if (!explained.evaluation.unknown_function.empty()) tell_unknown(explained.evaluation.unknown_function);
  outcome.error = outcome.error || explained.evaluation.kind == Kind::error;
  outcome.unreadable = outcome.unreadable || !explained.evaluation.readable;
  report(outcome);
}

bool describe_function(const std::string& name) {
  const Registration* const function = find_function(name);
  if (function == nullptr) {
    tell_unknown(name);
    return false;
  }
  if (const Function* known = find_in_catalogue(name.c_str())) {
    std::fputs(description(*known).c_str(), stdout);
    return true;
  }
  std::printf("%s(%s)\n", registered_name(*function).c_str(),
              registered_text(*function, argument_names_text).c_str());
  std::printf("  %s\n", registered_text(*function, description_text).c_str());
  for (std::size_t i = first_argument_text; i < function->texts.size(); ++i) {
    const std::string& text = function->texts[i];
    if (text.find_first_not_of(' ') != std::string::npos) std::printf("  %s\n", text.c_str());
  }
  return true;
}

}  // namespace kestran
