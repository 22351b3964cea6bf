// Files of deals: the reader of comma-separated values and `kestran price`. What is read back from fields
// that were written is what was written; what is priced is the input, row by row, with columns appended,
// however many threads do it.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "functions/number_text.h"
#include "host/csv.h"
#include "host/price_book.h"
#include "tests/fuzz/fuzzer.h"

namespace kestran::fuzz {
namespace {

// A file in memory that has a name.
class File {
 public:
  File() : descriptor(memfd_create("deals", MFD_CLOEXEC)) {
    require(descriptor >= 0, "no memory for a file");
  }
  ~File() { close(descriptor); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor); }
  void write(std::string_view text) const {
    require(ftruncate(descriptor, 0) == 0 &&
                pwrite(descriptor, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
            "a file cannot be written");
  }
  std::string read() const {
    std::string text(static_cast<std::size_t>(lseek(descriptor, 0, SEEK_END)), '\0');
    require(pread(descriptor, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
            "a file cannot be read");
    return text;
  }
  int descriptor;
};

struct Priced {
  int status;
  std::string text;
};

// What the command writes goes to standard output, which is a file here; what it complains of is not looked
// at.
Priced priced(const PriceOptions& options, std::size_t rows) {
  static const File output;
  static const bool apart = [] {
    stdout = fdopen(dup(output.descriptor), "w");
    stderr = fopen("/dev/null", "w");
    return stdout != nullptr && stderr != nullptr;
  }();
  require(apart && ftruncate(output.descriptor, 0) == 0 && lseek(output.descriptor, 0, SEEK_SET) == 0,
          "no standard output");
  const int status = price_book(options);
  count_calls(status == 2 ? 1 : rows);
  return {status, output.read()};
}

std::vector<std::string_view> records_of(std::string_view text, char delimiter) {
  std::vector<std::string_view> records;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(record_end(text, begin, delimiter), text.size());
    require(end > begin, "a record without an end");
    records.push_back(text.substr(begin, end - begin));
    begin = end;
  }
  return records;
}

// Fields make up their record, and a field's text, written again, reads the same.
void check_fields(std::string_view record, char delimiter) {
  std::vector<std::string_view> fields, again;
  const std::string_view body = without_line_end(record);
  split_record(body, delimiter, fields);
  std::string joined, written, room;
  for (const std::string_view field : fields) {
    if (field.data() != fields.front().data()) joined += delimiter;
    joined += field;
    const std::string text(field_text(field, room));
    written.clear();
    append_field(written, text, delimiter);
    split_record(written, delimiter, again);
    require(again.size() == 1 && field_text(again[0], room) == text,
            "a field changes when it is written again");
  }
  require(joined == body, "the fields are not the record");
}

void check_priced(const std::vector<std::string_view>& rows, const std::string& output,
                  const std::vector<std::optional<Answer>>& answers, char delimiter) {
  const std::vector<std::string_view> found = records_of(output, delimiter);
  require(rows.size() == found.size(), "not a row for each row");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string_view body = without_line_end(rows[i]);
    require(found[i].substr(0, body.size()) == body, "a row that is not the input's");
    if (i == 0 || i > answers.size() || !answers[i - 1]) continue;
    const Answer& wanted = *answers[i - 1];
    const std::string_view appended = found[i].substr(body.size() + 1);
    double number = 0.0;
    const auto read = std::from_chars(appended.data(), appended.data() + appended.size(), number);
    require(wanted.is_number() == (read.ec == std::errc()) &&
                (!wanted.is_number() || same_number(number, wanted.number)),
            "a row is not priced as the worksheet prices it");
  }
}

// Half of the files have the columns of a function, so that their rows are priced and not only read. Answers
// are those of the first rows, where they are known.
std::string input_of(Choices& choices, PriceOptions& options, char delimiter, std::string_view text,
                     std::vector<std::optional<Answer>>& answers) {
  if (choices.one_in(2)) return std::string(text);
  const Function& function = catalogue[any_place(choices)];
  const bool named = choices.one_in(3);
  const char* const quote = delimiter == ';' || delimiter == '|' ? "\"" : "";  // around what parts cells
  std::string input = named ? std::string("Function") + delimiter : "";
  if (!named) options.function = function.name;
  for (int i = 0; i < function.argument_count; ++i)
    input += (i > 0 ? std::string(1, delimiter) : "") + function.arguments[i].name;
  input += '\n';
  for (int rows = choices.below(60); rows > 0; --rows) {
    if (named) input += function.name + std::string(1, delimiter);
    const std::vector<GivenArgument> call = realistic_call(function, choices);
    const int spoiled = choices.one_in(8) ? choices.below(function.argument_count) : -1;
    for (int i = 0; i < function.argument_count; ++i) {
      if (i > 0) input += delimiter;
      const GivenArgument& one = call[static_cast<std::size_t>(i)];
      if (i == spoiled) {
        input +=
            choices.of({"", "a", "1e999", "5%", "\"a\"\"b\"", "nan", "1/0", "{1,2}", "+-1", "1;", "0x1"});
        continue;
      }
      input += quote;
      const auto columns = static_cast<std::size_t>(std::max(one.columns, 1));
      for (std::size_t k = 0; k < one.values.size(); ++k) {
        if (k > 0) input += k % columns == 0 ? '|' : ';';
        input += exact_number(one.values[k]);
      }
      input += quote;
    }
    input += choices.one_in(4) ? "\r\n" : "\n";
    answers.emplace_back();
    if (spoiled < 0 && options.results.empty()) answers.back() = price(function, operands(call).data());
  }
  return input + std::string(text);
}

}  // namespace
}  // namespace kestran::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestran;
  using namespace kestran::fuzz;
  // The first line draws the options; the file is what stands below it.
  const std::string_view whole(reinterpret_cast<const char*>(data), size);
  const std::string_view first_line = whole.substr(0, whole.find('\n'));
  Choices choices(data, first_line.size());
  const std::string_view text = whole.substr(std::min(first_line.size() + 1, size));

  kestran::PriceOptions options;
  options.delimiter = choices.of({",", ",", ";", "|", "\\t"});
  const char delimiter = options.delimiter == "\\t" ? '\t' : options.delimiter[0];
  options.results = choices.of({"", "", "all", "premium", "premium, delta", "vega,nothing"});
  options.strict = choices.one_in(4);
  static const File file;
  std::vector<std::optional<Answer>> answers;
  const std::string input = input_of(choices, options, delimiter, text, answers);
  file.write(input);
  options.input = file.name();
  const std::vector<std::string_view> rows = records_of(input, delimiter);
  for (const std::string_view row : rows) check_fields(row, delimiter);

  const Priced first = priced(options, rows.size());
  require(first.status >= 0 && first.status <= 2, "a status that is not documented");
  if (first.status == 2) return 0;
  require(first.status == 0 || options.strict, "refused rows fail the call where it is strict only");
  check_priced(rows, first.text, answers, delimiter);
  if (!choices.one_in(16)) return 0;
  options.threads = 3;
  const Priced threaded = priced(options, rows.size());
  require(threaded.text == first.text && threaded.status == first.status, "three threads give another file");
  return 0;
}
