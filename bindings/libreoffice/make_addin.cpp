// Writes what LibreOffice is told of the worksheet functions.
//
//   make_addin interface   the UNO interface, in IDL
//   make_addin methods     its methods, in C++, for kestran.cpp
//   make_addin texts       names and help for Calc, as CalcAddIns.xcu
#include <cstdio>
#include <functional>
#include <string>

#include "functions/describe.h"

namespace kestran {
namespace {

// The name of an argument between programs: Calc sorts by it.
std::string place(int i) { return (i < 10 ? "a0" : "a") + std::to_string(i); }

// A text for each argument, separated by commas.
std::string list(const Function& function, const std::function<std::string(int)>& text_of_argument) {
  std::string text;
  for (int i = 0; i < function.argument_count; ++i) text += (i > 0 ? ", " : "") + text_of_argument(i);
  return text;
}

void write_interface() {
  std::puts("module kestran { interface XFunctions {");
  for (int i = 0; i < catalogue_size; ++i)
    std::printf("  any %s(%s);\n", catalogue[i].name,
                list(catalogue[i], [](int k) { return "[in] any " + place(k); }).c_str());
  std::puts("}; };");
}

void write_methods() {
  for (int i = 0; i < catalogue_size; ++i)
    std::printf(
        "Any SAL_CALL %s(%s) override {\n"
        "  const Any* const given[] = {%s};\n"
        "  return priced(catalogue[%d], given);\n}\n",
        catalogue[i].name, list(catalogue[i], [](int k) { return "const Any& " + place(k); }).c_str(),
        list(catalogue[i], [](int k) { return "&" + place(k); }).c_str(), i);
}

std::string escaped(const std::string& text) {
  std::string result;
  for (char character : text) {
    if (character == '&')
      result += "&amp;";
    else if (character == '<')
      result += "&lt;";
    else
      result += character;
  }
  return result;
}

void write_text(const char* property, const std::string& text) {
  std::printf("<prop oor:name=\"%s\"><value xml:lang=\"en-US\">%s</value></prop>\n", property,
              escaped(text).c_str());
}

// What does not fit into the two lines that Calc has for an argument leaves out the asides of its choices.
std::string argument_help(const Function& function, int i) {
  const bool results = i == result_argument(function) && text_of(function).arguments[i]->choices.count == 0;
  const std::string meaning = argument_meaning(function, i) + (results ? ": " + result_names(function) : "");
  return meaning.size() <= 150 || results ? meaning : argument_meaning(function, i, true);
}

std::string help(const Function& function) {
  const FunctionText& about = text_of(function);
  const std::string results = result_names(function);
  return about.prices + std::string(" ") + about.accuracy +
         (results.empty() ? "" : " Results: " + results + ".") +
         " All arguments are needed; an empty cell counts as 0, TRUE as 1.";
}

void write_texts() {
  std::puts(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<oor:component-data xmlns:oor=\"http://openoffice.org/2001/registry\" "
      "oor:name=\"CalcAddIns\" oor:package=\"org.openoffice.Office\">\n"
      "<node oor:name=\"AddInInfo\"><node oor:name=\"_xll\" oor:op=\"replace\">"
      "<node oor:name=\"AddInFunctions\">");
  for (int i = 0; i < catalogue_size; ++i) {
    const Function& function = catalogue[i];
    std::printf("<node oor:name=\"%s\" oor:op=\"replace\">\n", function.name);
    write_text("DisplayName", function.name);
    write_text("Description", help(function));
    std::puts("<prop oor:name=\"Category\"><value>Add-In</value></prop>");
    write_text("CompatibilityName", function.name);
    std::puts("<node oor:name=\"Parameters\">");
    for (int k = 0; k < function.argument_count; ++k) {
      std::printf("<node oor:name=\"%s\" oor:op=\"replace\">\n", place(k).c_str());
      write_text("DisplayName", function.arguments[k].name);
      write_text("Description", argument_help(function, k));
      std::puts("</node>");
    }
    std::puts("</node></node>");
  }
  std::puts("</node></node></node></oor:component-data>");
}

}  // namespace
}  // namespace kestran

int main(int count, char** arguments) {
  const std::string wanted = count == 2 ? arguments[1] : "";
  if (wanted == "interface")
    kestran::write_interface();
  else if (wanted == "methods")
    kestran::write_methods();
  else if (wanted == "texts")
    kestran::write_texts();
  else {
    std::fputs("make_addin interface|methods|texts\n", stderr);
    return 2;
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}
