// Formulas for bindings/web/kestran.js: what the command answers and explains. The caller frees the texts.
#include <string>

#include "functions/handed_over.h"
#include "functions/nearest.h"
#include "host/excel_standin.h"
#include "host/explain.h"
#include "host/library.h"

namespace kestran {
namespace {

struct Shown {
  char* text;
  char* note;  // what the command says on its error stream; a line each
};

constexpr int unreadable = 8;

// The kind of the answer, and `unreadable` with it for what is no formula.
int show(const Evaluation& evaluation, const std::string& text, Shown* shown) {
  Standin& excel = standin();
  std::string notes;
  const auto add_note = [&](const std::string& note) { notes += (notes.empty() ? "" : "\n") + note; };
  if (!evaluation.unknown_function.empty()) add_note(unknown_function(evaluation.unknown_function));
  for (const Alert& alert : excel.alerts) add_note("alert: " + alert.text);
  for (const std::string& fault : excel.faults) add_note("add-in at fault: " + fault);
  excel.alerts.clear();
  excel.faults.clear();
  *shown = {handed_over(text), handed_over(notes)};
  return static_cast<int>(evaluation.kind) | (evaluation.readable ? 0 : unreadable);
}

}  // namespace

extern "C" {

// Loads the add-in, before the first formula; a text where that fails.
__attribute__((export_name("kestran_open"))) char* kestran_open() {
  return handed_over(load_addin(default_library()));
}

__attribute__((export_name("kestran_cell"))) int kestran_cell(const char* formula, std::size_t size,
                                                              Shown* shown) {
  const Evaluation evaluation = evaluate_line({formula, size});
  return show(evaluation, evaluation.text, shown);
}

__attribute__((export_name("kestran_explain"))) int kestran_explain(const char* formula, std::size_t size,
                                                                    Shown* shown) {
  const Explanation explained = explanation({formula, size});
  return show(explained.evaluation, explained.text, shown);
}
}

}  // namespace kestran
