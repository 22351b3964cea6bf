// The command: works out worksheet formulas with the functions of an add-in, outside Excel.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "functions/catalogue_json.h"
#include "host/describe.h"
#include "host/excel_standin.h"
#include "host/library.h"
#include "host/lines.h"
#include "host/manual.h"
#include "host/price_book.h"
#include "host/prompt.h"

namespace kestran {
namespace {

constexpr int all_well = 0;
constexpr int not_written = 1;
constexpr int answered_error = 1;  // with --strict
constexpr int not_readable = 2;
constexpr int addin_at_fault = 3;

constexpr char about[] =
    "Works out worksheet formulas with the functions of an option pricing add-in.\n\n"
    "kestran price --help tells how to price a file of deals.\n\n"
    "Each FORMULA is answered with one line. Without any, formulas are read from the input, one a\n"
    "line; blank lines and lines that start with # give blank lines. Ranges of cells are written in\n"
    "braces: {1,2;3,4}. A formula may begin with a sign: -2^2. All after -- are formulas.\n"
    "Exit status: 0; 1 when the output could not be written or, with --strict, an answer is an error;\n"
    "2 when a formula, an option or the input could not be read; 3 when the add-in failed.";

constexpr char about_price[] =
    "Prices a file of deals: comma-separated values whose header names the arguments of the function, in\n"
    "any order and case. RetType may be left out; other columns pass through; a range is one cell,\n"
    "20;21;22, a matrix 1;0.5|0.5;1. Each row gets its results and, where it is refused, the reason in a\n"
    "column Error.\n"
    "Exit status: 0; 1 when the output could not be written or, with --strict, a row was refused; 2 when\n"
    "the input or an option cannot be used.";

struct Settings {
  bool list = false;
  bool catalogue = false;
  bool manual = false;
  bool completion = false;
  bool describe = false;
  bool json = false;
  bool strict = false;
  int threads = 1;
  std::string described;
  std::vector<std::string> explained;
  std::string library;
  std::vector<std::string> formulas;
};

// Formulas may begin with one or two signs, too. An option is a word, which at most a value follows, such as
// -h, --list or --describe=EURO, but not -5+3, -EURO(1) or --(2).
bool is_option(const std::string& argument) {
  const std::size_t word = std::min(argument.find_first_not_of('-'), argument.size());
  const auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  if (word < 1 || word > 2 || word == argument.size() || !letter(argument[word])) return false;
  std::size_t end = word;
  while (end < argument.size() && (letter(argument[end]) || argument[end] == '-')) ++end;
  return end == argument.size() || argument[end] == '=';
}

// Takes the formulas out of the arguments and leaves the options with their values.
std::vector<std::string> take_formulas(const CLI::App& app, std::vector<std::string>& arguments) {
  std::vector<std::string> formulas, options;
  bool value_follows = false;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (*argument == "--") {
      formulas.insert(formulas.end(), argument + 1, arguments.end());
      break;
    }
    const bool option = is_option(*argument);
    (option || value_follows ? options : formulas).push_back(*argument);
    const CLI::Option* const known = option ? app.get_option_no_throw(*argument) : nullptr;
    value_follows = known != nullptr && known->get_items_expected_min() > 0;
  }
  arguments = std::move(options);
  return formulas;
}

void add_flag(CLI::App& app, const char* name, bool& flag, const char* words) {
  app.add_flag(name, flag, words)->disable_flag_override();
}

void add_options(CLI::App& app, Settings& settings) {
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.set_version_flag("--version", "kestran " KESTRAN_VERSION, "Print the version and exit");
  add_flag(app, "--list", settings.list,
           "List all functions: name, arguments and description, separated by tabs");
  add_flag(app, "--catalogue", settings.catalogue,
           "Print all functions with arguments, results, units and examples as JSON");
  app.add_option("--describe", settings.described, "Describe one function")->type_name("NAME");
  app.add_option(
         "--explain", settings.explained,
         "Tell how each argument of a formula is understood, what is refused and what looks like a slip")
      ->type_name("FORMULA")
      ->type_size(1)
      ->allow_extra_args(false);
  add_flag(app, "--json", settings.json, "Answer with a JSON object a line: formula, value and error");
  add_flag(app, "--strict", settings.strict, "Exit with 1 when an answer is an error");
  app.add_option("--library", settings.library,
                 "The add-in to load instead of the one that came with this program")
      ->type_name("FILE");
  app.add_option("--threads", settings.threads,
                 "How many threads work out the lines of the input, with an add-in that bears it")
      ->type_name("N")
      ->check(CLI::Range(1, 256));
  add_flag(app, "--man", settings.manual, "Print the manual page, for man -l -");
  add_flag(app, "--completion", settings.completion,
           "Print the completion for bash: source <(kestran --completion)");
  app.allow_windows_style_options(false);
}

void add_price_options(CLI::App& app, PriceOptions& options, bool& no_header_out) {
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.add_option("--function", options.function,
                 "The function; without it a column Function names each row's")
      ->type_name("NAME");
  app.add_option("--input", options.input, "Read from this file instead of the standard input")
      ->type_name("FILE");
  app.add_option("--output", options.output, "Write to this file, which appears once it is complete")
      ->type_name("FILE");
  app.add_option("--results", options.results, "Results wanted, such as premium,delta, or all")
      ->type_name("NAMES");
  app.add_option("--threads", options.threads, "How many threads price")
      ->type_name("N")
      ->check(CLI::Range(1, 256));
  app.add_option("--delimiter", options.delimiter, "What stands between fields: a character, or tab")
      ->type_name("C");
  add_flag(app, "--no-header-out", no_header_out, "Write no header");
  add_flag(app, "--strict", options.strict, "Exit with 1 when a row was refused");
  app.allow_windows_style_options(false);
}

// Prints what is made of the options of both forms of the command.
void print_made(const Settings& settings) {
  Settings unused;
  PriceOptions options;
  bool no_header_out = false;
  CLI::App command(about), price(about_price);
  add_options(command, unused);
  add_price_options(price, options, no_header_out);
  const std::string text = settings.manual ? manual_page(command, price) : bash_completion(command, price);
  std::fputs(text.c_str(), stdout);
}

// A program that has not read its options can do nothing without memory. Texts written through streams, which
// swallow the exception, would come short.
void end_without_memory() {
  std::fputs("kestran: not enough memory\n", stderr);
  std::_Exit(not_readable);
}

// Before any object of the program is made.
[[gnu::constructor(101)]] void watch_memory() { std::set_new_handler(end_without_memory); }

// Reads the arguments; false, with the exit status, when nothing is left to do.
bool read_arguments(int argument_count, char** arguments, Settings& settings, int& status) {
  CLI::App app(about, "kestran [FORMULA...]");
  settings.library = default_library();
  add_options(app, settings);
  std::vector<std::string> given(arguments + std::min(argument_count, 1), arguments + argument_count);
  settings.formulas = take_formulas(app, given);
  std::reverse(given.begin(), given.end());
  try {
    app.parse(given);
  } catch (const CLI::ParseError& error) {
    status = app.exit(error) == 0 ? all_well : not_readable;
    return false;
  }
  settings.describe = app.count("--describe") > 0;
  if (settings.catalogue) std::printf("%s\n", catalogue_json(KESTRAN_VERSION).c_str());
  if (settings.manual || settings.completion) print_made(settings);
  if (settings.catalogue || settings.manual || settings.completion) {
    return false;
  }
  return true;
}

// kestran price: the rest of the arguments are its options.
int run_price(int argument_count, char** arguments) {
  CLI::App app(about_price, "kestran price");
  PriceOptions options;
  bool no_header_out = false;
  add_price_options(app, options, no_header_out);
  try {
    app.parse(argument_count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? all_well : not_readable;
  }
  options.header_out = !no_header_out;
  std::set_new_handler(nullptr);
  return price_book(options);
}

int run(int argument_count, char** arguments) {
  prepare_streams();
  if (argument_count > 1 && std::string(arguments[1]) == "price")
    return run_price(argument_count - 1, arguments + 1);
  Settings settings;
  int status = all_well;
  if (!read_arguments(argument_count, arguments, settings, status)) return status;

  std::set_new_handler(nullptr);
  Outcome outcome;
  const std::string failure = load_addin(settings.library);
  report(outcome);
  if (!failure.empty()) {
    std::fprintf(stderr, "kestran: %s\n", failure.c_str());
    return addin_at_fault;
  }
  const Format format = settings.json ? Format::json : Format::plain;
  if (settings.list) list_functions();
  if (settings.describe) outcome.unreadable = !describe_function(settings.described);
  for (const std::string& formula : settings.explained) explain_formula(formula, outcome);
  for (const std::string& formula : settings.formulas) answer(formula, format, outcome);
  if (!settings.list && !settings.describe && settings.explained.empty() && settings.formulas.empty()) {
    input_is_terminal() ? prompt(format, outcome) : answer_lines(format, outcome, settings.threads);
  }
  unload_addin();
  report(outcome);
  if (outcome.fault) return addin_at_fault;
  if (outcome.unreadable) return not_readable;
  return settings.strict && outcome.error ? answered_error : all_well;
}

}  // namespace
}  // namespace kestran

int main(int argument_count, char** arguments) {
  int status = kestran::not_readable;
  try {
    status = kestran::run(argument_count, arguments);
  } catch (const std::bad_alloc&) {
    std::fputs("kestran: not enough memory\n", stderr);
  }
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  std::fputs("kestran: the output cannot be written\n", stderr);
  return kestran::not_written;
}
