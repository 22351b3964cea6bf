#include "functions/catalogue_json.h"

#include <cmath>
#include <vector>

#include "functions/describe.h"
#include "functions/example.h"
#include "functions/explain.h"
#include "functions/number_text.h"

namespace kestran {
namespace {

// Members and elements appended one after another; closing takes the last comma back.
class Json {
 public:
  Json& open(char bracket) {
    text += bracket;
    return *this;
  }
  Json& close(char bracket) {
    if (text.back() == ',') text.pop_back();
    text += bracket;
    text += ',';
    return *this;
  }
  Json& key(const char* name) {
    add_quoted(name);
    text += ':';
    return *this;
  }
  Json& value(const std::string& words) {
    add_quoted(words);
    text += ',';
    return *this;
  }
  Json& value(const char* words) { return words == nullptr ? plain("null") : value(std::string(words)); }
  Json& value(double number) { return plain(std::isfinite(number) ? exact_number(number) : "null"); }
  Json& value(int number) { return plain(std::to_string(number)); }
  Json& value(bool yes) { return plain(yes ? "true" : "false"); }

  std::string text;

 private:
  Json& plain(const std::string& token) {
    text += token;
    text += ',';
    return *this;
  }
  // The texts hold no control characters.
  void add_quoted(const std::string& words) {
    text += '"';
    for (char c : words) {
      if (c == '"' || c == '\\') text += '\\';
      text += c;
    }
    text += '"';
  }
};

const char* shape_name(ParameterKind kind) {
  switch (kind) {
    case ParameterKind::line:
      return "range";
    case ParameterKind::line_or_number:
      return "range or number";
    case ParameterKind::square:
      return "square block";
    case ParameterKind::block:
    case ParameterKind::triangle:
      return "block";
    default:
      return "number";
  }
}

void add_argument(Json& json, const Function& function, int i) {
  const ArgumentText& text = *text_of(function).arguments[i];
  json.open('{').key("name").value(text.name).key("shape").value(shape_name(function.arguments[i].kind));
  json.key("meaning").value(text.meaning).key("choices").open('[');
  for (const Choice& choice : text.choices)
    json.open('{').key("value").value(choice.value).key("meaning").value(choice.meaning).close('}');
  json.close(']').key("other_choices").value(text.other_choices);
  json.key("described").value(argument_meaning(function, i));
  json.key("unit").value(unit_name(text.unit));
  json.key("low").value(text.low).key("high").value(text.high).key("recommended").value(text.recommended);
  json.key("whole").value(counts_whole(text)).key("odd").open('[');
  for (const OddNumbers& odd : odd_numbers(text))
    json.open('{')
        .key("above")
        .value(odd.above)
        .key("below")
        .value(odd.below)
        .key("words")
        .value(odd.words)
        .close('}');
  json.close(']').close('}');
}

template <class Places>
void add_places(Json& json, const char* name, const Places& lists) {
  json.key(name).open('[');
  for (const auto& list : lists) {
    json.open('[');
    for (int place : list) json.value(place);
    json.close(']');
  }
  json.close(']');
}

const char* each_name(ResultText::Each each) {
  return each == ResultText::of_month ? "month" : each == ResultText::of_period ? "period" : "one";
}

void add_results(Json& json, const FunctionText& text) {
  json.key("results").open('[');
  for (const ResultText& result : text.results) {
    json.open('{').key("selector").value(result.selector).key("name").value(result.name);
    json.key("meaning").value(result.meaning).key("unit").value(result.unit);
    json.key("each").value(each_name(result.each)).key("functions").open('[');
    for (const Function* function : functions_of(text))
      if (answers(*function, result)) json.value(function->name);
    json.close(']').close('}');
  }
  json.close(']');
}

void add_function(Json& json, const FunctionText& text) {
  const std::vector<const Function*> twins = functions_of(text);
  const Function& function = *twins.front();
  json.open('{').key("name").value(text.name).key("functions").open('[');
  for (const Function* twin : twins) json.value(twin->name);
  json.close(']').key("signature").value(signature(function)).key("headline").value(text.headline);
  json.key("prices")
      .value(text.prices)
      .key("accuracy")
      .value(text.accuracy)
      .key("related")
      .value(text.related);
  json.key("arguments").open('[');
  for (int i = 0; i < function.argument_count; ++i) add_argument(json, function, i);
  json.close(']').key("result_argument").value(result_argument(function));
  add_results(json, text);
  add_places(json, "in_order", in_order(function));
  add_places(json, "fixings_within", fixings_within(function));
  json.key("example").open('[');
  for (const std::string& written : written_example_arguments(text)) json.value(written);
  json.close(']').close('}');
}

}  // namespace

std::string catalogue_json() {
  Json json;
  json.open('{').key("families").open('[');
  for (const FamilyText* family : families) {
    json.open('{').key("title").value(family->title).key("functions").open('[');
    for (const FunctionText& text : family->functions) add_function(json, text);
    json.close(']').close('}');
  }
  json.close(']').close('}');
  json.text.back() = '\n';
  return json.text;
}

}  // namespace kestran
