// Writes the help on functions and arguments that the IntelliSense add-in of Excel-DNA shows while a formula
// is typed. It looks beside an add-in for the file of its name with .intellisense.xml in the place of .xll.
//
//   make_intellisense FILE             writes FILE
//   make_intellisense FILE ADDRESS     with links to ADDRESS/NAME.html, which must begin with http
#include <cstdio>
#include <fstream>
#include <string>

#include "functions/describe.h"

namespace kestran {
namespace {

std::string attribute(const char* name, const std::string& text) {
  std::string value;
  for (const char c : text) {
    switch (c) {
      case '&':
        value += "&amp;";
        break;
      case '<':
        value += "&lt;";
        break;
      case '"':
        value += "&quot;";
        break;
      default:
        value += c;
    }
  }
  return std::string(" ") + name + "=\"" + value + "\"";
}

// "0 premium, 1 delta, ..."
std::string results(const Function& function) {
  std::string text;
  for (const ResultText& result : text_of(function).results)
    if (answers(function, result))
      text += (text.empty() ? "" : ", ") + std::to_string(result.selector) + " " + result.name;
  return text;
}

void write_function(std::ostream& out, const Function& function, const std::string& address) {
  out << "    <Function" << attribute("Name", function.name)
      << attribute("Description", text_of(function).headline);
  if (!address.empty()) out << attribute("HelpTopic", address + "/" + function.name + ".html");
  out << ">\n";
  for (int i = 0; i < function.argument_count; ++i) {
    std::string meaning = argument_meaning(function, i);
    if (i == result_argument(function)) meaning += ": " + results(function);
    out << "      <Argument" << attribute("Name", function.arguments[i].name)
        << attribute("Description", meaning) << "/>\n";
  }
  out << "    </Function>\n";
}

bool write(const char* path, const std::string& address) {
  std::ofstream out(path, std::ios::binary);
  out << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<IntelliSense xmlns=\"http://schemas.excel-dna.net/intellisense/1.0\">\n  <FunctionInfo>\n";
  for (int i = 0; i < catalogue_size; ++i) write_function(out, catalogue[i], address);
  out << "  </FunctionInfo>\n</IntelliSense>\n";
  out.close();
  return out.good();
}

}  // namespace
}  // namespace kestran

int main(int count, char** arguments) {
  const std::string address = count == 3 ? arguments[2] : "";
  if ((count != 2 && count != 3) || (count == 3 && address.rfind("http", 0) != 0)) {
    std::fputs("make_intellisense FILE [ADDRESS]\n", stderr);
    return 2;
  }
  if (kestran::write(arguments[1], address)) return 0;
  std::fprintf(stderr, "make_intellisense: %s cannot be written\n", arguments[1]);
  return 1;
}
