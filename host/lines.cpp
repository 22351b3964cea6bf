#include "host/lines.h"

#include <atomic>
#include <cmath>
#include <cstdio>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "functions/utf8.h"
#include "host/byte_streams.h"
#include "host/describe.h"
#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran {
namespace {

constexpr std::size_t block_bytes = 1 << 16;

void print(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

// Rows of an array; what is an error there is null.
std::string json_of(const Block& block) {
  std::string text;
  for (std::size_t i = 0; i < block.cells.size(); ++i) {
    const Scalar& cell = block.cells[i];
    text += i == 0 ? "[[" : i % block.columns == 0 ? "],[" : ",";
    if (cell.kind == Kind::text)
      text += json_quoted(cell.text);
    else if (cell.kind == Kind::boolean)
      text += cell.code != 0 ? "true" : "false";
    else
      text += cell.kind == Kind::error || !std::isfinite(cell.number) ? "null" : printed(cell);
  }
  return text + "]]";
}

std::string first_error(const Evaluation& evaluation) {
  if (evaluation.array == nullptr) return evaluation.text;
  for (const Scalar& cell : evaluation.array->cells)
    if (cell.kind == Kind::error || !std::isfinite(cell.number)) return printed(cell);
  return "";
}

std::string json_of(std::string_view formula, const Evaluation& evaluation) {
  std::string text = "{\"formula\":" + json_quoted(formula) + ",\"value\":";
  if (evaluation.array != nullptr) {
    text += json_of(*evaluation.array);
  } else if (evaluation.kind == Kind::error) {
    text += "null";
  } else if (evaluation.kind == Kind::text) {
    text += json_quoted(evaluation.text);
  } else if (evaluation.kind == Kind::boolean) {
    text += evaluation.text == "TRUE" ? "true" : "false";
  } else {
    text += evaluation.text;
  }
  text += ",\"error\":";
  text += evaluation.kind == Kind::error ? json_quoted(first_error(evaluation)) : "null";
  return text + "}\n";
}

void print_answer(std::string_view formula, const Evaluation& evaluation, Format format, Outcome& outcome) {
  if (format == Format::plain) {
    print(evaluation.text);
    print("\n");
  } else {
    try {
      print(json_of(formula, evaluation));
    } catch (const std::exception&) {
      print("{\"formula\":null,\"value\":null,\"error\":\"#MEMORY!\"}\n");
      outcome.unreadable = true;
    }
  }
  if (!evaluation.unknown_function.empty()) tell_unknown(evaluation.unknown_function);
  outcome.error = outcome.error || evaluation.kind == Kind::error;
  outcome.unreadable = outcome.unreadable || !evaluation.readable;
  report(outcome);
}

// The input, of which the buffer from `begin` on is read and not yet answered.
struct Input {
  ByteSource source{""};
  std::function<void()> before_waiting;
  std::size_t bytes = block_bytes;  // to read at once
  std::string buffer;
  std::size_t begin = 0;
  bool ended = false;
};

enum class Found { line, line_too_long, nothing };

// Waits for more input; false when a line has outgrown memory.
bool read_more(Input& input) {
  input.buffer.erase(0, std::exchange(input.begin, 0));
  if (input.before_waiting) input.before_waiting();
  std::fflush(stdout);
  try {
    input.ended = !input.source.append_to(input.buffer, input.bytes);
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

// The next line without its end, good until the next call. Of one that is too long there is nothing to see.
Found next_line(Input& input, std::string_view& line) {
  bool too_long = false;
  std::size_t searched = input.begin;
  while (true) {
    const std::size_t newline = input.buffer.find('\n', searched);
    if (newline != std::string::npos || input.ended) {
      line = std::string_view(input.buffer).substr(input.begin, newline - input.begin);
      if (newline == std::string::npos && line.empty() && !too_long) return Found::nothing;
      input.begin = newline == std::string::npos ? input.buffer.size() : newline + 1;
      return too_long ? Found::line_too_long : Found::line;
    }
    searched = input.buffer.size() - input.begin;
    if (too_long || !read_more(input)) {
      too_long = true;
      searched = 0;
      input.buffer.clear();  // which keeps its memory, so that this reading cannot fail
      read_more(input);
    }
  }
}

// A line that waits for its answer.
struct Waiting {
  std::string formula;
  Found found;
  Evaluation evaluation;
};

bool has_formula(std::string_view line) {
  return line.find_first_not_of(" \t") != std::string_view::npos && line[0] != '#';
}

// Works lines out on several threads.
class Crew {
 public:
  explicit Crew(int threads) : workers(static_cast<std::size_t>(threads)) {}

  void work_out(std::vector<Waiting>& lines) {
    std::atomic<std::size_t> next{0};
    const auto work = [&](int thread) {
      workers[static_cast<std::size_t>(thread)].begin();
      for (std::size_t i; (i = next++) < lines.size();) {
        Waiting& line = lines[i];
        if (line.found == Found::line && has_formula(line.formula))
          line.evaluation = evaluate_line(line.formula);
        else if (line.found == Found::line_too_long)
          line.evaluation = {out_of_memory_text, false};
      }
      Worker::end();
    };
    run_threads(static_cast<int>(workers.size()), std::ref(work));  // which takes no memory
    for (Worker& worker : workers) worker.join();
  }

 private:
  std::vector<Worker> workers;
};

bool bears_threads() {
  for (const Registration& registration : standin().registrations)
    if (!registration.thread_safe && !is_command(registration)) return false;
  return true;
}

}  // namespace

void report(Outcome& outcome) {
  Standin& excel = standin();
  for (const Alert& alert : excel.alerts) std::fprintf(stderr, "alert: %s\n", alert.text.c_str());
  for (const std::string& fault : excel.faults) std::fprintf(stderr, "add-in at fault: %s\n", fault.c_str());
  outcome.fault = outcome.fault || !excel.faults.empty();
  excel.alerts.clear();
  excel.faults.clear();
}

void answer(std::string_view formula, Format format, Outcome& outcome) {
  print_answer(formula, evaluate_line(formula), format, outcome);
}

void answer_lines(Format format, Outcome& outcome, int threads) {
  // Editors of Windows begin a file with this mark of its encoding.
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  Input input;
  std::optional<Crew> crew;
  std::vector<Waiting> lines;
  const auto answer_waiting = [&] {
    crew->work_out(lines);
    for (const Waiting& line : lines) {
      if (line.found == Found::line && !has_formula(line.formula))
        print("\n");
      else
        print_answer(line.formula, line.evaluation, format, outcome);
    }
    lines.clear();
  };
  if (threads > 1 && bears_threads()) {
    crew.emplace(threads);
    input.bytes = 16 * block_bytes;
    input.before_waiting = std::ref(answer_waiting);
  }
  input.buffer.reserve(2 * input.bytes);
  std::string_view line;
  bool first = true;
  for (Found found; (found = next_line(input, line)) != Found::nothing && std::ferror(stdout) == 0;
       first = false) {
    if (found == Found::line_too_long) line = {};
    if (first && line.substr(0, byte_order_mark.size()) == byte_order_mark)
      line.remove_prefix(byte_order_mark.size());
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (crew) {
      try {
        lines.push_back({std::string(line), found, {}});
      } catch (const std::exception&) {
        answer_waiting();
        print_answer({}, {out_of_memory_text, false}, format, outcome);
      }
    } else if (found == Found::line_too_long) {
      print_answer({}, {out_of_memory_text, false}, format, outcome);
    } else if (!has_formula(line)) {
      print("\n");
    } else {
      answer(line, format, outcome);
    }
  }
  if (crew) answer_waiting();
  if (input.source.failed()) {
    std::fputs("kestran: the input cannot be read\n", stderr);
    outcome.unreadable = true;
  }
}

}  // namespace kestran
