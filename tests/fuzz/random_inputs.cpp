// PROGRAM COUNT [FILE...]: a fuzzer without libFuzzer, as one of the tests. Its inputs are random, the same
// each time: bytes, or the files, of case files the formulas, with some bytes changed.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int*, char***) __attribute__((weak));
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                               unsigned seed) __attribute__((weak));

static std::mt19937 choices;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most) {
  if (size == 0) {
    size = std::min<std::size_t>(choices() % 64, most);
    for (std::size_t i = 0; i < size; ++i) data[i] = static_cast<std::uint8_t>(choices());
  } else {
    for (auto changes = choices() % 3; changes > 0; --changes)
      data[choices() % size] = static_cast<std::uint8_t>(choices());
  }
  return size;
}

int main(int count, char** arguments) {
  std::vector<std::string> seeds;
  for (int i = 2; i < count; ++i) {
    std::ifstream file(arguments[i]);
    if (std::string(arguments[i]).find(".cases") == std::string::npos)
      seeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    else
      for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#') seeds.push_back(line.substr(0, line.find('\t')));
  }
  if (LLVMFuzzerInitialize != nullptr) LLVMFuzzerInitialize(&count, &arguments);
  for (long inputs = std::atol(arguments[1]); inputs > 0; --inputs) {
    std::uint8_t input[4000];
    std::size_t size = 0;
    if (!seeds.empty()) {
      const std::string& seed = seeds[choices() % seeds.size()];
      size = std::min(seed.size(), sizeof input);
      std::copy_n(seed.begin(), size, input);
    }
    size = LLVMFuzzerCustomMutator == nullptr
               ? LLVMFuzzerMutate(input, size, sizeof input)
               : LLVMFuzzerCustomMutator(input, size, sizeof input, static_cast<unsigned>(choices()));
    LLVMFuzzerTestOneInput(input, size);
  }
}
