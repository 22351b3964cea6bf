#include "functions/nearest.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <vector>

namespace kestran {

// How many letters must be put in, taken out, changed or swapped with a neighbour to make one name of the
// other (optimal string alignment, after Damerau 1964).
static int distance(const std::string& a, const std::string& b) {
  const std::size_t width = b.size() + 1;
  std::vector<int> cost((a.size() + 1) * width);
  const auto at = [&](std::size_t i, std::size_t j) -> int& { return cost[i * width + j]; };
  for (std::size_t i = 0; i <= a.size(); ++i)
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        at(i, j) = static_cast<int>(i + j);
        continue;
      }
      at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + (a[i - 1] != b[j - 1])});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
    }
  return cost.back();
}

static std::string upper(std::string text) {
  for (char& character : text)
    character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  return text;
}

const Function* nearest_function(const std::string& name) {
  constexpr std::size_t longest_worth_a_look = 32;
  const std::string wanted = upper(name);
  if (wanted.empty() || wanted.size() > longest_worth_a_look) return nullptr;
  const Function* nearest = nullptr;
  int least = static_cast<int>(wanted.size() + 2) / 3 + 1;
  for (int i = 0; i < catalogue_size; ++i) {
    const int found = distance(wanted, upper(catalogue[i].name));
    // Of names equally near the one that begins alike, which is seldom the twin with an x.
    const bool better = found < least || (found == least && nearest != nullptr &&
                                          nearest->name[0] != name[0] && catalogue[i].name[0] == name[0]);
    if (!better) continue;
    least = found;
    nearest = &catalogue[i];
  }
  return nearest;
}

std::string unknown_function(const std::string& name) {
  const Function* const near = nearest_function(name);
  return "there is no function " + name +
         (near == nullptr ? "" : "; did you mean " + std::string(near->name) + "?");
}

}  // namespace kestran
