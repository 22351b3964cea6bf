// kestran price: deals in, prices out, both as comma-separated values.
#pragma once

#include <string>

namespace kestran {

struct PriceOptions {
  std::string function;  // empty: the column Function names each row's
  std::string input;     // empty: standard input
  std::string output;    // empty: standard output; else the whole file or none
  std::string results;   // names with commas, or "all"; empty: what RetType asks for, else the main result
  std::string delimiter = ",";
  int threads = 1;
  bool header_out = true;
  bool strict = false;
};

/// Prices every row and gives the exit status: 0, 1 when the output cannot be written or, if strict, a row
/// was refused, 2 when the input or an option cannot be used. Rows keep their order; memory does not grow
/// with them.
int price_book(const PriceOptions& options);

}  // namespace kestran
