// Answers formulas, those of the command's arguments and those that are read from the input, one a line.
#pragma once

#include <string_view>

namespace kestran {

/// How answers are printed: as a cell shows them, or as one JSON object a line.
enum class Format { plain, json };

/// What became of the formulas so far.
struct Outcome {
  bool error = false;       // one was answered with an error
  bool unreadable = false;  // one could not be read, or there was no memory for it
  bool fault = false;       // the add-in did what Excel does not forgive
};

/// Passes on to the error stream what the add-in showed or did wrong since the last time.
void report(Outcome& outcome);

/// Prints the answer to one formula.
void answer(std::string_view formula, Format format, Outcome& outcome);

/// Answers every line of the input, on `threads` threads where all functions may be called on any. Blank
/// lines and lines that start with # are answered with a blank line. What was answered is passed on before
/// waiting for more input. A line longer than memory can hold has its answer, too.
void answer_lines(Format format, Outcome& outcome, int threads = 1);

}  // namespace kestran
