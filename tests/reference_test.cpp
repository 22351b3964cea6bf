// The texts of web/reference: one for every function, which name what exists.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "functions/catalogue.h"
#include "functions/texts.h"

namespace kestran {
namespace {

std::string text_of_file(const std::string& name) {
  std::ifstream file(KESTRAN_TEST_DATA "/../../web/reference/" + name + ".md");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Twins share a text, mostly under the name without the x.
std::string file_of(const Function& function) {
  const std::string name = function.name, computed_by = function.computed_by;
  if (!text_of_file(computed_by).empty()) return computed_by;
  return name[0] == 'x' && !text_of_file(name.substr(1)).empty() ? name.substr(1) : name;
}

// What stands behind `begin` up to `end`, every time.
std::vector<std::string> between(const std::string& text, const std::string& begin, const std::string& end) {
  std::vector<std::string> found;
  for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at)) {
    at += begin.size();
    const std::size_t stop = text.find(end, at);
    if (stop == std::string::npos) break;
    found.push_back(text.substr(at, stop - at));
    at = stop + end.size();
  }
  return found;
}

// Names of the results of all functions.
std::set<std::string> result_names() {
  std::set<std::string> names;
  for (int f = 0; f < catalogue_size; ++f)
    for (const ResultText& result : text_of(catalogue[f]).results) names.insert(result.name);
  return names;
}

TEST(Reference, EveryFunctionHasATextWithWordsAndRelatedFunctionsThatExist) {
  for (int f = 0; f < catalogue_size; ++f) {
    const Function& function = catalogue[f];
    const std::string text = text_of_file(file_of(function));
    ASSERT_EQ(text.rfind("---\nwords: ", 0), 0u) << function.name;
    const std::string head = text.substr(0, text.find("\n---\n", 4) + 1);
    EXPECT_GE(std::count(head.begin(), head.begin() + head.find("\nrelated:"), ','), 3)
        << function.name << " has too few words to be found by";
    const std::vector<std::string> related = between(head, "\n- ", ": ");
    EXPECT_GE(related.size(), 2u) << function.name;
    for (const std::string& name : related) {
      const Function* other = find_in_catalogue(name.c_str());
      ASSERT_NE(other, nullptr) << function.name << " names " << name;
      EXPECT_EQ(name, other->name) << function.name;
      EXPECT_STRNE(other->computed_by, function.computed_by) << function.name << " names itself";
    }
    std::stringstream listed(text_of(function).related);
    for (std::string name; std::getline(listed >> std::ws, name, ',');)
      EXPECT_EQ(std::count(related.begin(), related.end(), name), 1)
          << function.name << " leaves out " << name;
    for (const char* part : {"$", "\n## Conventions\n", "\n*"})
      EXPECT_NE(text.find(part), std::string::npos) << function.name << " lacks " << part;
  }
}

// What is set as code is an argument of the function, a function or a result: a symbol is defined by what
// exists.
TEST(Reference, CodeNamesArgumentsFunctionsAndResults) {
  const std::set<std::string> results = result_names();
  for (int f = 0; f < catalogue_size; ++f) {
    const Function& function = catalogue[f];
    std::set<std::string> known = results;
    for (int i = 0; i < function.argument_count; ++i) known.insert(function.arguments[i].name);
    for (const std::string& name : between(text_of_file(file_of(function)), "`", "`"))
      EXPECT_TRUE(known.count(name) > 0 || find_in_catalogue(name.c_str()) != nullptr)
          << function.name << ": " << name;
  }
}

}  // namespace
}  // namespace kestran
