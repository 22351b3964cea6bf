// The command: works out worksheet formulas with the functions of an add-in, outside Excel.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"

#if !defined(_WIN32)
#include <editline/readline.h>

#include <cstdlib>
#include <cstring>
#endif

namespace kestran {
namespace {

constexpr int all_read = 0;
constexpr int not_written = 1;
constexpr int not_readable = 2;
constexpr int addin_at_fault = 3;

constexpr std::size_t argument_names = 4;
constexpr std::size_t description = 9;
constexpr std::size_t first_argument_description = 10;

// Passes on to the user what the add-in showed or did wrong since the last time; true when it did wrong.
bool report() {
  Standin& excel = standin();
  for (const Alert& alert : excel.alerts) std::fprintf(stderr, "alert: %s\n", alert.text.c_str());
  for (const std::string& fault : excel.faults) std::fprintf(stderr, "add-in at fault: %s\n", fault.c_str());
  const bool faulty = !excel.faults.empty();
  excel.alerts.clear();
  excel.faults.clear();
  return faulty;
}

void print_line(const std::string& line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

// What became of the lines so far.
struct Outcome {
  bool unreadable = false;
  bool fault = false;
};

void answer(const std::string& line, Outcome& outcome) {
  const Evaluation evaluation = evaluate_line(line);
  print_line(evaluation.text);
  outcome.unreadable = outcome.unreadable || !evaluation.readable;
  outcome.fault = report() || outcome.fault;
}

#if defined(_WIN32)

// The console of Windows has line editing of its own.
bool read_prompted(std::string& line) {
  std::fputs("> ", stdout);
  std::fflush(stdout);
  return static_cast<bool>(std::getline(std::cin, line));
}

#else

// Called with state 0 for the first and then for each further function whose name begins with `typed`.
char* complete_function(const char* typed, int state) {
  const std::string start = upper_case(typed);
  int place = 0;
  for (const Registration& registration : standin().registrations) {
    if (find_function(registered_name(registration)) == nullptr) continue;
    if (upper_case(registered_name(registration)).compare(0, start.size(), start) != 0) continue;
    if (place++ == state) return strdup(registered_name(registration).c_str());
  }
  return nullptr;
}

char** complete(const char* typed, int, int) {
  rl_attempted_completion_over = 1;
  return rl_completion_matches(typed, complete_function);
}

bool read_prompted(std::string& line) {
  rl_attempted_completion_function = complete;
  rl_completion_append_character = '(';
  char* const typed = readline("> ");
  if (typed == nullptr) return false;
  line = typed;
  std::free(typed);
  if (!line.empty()) add_history(line.c_str());
  return true;
}

#endif

void answer_input(Outcome& outcome) {
  std::ios::sync_with_stdio(false);
  std::string line;
  if (!input_is_terminal()) {
    // Editors of Windows begin a file with this mark of its encoding.
    const std::string byte_order_mark = "\xEF\xBB\xBF";
    bool first = true;
    while (std::getline(std::cin, line)) {
      if (first && line.compare(0, 3, byte_order_mark) == 0) line.erase(0, 3);
      first = false;
      answer(line, outcome);
    }
    if (std::cin.bad()) {
      std::fputs("kestran: the input cannot be read\n", stderr);
      outcome.unreadable = true;
    }
    return;
  }
  while (read_prompted(line)) {
    if (line.find_first_not_of(" \t\r") != std::string::npos) answer(line, outcome);
  }
  std::fputc('\n', stdout);
}

void list_functions() {
  for (const Registration& function : standin().registrations) {
    if (is_command(function)) continue;
    print_line(registered_name(function) + "\t" + registered_text(function, argument_names) + "\t" +
               registered_text(function, description));
  }
}

bool describe_function(const std::string& name) {
  const Registration* const function = find_function(name);
  if (function == nullptr) {
    std::fprintf(stderr, "There is no function %s.\n", name.c_str());
    return false;
  }
  print_line(registered_name(*function) + "(" + registered_text(*function, argument_names) + ")");
  print_line("  " + registered_text(*function, description));
  for (std::size_t i = first_argument_description; i < function->texts.size(); ++i) {
    if (function->texts[i].find_first_not_of(' ') != std::string::npos) print_line("  " + function->texts[i]);
  }
  return true;
}

int run(int argument_count, char** arguments) {
  use_binary_streams();
  CLI::App app(
      "Works out worksheet formulas with the functions of an option pricing add-in.\n\n"
      "Each FORMULA is answered with one line. Without any, formulas are read from the input, one a line.\n"
      "Ranges of cells are written in braces: {1,2;3,4}. A formula may begin with a sign: -2^2.\n"
      "Exit status: 0, or 1 when the output could not be written, 2 when a formula could not be read, 3 "
      "when\n"
      "the add-in failed.",
      "kestran [FORMULA...]");
  bool list = false;
  std::string described;
  std::string library = program_folder() + default_library_name;
  app.set_help_flag("--help", "Print this help and exit");
  app.set_version_flag("--version", "kestran " KESTRAN_VERSION);
  app.add_flag("--list", list, "List all functions: name, arguments and description, separated by tabs");
  app.add_option("--describe", described, "Describe one function")->type_name("NAME");
  app.add_option("--library", library, "The add-in to load instead of the one beside this program")
      ->type_name("FILE");
  // Formulas are what is left over, so that one may begin with a sign without being taken for an option.
  app.allow_extras();
  app.allow_windows_style_options(false);
  try {
    app.parse(argument_count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? all_read : not_readable;
  }

  const std::string failure = load_addin(library);
  Outcome outcome;
  if (!failure.empty()) {
    std::fprintf(stderr, "kestran: %s\n", failure.c_str());
    report();
    return addin_at_fault;
  }
  outcome.fault = report();
  std::vector<std::string> formulas = app.remaining();
  const auto end_of_options = std::find(formulas.begin(), formulas.end(), "--");
  if (end_of_options != formulas.end()) formulas.erase(end_of_options);
  if (list) list_functions();
  const bool describe = app.count("--describe") > 0;
  if (describe) outcome.unreadable = !describe_function(described);
  for (const std::string& formula : formulas) answer(formula, outcome);
  if (!list && !describe && formulas.empty()) answer_input(outcome);
  unload_addin();
  outcome.fault = report() || outcome.fault;
  if (std::ferror(stdout) != 0) {
    std::fputs("kestran: the output cannot be written\n", stderr);
    return not_written;
  }
  return outcome.fault ? addin_at_fault : outcome.unreadable ? not_readable : all_read;
}

}  // namespace
}  // namespace kestran

int main(int argument_count, char** arguments) { return kestran::run(argument_count, arguments); }
