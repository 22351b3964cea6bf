#include "host/price_book.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "functions/describe.h"
#include "functions/example.h"
#include "functions/explain.h"
#include "functions/nearest.h"
#include "functions/price_many.h"
#include "host/byte_streams.h"
#include "host/csv.h"
#include "host/formula.h"

namespace kestran {
namespace {

constexpr int priced = 0;
constexpr int not_written = 1;
constexpr int not_usable = 2;

constexpr std::size_t block_bytes = std::size_t{1} << 20;
constexpr std::size_t most_record_bytes = std::size_t{64} << 20;
constexpr std::size_t rows_at_once = 512;

// What the book cannot be priced for, in words for standard error.
struct Unusable {
  std::string reason;
};

std::string trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return std::string(text);
}

// How the columns serve one function.
struct Plan {
  const Function* function = nullptr;
  int column[most_arguments];  // of each argument; -1: there is none
  int selector = -1;           // the argument that asks for the result
  bool selected_by_row = false;
};

// The results wanted of a row: their selectors where the book asks for them by name.
struct Wanted {
  std::vector<std::string> names;  // of the columns to append
  bool by_name = false;
};

class Book {
 public:
  Book(const PriceOptions& book_options, char book_delimiter)
      : options(book_options), delimiter(book_delimiter) {
    if (options.function.empty()) return;
    named = find_in_catalogue(options.function.c_str());
    if (named == nullptr) throw Unusable{unknown_function(options.function)};
  }

  /// Takes the header and gives the one to write.
  std::string read_header(std::string_view record) {
    std::string_view names = without_line_end(record);
    const std::string_view mark("\xEF\xBB\xBF");
    std::string_view unmarked = names;
    if (unmarked.substr(0, mark.size()) == mark) unmarked.remove_prefix(mark.size());
    std::vector<std::string_view> fields;
    split_record(unmarked, delimiter, fields);
    std::string room;
    for (std::string_view field : fields) header.push_back(upper_case(trimmed(field_text(field, room))));
    if (options.function.empty()) {
      function_column = column_of("FUNCTION");
      if (function_column < 0)
        throw Unusable{"give --function NAME, or a column Function that names each row's function"};
    } else {
      one = plan_for(*named);
      require_columns();
    }
    choose_results();
    std::string line(names);
    for (const std::string& name : wanted.names) {
      line += delimiter;
      append_field(line, name, delimiter);
    }
    line += delimiter;
    line += "Error";
    line += record.substr(names.size());
    return line;
  }

  /// Prices whole records and appends what is to be written; gives how many rows were refused. Safe on
  /// several threads.
  std::size_t price_rows(std::string_view text, std::string& written) const {
    std::size_t refused = 0;
    std::unique_ptr<Batch> batch(new Batch(*this));
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = std::min(record_end(text, begin, delimiter), text.size());
      refused += batch->add(text.substr(begin, end - begin), written);
      begin = end;
    }
    return refused + batch->finish(written);
  }

 private:
  struct Row {
    std::string_view record;
    std::size_t fields = 0;
    std::string error;  // why it is not priced at all
  };

  // Rows of one function whose arguments are all numbers, priced together.
  class Batch {
   public:
    explicit Batch(const Book& priced_book) : book(priced_book) {
      answers.resize(rows_at_once * book.wanted.names.size(), Answer(0.0));
      rows.reserve(rows_at_once);
    }

    std::size_t add(std::string_view record, std::string& written) {
      const std::string_view body = without_line_end(record);
      if (body.empty()) {
        const std::size_t refused = finish(written);
        written += record;
        return refused;
      }
      split_record(body, book.delimiter, fields);
      rows.push_back({record, fields.size(), {}});
      Row& row = rows.back();
      if (fields.size() != book.header.size()) {
        row.error = "the row has " + std::to_string(fields.size()) + " fields, the header " +
                    std::to_string(book.header.size());
        return alone(written);
      }
      if (book.one.function == nullptr || book.one.function->takes_ranges) return price_alone(written);
      double* numbers = values + (rows.size() - 1) * most_arguments;
      const Plan& plan = book.one;
      for (int i = 0; i < plan.function->argument_count; ++i) {
        if (plan.column[i] < 0) {
          numbers[i] = 0.0;
          continue;
        }
        const std::string_view field = fields[static_cast<std::size_t>(plan.column[i])];
        if (read_plain(field, numbers[i])) continue;
        return price_alone(written);
      }
      return rows.size() == rows_at_once ? finish(written) : 0;
    }

    std::size_t finish(std::string& written) {
      if (rows.empty()) return 0;
      const std::size_t results = book.wanted.names.size();
      const Function& function = *book.one.function;
      Column columns[most_arguments];
      for (int i = 0; i < function.argument_count; ++i) columns[i] = {values + i, most_arguments};
      const bool by_row = book.one.selected_by_row || book.one.selector < 0;
      price_many(function, columns, rows.size(), by_row ? nullptr : book.selectors.data(),
                 static_cast<int>(results), answers.data());
      std::size_t refused = 0;
      for (std::size_t k = 0; k < rows.size(); ++k) {
        const Answer* of_row = answers.data() + k * results;
        bool row_refused = false;
        std::string reason;
        for (std::size_t j = 0; j < results && !row_refused; ++j) {
          row_refused = !of_row[j].is_number();
          if (!row_refused) continue;
          Operand given[most_arguments];
          for (int i = 0; i < function.argument_count; ++i)
            given[i] = {values + k * most_arguments + static_cast<std::size_t>(i)};
          reason = refusal_text(function, given, of_row[j]);
        }
        book.write_row(rows[k].record, rows[k].fields, of_row, results, reason, written);
        refused += row_refused;
      }
      rows.clear();
      return refused;
    }

   private:
    // The usual case: an unquoted number.
    static bool read_plain(std::string_view field, double& number) {
      const char* end = field.data() + field.size();
      const auto read = std::from_chars(field.data(), end, number);
      if (read.ec != std::errc()) return false;
      if (read.ptr == end) return true;
      if (*read.ptr != '%' || read.ptr + 1 != end) return false;
      number /= 100.0;
      return true;
    }

    // Writes the last row by itself, after those before it.
    std::size_t alone(std::string& written) {
      const Row row = rows.back();
      rows.pop_back();
      const std::size_t refused = finish(written);
      book.write_row(row.record, row.fields, nullptr, 0, row.error, written);
      return refused + 1;
    }

    // A row that names its function, or has ranges, quoted numbers, or something that is no number.
    std::size_t price_alone(std::string& written) {
      Row row = rows.back();
      rows.pop_back();
      std::size_t refused = finish(written);
      std::vector<Answer> found;
      row.error = price_row(found);
      book.write_row(row.record, row.fields, found.data(), found.size(), row.error, written);
      return refused + !row.error.empty();
    }

    // Prices the row whose fields were split last; gives why not, in words.
    std::string price_row(std::vector<Answer>& found) const {
      Plan plan = book.one;
      std::string room;
      if (plan.function == nullptr) {
        const std::string name =
            trimmed(field_text(fields[static_cast<std::size_t>(book.function_column)], room));
        const Function* function = find_in_catalogue(name.c_str());
        if (function == nullptr) return unknown_function(name);
        plan = book.plan_for(*function);
      }
      const Function& function = *plan.function;
      std::vector<GivenArgument> given(static_cast<std::size_t>(function.argument_count));
      for (int i = 0; i < function.argument_count; ++i) {
        GivenArgument& argument = given[static_cast<std::size_t>(i)];
        if (plan.column[i] < 0) {
          if (i != plan.selector)
            return std::string("the column ") + function.arguments[i].name + " is wanting";
          argument.values = {0.0};
          continue;
        }
        const std::string text(field_text(fields[static_cast<std::size_t>(plan.column[i])], room));
        if (!read_argument(text, argument))
          return function.arguments[i].name + (" \"" + text) + "\" is no number";
      }
      std::string error;
      for (const std::string& name : book.wanted.names) {
        if (plan.selector >= 0 && !plan.selected_by_row) {
          const ResultText* result =
              book.wanted.by_name ? result_named(function, name) : result_text(text_of(function), 0);
          if (result == nullptr) return std::string(function.name) + " has no result " + name;
          given[static_cast<std::size_t>(plan.selector)].values = {double(result->selector)};
        } else if (book.wanted.by_name && result_named(function, name) == nullptr) {
          return std::string(function.name) + " has no result " + name;
        }
        found.push_back(price(function, operands(given).data()));
        if (error.empty()) error = refusal_text(function, operands(given).data(), found.back());
      }
      return error;
    }

    const Book& book;
    std::vector<Row> rows;
    std::vector<std::string_view> fields;
    std::vector<Answer> answers;
    double values[rows_at_once * most_arguments];
  };

  static const ResultText* result_named(const Function& function, const std::string& name) {
    for (const ResultText& result : text_of(function).results)
      if (upper_case(result.name) == upper_case(name) && answers(function, result)) return &result;
    return nullptr;
  }

  int column_of(const std::string& name) const {
    const auto found = std::find(header.begin(), header.end(), name);
    if (found == header.end()) return -1;
    if (std::find(found + 1, header.end(), name) != header.end())
      throw Unusable{"the header has two columns " + name};
    return static_cast<int>(found - header.begin());
  }

  Plan plan_for(const Function& function) const {
    Plan plan;
    plan.function = &function;
    plan.selector = result_argument(function);
    for (int i = 0; i < function.argument_count; ++i)
      plan.column[i] = column_of(upper_case(function.arguments[i].name));
    plan.selected_by_row = plan.selector >= 0 && plan.column[plan.selector] >= 0 && options.results.empty();
    return plan;
  }

  void require_columns() const {
    std::string missing;
    for (int i = 0; i < one.function->argument_count; ++i)
      if (one.column[i] < 0 && i != one.selector)
        missing += (missing.empty() ? "" : ", ") + std::string(one.function->arguments[i].name);
    if (missing.empty()) return;
    throw Unusable{"the header has no column " + missing + "\n" +
                   "kestran price: expected are the columns of " + signature(*one.function) +
                   ", in any order; RetType may be left out"};
  }

  void choose_results() {
    wanted.by_name = !options.results.empty();
    if (!wanted.by_name) {
      const bool known = one.function != nullptr && !one.selected_by_row;
      wanted.names = {known ? result_text(text_of(*one.function), 0)->name : "result"};
      selectors = {0};
      return;
    }
    const bool all = upper_case(options.results) == "ALL";
    if (all && one.function == nullptr)
      throw Unusable{"--results all goes with --function; with a column Function name the results"};
    if (all) {
      for (const ResultText& result : text_of(*one.function).results)
        if (answers(*one.function, result)) wanted.names.push_back(result.name);
    } else {
      std::vector<std::string_view> names;
      split_record(options.results, ',', names);
      for (std::string_view name : names) wanted.names.push_back(trimmed(name));
    }
    if (one.function == nullptr) return;
    for (std::string& name : wanted.names) {
      const ResultText* result = result_named(*one.function, name);
      if (result == nullptr)
        throw Unusable{one.function->name + (" has no result " + name) + "; it has " + names_of_results()};
      name = result->name;
      selectors.push_back(result->selector);
    }
  }

  std::string names_of_results() const {
    std::string names;
    for (const ResultText& result : text_of(*one.function).results)
      if (answers(*one.function, result)) names += (names.empty() ? "" : ", ") + std::string(result.name);
    return names;
  }

  // The row as it came, short ones filled up so that what follows stands in its columns.
  void write_row(std::string_view record, std::size_t field_count, const Answer* found, std::size_t count,
                 const std::string& error, std::string& written) const {
    const std::string_view body = without_line_end(record);
    written += body;
    for (; field_count < header.size(); ++field_count) written += delimiter;
    for (std::size_t j = 0; j < wanted.names.size(); ++j) {
      written += delimiter;
      if (j >= count || !found[j].is_number()) continue;
      if (found[j].number != found[j].number) {
        written += "nan";
        continue;
      }
      char text[32];
      written.append(text, std::to_chars(text, text + sizeof text, found[j].number).ptr);
    }
    written += delimiter;
    append_field(written, error, delimiter);
    const std::string_view line_end = record.substr(body.size());
    written += line_end.empty() ? std::string_view("\n") : line_end;
  }

  const PriceOptions& options;
  const char delimiter;
  std::vector<std::string> header;
  const Function* named = nullptr;  // by --function
  int function_column = -1;
  Plan one;  // of that function
  Wanted wanted;
  std::vector<int> selectors;
};

// Cuts whole records into `parts` pieces of about the same size, each of whole records.
std::vector<std::string_view> cut(std::string_view text, std::size_t parts, char delimiter) {
  std::vector<std::string_view> pieces;
  std::size_t begin = 0;
  for (std::size_t part = 1; part <= parts && begin < text.size(); ++part) {
    std::size_t end = begin;
    const std::size_t wanted = part == parts ? text.size() : text.size() * part / parts;
    while (end < wanted) end = std::min(record_end(text, end, delimiter), text.size());
    pieces.push_back(text.substr(begin, end - begin));
    begin = end;
  }
  return pieces;
}

class Progress {
 public:
  Progress(std::uintmax_t bytes_expected) : expected(bytes_expected), shown(is_terminal(stderr)) {}
  ~Progress() {
    if (drawn) std::fputs("\r\x1b[K", stderr);
  }

  void advance(std::size_t rows, std::size_t bytes) {
    rows_done += rows;
    bytes_done += bytes;
    const auto now = std::chrono::steady_clock::now();
    if (!shown || now - drawn_at < std::chrono::milliseconds(200)) return;
    drawn_at = now;
    drawn = true;
    const double seconds = std::chrono::duration<double>(now - begun).count();
    std::fprintf(stderr, "\r\x1b[K%zu rows, %.0f a second", rows_done, double(rows_done) / seconds);
    if (expected == 0 || bytes_done == 0) return;
    const double share = std::min(1.0, double(bytes_done) / double(expected));
    const int bars = static_cast<int>(share * 30);
    std::fprintf(stderr, " [%.*s%.*s] %.0f s left", bars, "##############################", 30 - bars,
                 "..............................", seconds * (1.0 - share) / share);
  }

 private:
  std::uintmax_t expected;
  bool shown;
  bool drawn = false;
  std::size_t rows_done = 0;
  std::uintmax_t bytes_done = 0;
  std::chrono::steady_clock::time_point begun = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point drawn_at = begun;
};

char delimiter_of(const PriceOptions& options) {
  const std::string& text = options.delimiter;
  if (text == "\\t" || text == "tab") return '\t';
  if (text.size() != 1 || text == "\"" || text == "\n" || text == "\r")
    throw Unusable{"--delimiter takes one character, or tab"};
  return text[0];
}

int complain(const std::string& reason, int status) {
  std::fprintf(stderr, "kestran price: %s\n", reason.c_str());
  return status;
}

int price_stream(const PriceOptions& options, ByteSource& source, ByteSink& sink) {
  const char delimiter = delimiter_of(options);
  Book book(options, delimiter);
  const auto threads = static_cast<std::size_t>(std::clamp(options.threads, 1, 256));
  Progress progress(source.size());
  std::vector<std::string> written(threads);
  std::string text;
  std::size_t refused = 0;
  bool header_read = false;
  for (bool ended = false; !ended;) {
    const std::size_t before = text.size();
    // Each thread wants a piece worth its while.
    do {
      ended = !source.append_to(text, block_bytes);
    } while (!ended && threads > 1 && text.size() - before < threads * block_bytes / 4);
    if (source.failed()) return complain("the input cannot be read: " + source.reason(), not_usable);
    std::size_t begin = 0;
    if (!header_read) {
      const std::size_t end = record_end(text, 0, delimiter);
      if (end == std::string::npos && !ended) {
        if (text.size() > most_record_bytes) return complain("the header has no end", not_usable);
        continue;
      }
      begin = std::min(end, text.size());
      if (without_line_end(std::string_view(text).substr(0, begin)).empty())
        return complain("the input has no header", not_usable);
      std::string header = book.read_header(std::string_view(text).substr(0, begin));
      if (header.back() != '\n') header += '\n';
      if (options.header_out && !sink.write(header))
        return complain("the output cannot be written: " + sink.reason(), not_written);
      header_read = true;
    }
    std::size_t end = begin;
    for (std::size_t next = begin; (next = record_end(text, end, delimiter)) != std::string::npos;)
      end = next;
    if (ended) end = text.size();
    const std::string_view whole = std::string_view(text).substr(begin, end - begin);
    const std::vector<std::string_view> pieces = cut(whole, threads, delimiter);
    std::vector<std::size_t> refusals_of(pieces.size());
    for_each_in_parallel(pieces.size(), [&](std::size_t k) {
      written[k].clear();
      refusals_of[k] = book.price_rows(pieces[k], written[k]);
    });
    for (std::size_t k = 0; k < pieces.size(); ++k) {
      refused += refusals_of[k];
      if (!sink.write(written[k]))
        return complain("the output cannot be written: " + sink.reason(), not_written);
      progress.advance(static_cast<std::size_t>(std::count(written[k].begin(), written[k].end(), '\n')),
                       pieces[k].size());
    }
    text.erase(0, end);
    if (text.size() > most_record_bytes)
      return complain("a record of more than 64 MB: is a quote left open?", not_usable);
  }
  if (!sink.finish()) return complain("the output cannot be written: " + sink.reason(), not_written);
  return refused > 0 && options.strict ? not_written : priced;
}

}  // namespace

int price_book(const PriceOptions& options) {
  try {
    ByteSource source(options.input);
    if (source.failed()) return complain(options.input + " cannot be read: " + source.reason(), not_usable);
    ByteSink sink(options.output);
    if (sink.failed()) return complain(options.output + " cannot be written: " + sink.reason(), not_written);
    return price_stream(options, source, sink);
  } catch (const Unusable& unusable) {
    return complain(unusable.reason, not_usable);
  } catch (const std::bad_alloc&) {
    return complain("not enough memory", not_usable);
  }
}

}  // namespace kestran
