#include "host/manual.h"

#include <sstream>
#include <vector>

#include "functions/describe.h"

namespace kestran {
namespace {

// Text as the page's source: what would be read as an instruction is not.
std::string plain(const std::string& text) {
  std::string source;
  for (char character : text) {
    if (character == '\\') source += '\\';
    if (character == '-') source += '\\';
    if (character == '`') continue;
    if ((character == '.' || character == '\'') && (source.empty() || source.back() == '\n')) source += "\\&";
    source += character;
  }
  return source;
}

std::vector<const CLI::Option*> options_of(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->nonpositional(); });
}

std::string options(const CLI::App& app) {
  std::string text;
  for (const CLI::Option* option : options_of(app)) {
    std::string name;
    for (const std::string& letter : option->get_snames())
      name += (name.empty() ? "" : ", ") + ("-" + letter);
    for (const std::string& word : option->get_lnames()) name += (name.empty() ? "" : ", ") + ("--" + word);
    text += ".TP\n\\fB" + plain(name) + "\\fR";
    if (option->get_items_expected_min() > 0) text += " " + plain(option->get_type_name());
    text += "\n" + plain(option->get_description()) + ".\n";
  }
  return text;
}

std::string words(const CLI::App& app) {
  std::string text;
  for (const CLI::Option* option : options_of(app))
    for (const std::string& word : option->get_lnames()) text += (text.empty() ? "--" : " --") + word;
  return text;
}

}  // namespace

std::string manual_page(const CLI::App& command, const CLI::App& price) {
  std::string text = ".TH KESTRAN 1 \"\" \"kestran " KESTRAN_VERSION
                     "\"\n.SH NAME\nkestran \\- price options with worksheet formulas\n"
                     ".SH SYNOPSIS\n\\fBkestran\\fR [FORMULA...]\n.br\n\\fBkestran price\\fR "
                     "[OPTION...]\n.SH DESCRIPTION\n.nf\n";
  text += plain(command.get_description()) + "\n.fi\n.SH OPTIONS\n" + options(command);
  text += ".SH KESTRAN PRICE\n.nf\n" + plain(price.get_description()) + "\n.fi\n" + options(price);
  text += ".SH FUNCTIONS\n";
  for (const FamilyText* family : families) {
    text += ".SS " + plain(family->title) + "\n";
    for (const FunctionText& function : family->functions)
      text += ".TP\n\\fB" + plain(function.name) + "\\fR\n" + plain(function.headline) + ".\n";
  }
  text += ".SH EXAMPLE\n.nf\n$ kestran \\(aq" + plain(example_formula(catalogue[0])) + "\\(aq\n.fi\n";
  return text;
}

std::string bash_completion(const CLI::App& command, const CLI::App& price) {
  std::ostringstream text;
  text << "# Completion of kestran for bash.\n_kestran() {\n"
       << "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
       << "  local functions='";
  for (int i = 0; i < catalogue_size; ++i) text << (i > 0 ? " " : "") << catalogue[i].name;
  text << "'\n"
       << "  COMPREPLY=()\n"
       << "  case $before in\n"
       << "    --describe | --function) mapfile -t COMPREPLY < <(compgen -W \"$functions\" -- \"${word^^}\") "
          ";;\n"
       << "    --input | --output | --library) mapfile -t COMPREPLY < <(compgen -f -- \"$word\") ;;\n"
       << "    *)\n"
       << "      local options='" << words(command) << "'\n"
       << "      [ \"${COMP_WORDS[1]}\" != price ] || options='" << words(price) << "'\n"
       << "      [ \"$COMP_CWORD\" != 1 ] || options+=' price'\n"
       << "      mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$word\")\n"
       << "      ;;\n"
       << "  esac\n"
       << "}\n"
       << "complete -o filenames -F _kestran kestran\n";
  return text.str();
}

}  // namespace kestran
