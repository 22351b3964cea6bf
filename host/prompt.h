// The prompt: someone types formulas and sees the answers.
#pragma once

#include "host/lines.h"

namespace kestran {

/// Answers formulas until the input ends or `quit` is typed. On Linux the tabulator completes names of
/// functions, and what was typed is kept for the next session in kestran/history below XDG_STATE_HOME, or
/// HOME/.local/state without it; where that cannot be written, nothing is kept.
void prompt(Format format, Outcome& outcome);

}  // namespace kestran
