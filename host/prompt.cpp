#include "host/prompt.h"

#include <cstdio>
#include <string>

#include "host/describe.h"
#include "host/excel_standin.h"
#include "host/formula.h"

#if defined(_WIN32)
#include <iostream>
#else
#include <editline/readline.h>

#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#endif

namespace kestran {
namespace {

constexpr char prompt_text[] = "> ";

#if defined(_WIN32)

// The console of Windows has line editing and a history of its own.
struct History {};
History open_history() { return {}; }
void remember(const History&, const std::string&) {}

bool read_prompted(std::string& line) {
  std::fputs(prompt_text, stdout);
  std::fflush(stdout);
  return static_cast<bool>(std::getline(std::cin, line));
}

#else

constexpr std::size_t longest_history = 1000;

struct History {
  std::filesystem::path file;  // empty when nothing is kept
};

// Folder for what programs keep between sessions; empty when there is none.
std::filesystem::path state_folder() {
  const char* const state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && state[0] == '/') return state;
  const char* const home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') return {};
  return std::filesystem::path(home) / ".local" / "state";
}

History open_history() {
  const std::filesystem::path state = state_folder();
  if (state.empty()) return {};
  const std::filesystem::path folder = state / "kestran";
  std::error_code error;
  if (std::filesystem::create_directories(folder, error))
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
  History history{folder / "history"};
  std::deque<std::string> lines;
  std::ifstream kept(history.file);
  for (std::string line; std::getline(kept, line);) lines.push_back(line);
  const bool too_many = lines.size() > longest_history;
  if (too_many) lines.erase(lines.begin(), lines.end() - longest_history);
  std::ofstream shortened;
  if (too_many) shortened.open(history.file);
  for (const std::string& line : lines) {
    add_history(line.c_str());
    shortened << line << '\n';
  }
  return history;
}

void remember(const History& history, const std::string& line) {
  add_history(line.c_str());
  if (!history.file.empty()) std::ofstream(history.file, std::ios::app) << line << '\n';
}

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
  char* const typed = readline(prompt_text);
  if (typed == nullptr) return false;
  line = typed;
  std::free(typed);
  return true;
}

#endif

void print_help() {
  std::puts(
      "A formula, such as EURO(100, 95, 5%, 2%, 25%, 90, 1, 0), is answered with its value.\n"
      "help        this text\n"
      "help NAME   the arguments of a function\n"
      "list        all functions\n"
      "quit        ends");
}

// Does what a line says that is no formula; false when it is one.
bool run_word(const std::string& line, bool& quit) {
  const std::string word = upper_case(line);
  quit = word == "QUIT";
  if (word == "HELP") {
    print_help();
  } else if (word.compare(0, 5, "HELP ") == 0) {
    describe_function(line.substr(line.find_first_not_of(' ', 5)));
  } else if (word == "LIST") {
    list_functions();
  } else {
    return quit;
  }
  return true;
}

}  // namespace

void prompt(Format format, Outcome& outcome) {
  const History history = open_history();
  std::puts("A formula, help or quit:");
  bool quit = false;
  for (std::string line; !quit && read_prompted(line);) {
    const std::size_t begin = line.find_first_not_of(" \t\r");
    if (begin == std::string::npos) continue;
    line = line.substr(begin, line.find_last_not_of(" \t\r") + 1 - begin);
    remember(history, line);
    if (!run_word(line, quit)) answer(line, format, outcome);
    std::fflush(stdout);
  }
  if (!quit) std::fputc('\n', stdout);
}

}  // namespace kestran
