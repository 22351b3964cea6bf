// Formulas for bindings/web/kestran.js: what the command answers and explains. Texts last until the next
// call.
#include <string>

#include "functions/nearest.h"
#include "host/excel_standin.h"
#include "host/explain.h"
#include "host/library.h"

namespace kestran {
namespace {

struct Shown {
  std::string text, note;
};
Shown shown;

void add_note(const std::string& note) { shown.note += (shown.note.empty() ? "" : "\n") + note; }

void begin() {
  shown = {};
  if (standin().find_entry) return;
  const std::string failure = load_addin(default_library());
  if (!failure.empty()) add_note(failure);
}

// The kind of the answer, and 8 more for what is no formula.
int end(const Evaluation& evaluation) {
  Standin& excel = standin();
  if (!evaluation.unknown_function.empty()) add_note(unknown_function(evaluation.unknown_function));
  for (const Alert& alert : excel.alerts) add_note("alert: " + alert.text);
  for (const std::string& fault : excel.faults) add_note("add-in at fault: " + fault);
  excel.alerts.clear();
  excel.faults.clear();
  return static_cast<int>(evaluation.kind) + (evaluation.readable ? 0 : 8);
}

}  // namespace

extern "C" {

__attribute__((export_name("kestran_cell"))) int kestran_cell(const char* formula, std::size_t size) {
  begin();
  const Evaluation evaluation = evaluate_line({formula, size});
  shown.text = evaluation.text;
  return end(evaluation);
}

__attribute__((export_name("kestran_explain"))) int kestran_explain(const char* formula, std::size_t size) {
  begin();
  Explanation explained = explanation({formula, size});
  shown.text = std::move(explained.text);
  return end(explained.evaluation);
}

__attribute__((export_name("kestran_text"))) const char* kestran_text() { return shown.text.c_str(); }
__attribute__((export_name("kestran_note"))) const char* kestran_note() { return shown.note.c_str(); }
}

}  // namespace kestran
