// What the fuzzers share: an input taken apart into choices, a count of calls, and how a fault ends the
// program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "functions/example.h"
#include "functions/price_many.h"

/// Of libFuzzer: changes an input a little and gives its new size.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace kestran::fuzz {

/// Reads an input as a row of choices. Where the bytes end, a generator that starts from all of them goes on,
/// so that every input makes a whole case, the same each time.
class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size) : next(data), end(data + size) {
    for (const std::uint8_t* byte = data; byte != end; ++byte) state = (state ^ *byte) * 0x100000001B3u;
  }

  explicit Choices(std::uint64_t seed) : next(nullptr), end(nullptr), state(seed) {}

  std::uint64_t bits() {
    if (end - next >= 8) {
      std::uint64_t taken = 0;
      std::memcpy(&taken, next, sizeof taken);
      next += 8;
      return taken;
    }
    state += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = (state ^ state >> 30) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBu;
    return mixed ^ mixed >> 31;
  }
  /// A number below `limit`, which is not above 65536.
  int below(int limit) {
    std::uint64_t taken = 0;
    if (end - next >= 2) {
      taken = static_cast<std::uint64_t>(next[0] | next[1] << 8);
      next += 2;
    } else {
      taken = bits() >> 48;
    }
    return static_cast<int>(taken * static_cast<std::uint64_t>(limit) >> 16);
  }
  bool one_in(int times) { return below(times) == times - 1; }
  /// Evenly from low to high.
  double between(double low, double high) {
    return low + (high - low) * (static_cast<double>(bits() >> 11) * 0x1p-53);
  }
  /// Any double: NaNs of all sorts, infinities and subnormal numbers among them.
  double any_double() {
    const std::uint64_t taken = bits();
    double number = 0.0;
    std::memcpy(&number, &taken, sizeof number);
    return number;
  }
  template <class Item, std::size_t count>
  const Item& of(const Item (&items)[count]) {
    return items[below(static_cast<int>(count))];
  }
  template <class Item>
  Item of(std::initializer_list<Item> items) {
    return items.begin()[below(static_cast<int>(items.size()))];
  }

 private:
  const std::uint8_t* next;
  const std::uint8_t* end;
  std::uint64_t state = 0xCBF29CE484222325u;
};

/// Bits that no other input of this run is made from. The first seed that a run gives decides them all.
std::uint64_t fresh_bits(unsigned seed);

/// Makes one case of an input that is a row of choices: some calls that have much in common. Of the programs
/// that are linked with draws.cpp, which has an input make many.
void make_case(Choices& choices);

/// Counts calls into what is tested. The count survives the program in the file KESTRAN_FUZZ_CALLS, if that
/// is set.
void count_calls(std::uint64_t made = 1);

/// Says what is wrong and ends the program, upon which its input is kept.
[[noreturn]] void fault(const std::string& what);

inline void require(bool holds, const char* what) {
  if (!holds) fault(what);
}

/// Whether two numbers are the same to the bit, or both not a number.
bool same_number(double a, double b);
bool same_answer(const Answer& a, const Answer& b);

/// Numbers that hosts are known to hand over, sensible and not.
double odd_number(Choices& choices);

/// The place of a function in the catalogue. The longer one takes than the others, the more rarely it comes.
int any_place(Choices& choices);

/// Argument i of the function's example, with most numbers moved within what its kind makes sense for.
void draw_argument(const Function& function, int i, Choices& choices, GivenArgument& given);

/// All of them.
std::vector<GivenArgument> realistic_call(const Function& function, Choices& choices);

/// Deals that are like one, each with values of its own in some arguments.
struct Columns {
  Columns(const Function& function, const std::vector<GivenArgument>& given, std::size_t deals,
          Choices& choices);

  std::vector<std::vector<double>> memory;
  std::vector<Column> columns;
};

/// What `make` makes of each function, in the order of the catalogue.
template <class Make>
auto of_each_function(const Make& make) {
  std::vector<decltype(make(catalogue[0]))> list;
  for (int place = 0; place < catalogue_size; ++place) list.push_back(make(catalogue[place]));
  return list;
}

/// An argument as a formula has it, but for codes of what is no number; a call; an answer.
std::string shown(const Operand& given);
std::string shown(const Function& function, const Operand* given);
std::string shown(const Answer& answer);

}  // namespace kestran::fuzz
