// What kestran.js calls of the module beside bindings/c/kestran.h. The caller frees the texts.
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "bindings/c/kestran.h"
#include "functions/explain.h"
#include "functions/handed_over.h"
#include "functions/refused_number.h"
#include "functions/utf8.h"
#include "functions/web_catalogue.h"
#include "functions/written_call.h"

namespace kestran {
namespace {

const Function& of(const kestran_function* function) { return *reinterpret_cast<const Function*>(function); }

std::vector<Operand> taken(const Function& function, const kestran_operand* given) {
  std::vector<Operand> operands;
  for (int i = 0; i < function.argument_count; ++i)
    operands.push_back({given[i].values, given[i].rows, given[i].columns});
  return operands;
}

std::string list(const char* name, const std::vector<std::string>& items) {
  std::string json = json_quoted(name) + ":[";
  for (const std::string& item : items) json += (json.back() == '[' ? "" : ",") + json_quoted(item);
  return json + "]";
}

}  // namespace

extern "C" {

__attribute__((export_name("kestran_catalogue"))) char* kestran_catalogue() {
  return handed_over(web_catalogue(kestran_version()));
}

// How the arguments of one deal are understood, what is refused and what looks like a slip, as JSON.
__attribute__((export_name("kestran_check"))) char* kestran_check(const kestran_function* handle,
                                                                  const kestran_operand* given) {
  const Function& function = of(handle);
  const std::vector<Operand> operands = taken(function, given);
  std::vector<std::string> meanings;
  for (std::size_t i = 0; i < operands.size(); ++i)
    meanings.push_back(understood(function, static_cast<int>(i), operands[i]));
  const Answer answer = price(function, operands.data());
  return handed_over("{" + list("understood", meanings) + "," +
                     list("refusals", refusals(function, operands.data())) + "," +
                     list("warnings", warnings(function, operands.data(), answer)) + "}");
}

// One deal as each host's call, as JSON.
__attribute__((export_name("kestran_written"))) char* kestran_written(const kestran_function* handle,
                                                                      const kestran_operand* given) {
  const Function& function = of(handle);
  const std::vector<Operand> operands = taken(function, given);
  const auto member = [](const char* name, const std::string& call) {
    return json_quoted(name) + ":" + json_quoted(call);
  };
  return handed_over("{" + member("sheet", sheet_call(function, operands.data())) + "," +
                     member("python", python_call(function, operands.data())) + "," +
                     member("postgres", postgres_call(function, operands.data())) + "," +
                     member("duckdb", duckdb_call(function, operands.data())) + "}");
}

// Which argument a deal is refused for; -1 for none.
__attribute__((export_name("kestran_refused_argument"))) int kestran_refused_argument(
    const kestran_function* handle, const kestran_operand* given) {
  const Function& function = of(handle);
  return price(function, taken(function, given).data()).argument;
}

// Puts what stands for a text or a logical value in a place of a number.
__attribute__((export_name("kestran_put_text"))) void kestran_put_text(double* place) {
  *place = refused_number(no_number_code);
}
}

}  // namespace kestran

// Without exceptions the library's own go on without memory, and write to address 0.
void* operator new(std::size_t bytes) {
  void* const memory = std::malloc(bytes);
  if (memory == nullptr) __builtin_trap();
  return memory;
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

// Messages for a terminal go nowhere, so that the module asks nothing of the page.
extern "C" {
constexpr int no_such_file = 8;
int __imported_wasi_snapshot_preview1_fd_close(int) { return no_such_file; }
int __imported_wasi_snapshot_preview1_fd_seek(int, long long, int, int) { return no_such_file; }
int __imported_wasi_snapshot_preview1_fd_write(int, int, int, int) { return no_such_file; }
}
