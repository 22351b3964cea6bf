#include "addin/modern/registration12.h"

#include "addin/modern/help_topic.h"
#include "functions/describe.h"

namespace kestran {

const Registered registered_functions[] = {
#define FUNCTION(name, function, frame, pointers, description, arguments) \
  {#name, description, arguments, pointers},
#include "functions/function_list.h"
};
const int registered_count = static_cast<int>(sizeof registered_functions / sizeof *registered_functions);

// Gives values and arrays (Q), takes these and references as they are (U), is safe on any thread ($).
static std::string type_text(int pointers) {
  return "Q" + std::string(static_cast<std::size_t>(pointers), 'U') + "$";
}

std::u16string counted(const std::string& text) {
  return static_cast<char16_t>(text.size()) + std::u16string(text.begin(), text.end());
}

std::vector<std::u16string> registration_texts(int place, const std::string& reference) {
  const Registered& row = registered_functions[place];
  const Function& function = catalogue[place];
  std::vector<std::u16string> texts;
  for (const std::string& text :
       {std::string(row.name), type_text(row.pointers), std::string(row.name),
        std::string(row.argument_names), std::string("1"), std::string("KESTRAN Add-In"), std::string(),
        help_topic(reference, row.name), std::string(row.description)})
    texts.push_back(counted(text));
  for (int i = 0; i < function.argument_count; ++i) {
    const std::string help = argument_meaning(function, i);
    texts.push_back(counted(help.size() <= longest_text ? help : argument_meaning(function, i, true)));
  }
  texts.push_back(counted(""));
  return texts;
}

}  // namespace kestran
