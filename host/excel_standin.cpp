#include "host/excel_standin.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

#include "host/library.h"
#include "host/wide_text.h"

namespace kestran {
namespace {

constexpr std::uintptr_t first_sheet_id = 0x4B0001;
constexpr std::size_t longest_registered = 255;  // characters of a text
constexpr std::size_t most_records = 30;         // that this host passes, with the result

using Command = int(EXCEL_STDCALL*)();

template <class Record>
Record error_record(int code) {
  Record record;
  record.type = xltypeErr;
  record.value.error = static_cast<decltype(record.value.error)>(code);
  return record;
}

template <class Record>
Record number_record(double number) {
  Record record;
  record.type = xltypeNum;
  record.value.number = number;
  return record;
}

template <class Record>
Record boolean_record(bool value) {
  Record record;
  record.type = xltypeBool;
  record.value.boolean = value ? 1 : 0;
  return record;
}

// The characters of a counted text.
std::string characters(const char* text) { return {text + 1, static_cast<unsigned char>(text[0])}; }
std::string characters(const char16_t* text) { return narrow({text + 1, text[0]}); }

// A text as the records of an interface hold it, as far as it fits.
std::string as_held(const std::string& text, const XLOPER*) {
  return text.substr(0, Interface<XLOPER>::longest_text);
}
std::u16string as_held(const std::string& text, const XLOPER12*) {
  return widen(text).substr(0, Interface<XLOPER12>::longest_text);
}

template <class Record>
bool number_operand(const Record& operand, double& number) {
  Scalar scalar;
  if (!read_scalar(operand, scalar) || scalar.kind != Kind::number) return false;
  number = scalar.number;
  return true;
}

template <class Record>
bool text_operand(const Record& operand, std::string& text) {
  if (operand.type != xltypeStr || operand.value.text == nullptr) return false;
  text = characters(operand.value.text);
  return true;
}

// Menus are told apart by what the user reads: the letter an ampersand underlines and case do not count.
std::string menu_key(const std::string& name) {
  std::string key = upper_case(name);
  key.erase(std::remove(key.begin(), key.end(), '&'), key.end());
  return key;
}

// One call into Excel: what the add-in gave and what it gets. Its functions give Excel's return code.
template <class Record>
struct Call {
  int count;
  Record** operands;
  bool wants_result;
  Record answer;

  int answer_with(const Record& given) {
    answer = given;
    return xlretSuccess;
  }
};

// Memory for texts: the count, the characters and an end mark each.
template <class Record>
std::size_t text_bytes(const Scalar& scalar) {
  if (scalar.kind != Kind::text) return 0;
  const auto held = as_held(scalar.text, static_cast<const Record*>(nullptr));
  return (held.size() + 2) * sizeof held[0];
}

// One value as a record; its text goes to `memory`, which is moved to behind it.
template <class Record>
Record record_of(const Scalar& scalar, char*& memory) {
  Record record;
  switch (scalar.kind) {
    case Kind::empty:
      record.type = xltypeNil;
      break;
    case Kind::missing:
      record.type = xltypeMissing;
      break;
    case Kind::number:
      return number_record<Record>(scalar.number);
    case Kind::boolean:
      return boolean_record<Record>(scalar.code != 0);
    case Kind::error:
      return error_record<Record>(scalar.code);
    case Kind::text: {
      const auto held = as_held(scalar.text, static_cast<const Record*>(nullptr));
      using Character = typename decltype(held)::value_type;
      auto* text = reinterpret_cast<Character*>(memory);
      record.type = xltypeStr;
      record.value.text = text;
      *text++ = static_cast<Character>(held.size());
      text = std::copy_n(held.data(), held.size(), text);
      *text++ = 0;
      memory = reinterpret_cast<char*>(text);
    }
  }
  return record;
}

// Rows of cells within a block.
struct Area {
  std::size_t first_row = 0, first_column = 0, rows = 0, columns = 0;
};

template <class Record>
Record make_array(const Block& block, const Area& area, std::unique_ptr<char[]>& memory) {
  const auto cell = [&](std::size_t index) -> const Scalar& {
    const std::size_t row = area.first_row + index / area.columns;
    return block.cells[row * block.columns + area.first_column + index % area.columns];
  };
  const std::size_t count = area.rows * area.columns;
  std::size_t all_text_bytes = 0;
  for (std::size_t i = 0; i < count; ++i) all_text_bytes += text_bytes<Record>(cell(i));
  memory.reset(new char[count * sizeof(Record) + all_text_bytes]);
  auto* const records = reinterpret_cast<Record*>(memory.get());
  char* text = memory.get() + count * sizeof(Record);
  for (std::size_t i = 0; i < count; ++i) new (records + i) Record(record_of<Record>(cell(i), text));
  Record array;
  array.type = xltypeMulti;
  array.value.array.elements = records;
  array.value.array.rows = static_cast<decltype(array.value.array.rows)>(area.rows);
  array.value.array.columns = static_cast<decltype(array.value.array.columns)>(area.columns);
  return array;
}

// Leaves memory to the add-in, which has to free it by this address.
void hand_out(const void* address, std::unique_ptr<char[]> memory, bool array) {
  Standin& excel = standin();
  excel.handed_out[address] = {std::move(memory), array};
  ++(array ? excel.accounting.arrays_handed_out : excel.accounting.texts_handed_out);
}

void take_back(const void* address, const char* what) {
  Standin& excel = standin();
  const auto found = excel.handed_out.find(address);
  if (found == excel.handed_out.end()) {
    note_fault(std::string("double free: ") + what + " that was freed before or never handed out");
    return;
  }
  ++(found->second.array ? excel.accounting.arrays_freed : excel.accounting.texts_freed);
  excel.handed_out.erase(found);
}

// The block a reference lies on, by the sheet's place among those of the line, and the part of it; false for
// a reference to anything else.
template <class Record>
bool find_cells(const Record& reference, std::size_t& sheet, Area& area) {
  const Standin& excel = standin();
  sheet = 0;
  const auto* list = &reference.value.sheet_reference;
  if (reference.type == xltypeRef) {
    list = reference.value.reference.areas;
    sheet = reference.value.reference.sheet - first_sheet_id;
  }
  if (sheet >= excel.sheets.size() || list == nullptr || list->count != 1) return false;
  const Block& block = *excel.sheets[sheet];
  const Origin origin = origin_of<Record>(block);
  const auto& cells = list->area;
  const auto first_row = static_cast<std::size_t>(cells.first_row) - origin.row;
  const auto last_row = static_cast<std::size_t>(cells.last_row) - origin.row;
  const auto first_column = static_cast<std::size_t>(cells.first_column) - origin.column;
  const auto last_column = static_cast<std::size_t>(cells.last_column) - origin.column;
  if (first_row > last_row || last_row >= block.rows) return false;
  if (first_column > last_column || last_column >= block.columns) return false;
  area = {first_row, first_column, last_row - first_row + 1, last_column - first_column + 1};
  return true;
}

// Whether cells are still to be calculated, which they are from then on.
bool take_late(std::size_t sheet) {
  Standin& excel = standin();
  if (!excel.cells_come_late) return false;
  excel.calculated.resize(excel.sheets.size());
  return !std::exchange(excel.calculated[sheet], static_cast<char>(true));
}

// What a value given for coercion holds: cells of a sheet, of an array or one value.
template <class Record>
int read_cells(const Record& value, std::shared_ptr<const Block>& block, Area& area) {
  Scalar scalar;
  switch (value.type) {
    case xltypeRef:
    case xltypeSRef: {
      std::size_t sheet = 0;
      if (!find_cells(value, sheet, area)) return xlretFailed;
      block = standin().sheets[sheet];
      return take_late(sheet) ? xlretUncalced : xlretSuccess;
    }
    case xltypeMulti:
      block = read_array(value);
      break;
    default: {
      if (!read_scalar(value, scalar)) return xlretInvXloper;
      if (scalar.kind == Kind::missing) scalar.kind = Kind::empty;
      block = std::make_shared<Block>(Block{1, 1, {scalar}});
    }
  }
  if (block == nullptr) return xlretInvXloper;
  area = {0, 0, block->rows, block->columns};
  return xlretSuccess;
}

template <class Record>
int coerce_now(Call<Record>& call) {
  const int planned = std::exchange(standin().next_coerce_code, 0);
  if (planned != 0) return planned;
  double wanted = xltypeMulti;
  if (call.count > 1 && !number_operand(*call.operands[1], wanted)) return xlretInvXloper;
  if (wanted != xltypeMulti && wanted != xltypeNum && wanted != xltypeInt) return xlretFailed;

  std::shared_ptr<const Block> block;
  Area area;
  const int code = read_cells(*call.operands[0], block, area);
  if (code != xlretSuccess || !call.wants_result) return code;
  if (wanted == xltypeMulti) {
    std::unique_ptr<char[]> memory;
    call.answer = make_array<Record>(*block, area, memory);
    hand_out(call.answer.value.array.elements, std::move(memory), true);
    return xlretSuccess;
  }
  double number = 0.0;
  if (area.rows * area.columns != 1) return xlretFailed;
  if (!number_of(block->cells[area.first_row * block->columns + area.first_column], number))
    return xlretFailed;
  if (wanted == xltypeNum) return call.answer_with(number_record<Record>(number));
  const double whole = std::trunc(number);
  using Integer = decltype(call.answer.value.integer);
  if (!(whole >= std::numeric_limits<Integer>::min() && whole <= std::numeric_limits<Integer>::max()))
    return xlretFailed;
  call.answer.type = xltypeInt;
  call.answer.value.integer = static_cast<Integer>(whole);
  return xlretSuccess;
}

template <class Record>
int coerce(Call<Record>& call) {
  const int code = coerce_now(call);
  if (code == xlretUncalced) standin().met_uncalculated = true;
  return code;
}

template <class Record>
int free_records(Call<Record>& call) {
  for (int i = 0; i < call.count; ++i) {
    Record& record = *call.operands[i];
    if (record.type == xltypeMulti) take_back(record.value.array.elements, "an array");
    if (record.type == xltypeStr) take_back(record.value.text, "a text");
    if (record.type == xltypeRef && record.value.reference.areas != nullptr)
      take_back(record.value.reference.areas, "a reference");
    record.type = xltypeNil;
  }
  return call.answer_with(boolean_record<Record>(true));
}

template <class Record>
int give_library_name(Call<Record>& call) {
  const std::string& path = standin().library_path;
  if (path.empty() || path.size() > Interface<Record>::longest_text) return xlretFailed;
  if (!call.wants_result) return xlretSuccess;
  std::unique_ptr<char[]> memory;
  call.answer = make_record<Record>(text_scalar(path), memory);
  hand_out(call.answer.value.text, std::move(memory), false);
  return xlretSuccess;
}

template <class Record>
int give_active_sheet(Call<Record>& call) {
  call.answer.type = xltypeRef;
  call.answer.value.reference = {nullptr, sheet_id(0)};
  return xlretSuccess;
}

// Whether the user wants to break off; looking at it, with TRUE, lets the wish stand.
int tell_break(Call<XLOPER12>& call) {
  Standin& excel = standin();
  Scalar keep = boolean_scalar(true);
  if (call.count > 0 && !read_scalar(*call.operands[0], keep)) return xlretInvXloper;
  if (excel.worker && keep.code == 0) return xlretNotThreadSafe;
  const bool wanted = excel.user_breaks;
  excel.user_breaks = wanted && keep.code != 0;
  return call.answer_with(boolean_record<XLOPER12>(wanted));
}

Registration* find_registration(const std::string& name) {
  Standin& excel = standin();
  const auto found = excel.place_of.find(upper_case(name));
  return found == excel.place_of.end() ? nullptr : &excel.registrations[found->second];
}

// Whether Excel takes the type text of a function for these records.
template <class Record>
bool is_type_text(std::string type);
template <>
bool is_type_text<XLOPER>(std::string type) {
  return !type.empty() && type.find_first_not_of('R') == std::string::npos;
}
template <>
bool is_type_text<XLOPER12>(std::string type) {
  // A function is thread-safe ($) or of a macro sheet (#), not both.
  if (!type.empty() && (type.back() == '$' || type.back() == '#')) type.pop_back();
  return !type.empty() && type.find_first_not_of("QU") == std::string::npos;
}

// Why Excel would not register this, or an empty text.
template <class Record>
std::string refusal(const Call<Record>& call, Registration& registration) {
  constexpr int most = Interface<Record>::most_operands;
  if (call.count > most) return "more than " + std::to_string(most) + " operands";
  if (call.count <= static_cast<int>(name_text)) return "no name is given";
  for (int i = 0; i < call.count; ++i) {
    const std::string place = "operand " + std::to_string(i + 1);
    std::string text;
    if (call.operands == nullptr || call.operands[i] == nullptr || !text_operand(*call.operands[i], text))
      return place + " is no text";
    // The count of an old text holds the low eight bits of the length only, so a longer text goes on after
    // it.
    bool longer = widen(text).size() > longest_registered;
    if constexpr (std::is_same_v<Record, XLOPER>) longer = call.operands[i]->value.text[1 + text.size()] != 0;
    if (longer) return place + " is longer than 255 characters";
    registration.texts.push_back(text);
  }
  const auto& texts = registration.texts;
  const Standin& excel = standin();
  if (texts[0] != excel.library_path || !excel.find_entry) return "library '" + texts[0] + "' is not loaded";
  registration.entry = excel.find_entry(texts[procedure_text].c_str());
  if (registration.entry == nullptr) return "procedure '" + texts[procedure_text] + "' is not exported";
  const std::string& type = texts[type_text];
  const std::string& macro = registered_text(registration, macro_type_text);
  if (!macro.empty() && macro != "1" && macro != "2") return "macro type '" + macro + "' is neither 1 nor 2";
  const auto letters = static_cast<std::size_t>(
      std::count_if(type.begin(), type.end(), [](char c) { return c != '$' && c != '#'; }));
  const bool records = is_type_text<Record>(type) && letters <= most_records;
  if (type != "A" && (!records || macro == "2")) return "type text '" + type + "' is not supported";
  if (!is_worksheet_name(texts[name_text])) return "'" + texts[name_text] + "' is no name for a worksheet";
  registration.arguments = letters - 1;
  registration.thread_safe = type.back() == '$';
  registration.wide = std::is_same_v<Record, XLOPER12>;
  registration.take_back = excel.find_entry("xlAutoFree12");
  const std::string& names = registered_text(registration, argument_names_text);
  const auto commas = static_cast<std::size_t>(std::count(names.begin(), names.end(), ','));
  const bool any_name = names.find_first_not_of(' ') != std::string::npos;
  if (any_name && commas + 1 > registration.arguments)
    return "more argument names than the type text has arguments";
  return "";
}

template <class Record>
int register_entry(Call<Record>& call) {
  Standin& excel = standin();
  Registration registration;
  const std::string reason = refusal(call, registration);
  if (!reason.empty()) {
    const std::string& name = registered_text(registration, name_text);
    note_fault("registration" + (name.empty() ? "" : " of " + name) + " refused: " + reason);
    return xlretSuccess;
  }
  registration.id = ++excel.last_id;
  Registration* const same = find_registration(registered_name(registration));
  if (same != nullptr) {
    *same = std::move(registration);
  } else {
    excel.registrations.push_back(std::move(registration));
    const std::string& name = registered_name(excel.registrations.back());
    excel.place_of.emplace(upper_case(name), excel.registrations.size() - 1);
  }
  return call.answer_with(number_record<Record>(excel.last_id));
}

template <class Record>
int find_id(Call<Record>& call) {
  std::string library, procedure;
  if (!text_operand(*call.operands[0], library) || !text_operand(*call.operands[1], procedure))
    return xlretSuccess;
  for (const Registration& registration : standin().registrations) {
    if (registration.texts[0] == library && registration.texts[procedure_text] == procedure)
      return call.answer_with(number_record<Record>(registration.id));
  }
  return call.answer_with(error_record<Record>(xlerrNA));
}

template <class Record>
int unregister(Call<Record>& call) {
  Standin& excel = standin();
  auto& all = excel.registrations;
  double id = 0.0;
  const bool given = number_operand(*call.operands[0], id);
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Registration& one) { return one.id == id; });
  if (!given || found == all.end()) return call.answer_with(boolean_record<Record>(false));
  const auto place = static_cast<std::size_t>(found - all.begin());
  excel.place_of.erase(upper_case(registered_name(*found)));
  for (auto& other : excel.place_of)
    if (other.second > place) --other.second;
  all.erase(found);
  return call.answer_with(boolean_record<Record>(true));
}

template <class Record>
int delete_name(Call<Record>& call) {
  std::string name;
  if (!text_operand(*call.operands[0], name)) return xlretSuccess;
  Registration* const registration = find_registration(name);
  const bool deleted = registration != nullptr && std::exchange(registration->named, false);
  return call.answer_with(boolean_record<Record>(deleted));
}

std::vector<Menu>::iterator find_menu(double bar, const std::string& name) {
  auto& menus = standin().menus;
  return std::find_if(menus.begin(), menus.end(), [&](const Menu& menu) {
    return menu.bar == bar && menu_key(menu.rows[0][0]) == menu_key(name);
  });
}

// The place of a menu among those of its bar, counted from 1.
template <class Record>
Record place_of(std::vector<Menu>::iterator menu) {
  return number_record<Record>(
      1.0 + static_cast<double>(std::count_if(standin().menus.begin(), menu,
                                              [&](const Menu& other) { return other.bar == menu->bar; })));
}

template <class Record>
int get_bar(Call<Record>& call) {
  double bar = 0.0;
  double item = 0.0;
  std::string name;
  if (!number_operand(*call.operands[0], bar) || !text_operand(*call.operands[1], name)) return xlretSuccess;
  if (!number_operand(*call.operands[2], item) || item != 0.0) return xlretSuccess;
  const auto found = find_menu(bar, name);
  return found == standin().menus.end() ? xlretSuccess : call.answer_with(place_of<Record>(found));
}

template <class Record>
int add_menu(Call<Record>& call) {
  Menu menu;
  const std::shared_ptr<Block> texts = read_array(*call.operands[1]);
  bool valid = number_operand(*call.operands[0], menu.bar) && texts != nullptr && texts->rows >= 2 &&
               texts->columns >= 2 && texts->columns <= 5;
  for (std::size_t i = 0; valid && i < texts->cells.size(); ++i) {
    valid = texts->cells[i].kind == Kind::text;
    if (i % texts->columns == 0) menu.rows.emplace_back();
    menu.rows.back().push_back(texts->cells[i].text);
  }
  if (!valid || menu.rows[0][0].empty()) {
    note_fault("menu refused: it takes a bar and rows of two to five texts, the first row naming the menu");
    return xlretSuccess;
  }
  if (call.count > 2) text_operand(*call.operands[2], menu.before);
  standin().menus.push_back(menu);
  return call.answer_with(place_of<Record>(standin().menus.end() - 1));
}

template <class Record>
int delete_menu(Call<Record>& call) {
  double bar = 0.0;
  std::string name;
  if (!number_operand(*call.operands[0], bar) || !text_operand(*call.operands[1], name)) return xlretSuccess;
  const auto found = find_menu(bar, name);
  if (found == standin().menus.end()) return xlretSuccess;
  standin().menus.erase(found);
  return call.answer_with(boolean_record<Record>(true));
}

template <class Record>
int show_alert(Call<Record>& call) {
  Alert alert;
  if (!text_operand(*call.operands[0], alert.text)) return xlretSuccess;
  if (call.count > 1 && !number_operand(*call.operands[1], alert.kind)) return xlretSuccess;
  standin().alerts.push_back(alert);
  return call.answer_with(boolean_record<Record>(true));
}

template <class Record>
struct ExcelFunction {
  int function, fewest_operands, most_operands;
  int (*answer)(Call<Record>& call);
};

template <class Record>
constexpr ExcelFunction<Record> excel_functions[] = {
    {xlfRegisterId, 2, 2, find_id},
    {xlfUnregister, 1, 1, unregister},
    {xlfSetName, 1, 1, delete_name},
    {xlfGetBar, 3, 3, get_bar},
    {xlfAddMenu, 2, 3, add_menu},
    {xlfDeleteMenu, 2, 2, delete_menu},
    {xlcAlert, 1, 2, show_alert},
    {xlGetName, 0, 0, give_library_name},
    {xlCoerce, 1, 2, coerce},
    {xlSheetId, 0, 0, give_active_sheet},
    {xlFree, 1, Interface<Record>::most_operands, free_records},
};

constexpr ExcelFunction<XLOPER12> break_function = {xlAbort, 0, 1, tell_break};

// What may be called on any thread: all that is the interface's own and not the worksheet's.
bool is_thread_safe(int function) { return (function & 0x4000) != 0; }

template <class Record>
int answer_by(const ExcelFunction<Record>& known, Call<Record>& call) {
  if (call.count < known.fewest_operands || call.count > known.most_operands) return xlretInvCount;
  for (int i = 0; i < call.count; ++i)
    if (call.operands == nullptr || call.operands[i] == nullptr) return xlretInvXloper;
  return known.answer(call);
}

template <class Record>
int answer_call(int function, Call<Record>& call) {
  if (standin().worker && !is_thread_safe(function)) {
    note_fault("calls Excel's function " + std::to_string(function) + " on a thread that may not");
    return xlretNotThreadSafe;
  }
  // Bad operands of a registration are refused by value, with the reason.
  if (function == xlfRegister) return register_entry(call);
  if constexpr (std::is_same_v<Record, XLOPER12>) {
    if (function == xlAbort) return answer_by(break_function, call);
  }
  for (const auto& known : excel_functions<Record>)
    if (known.function == function) return answer_by(known, call);
  return xlretInvXlfn;
}

std::string open_addin() {
  void* const entry = standin().find_entry("xlAutoOpen");
  if (entry == nullptr) return standin().library_path + ": has no xlAutoOpen";
  begin_call("xlAutoOpen");
  const int opened = reinterpret_cast<Command>(entry)();
  end_call();
  if (standin().out_of_memory) return standin().library_path + ": not enough memory to open it";
  return (opened & 0xFFFF) != 0 ? "" : standin().library_path + ": xlAutoOpen reports failure";
}

}  // namespace

const std::string& registered_name(const Registration& registration) { return registration.texts[name_text]; }

const std::string& registered_text(const Registration& registration, std::size_t place) {
  static const std::string none;
  return place < registration.texts.size() ? registration.texts[place] : none;
}

bool is_command(const Registration& registration) {
  return registered_text(registration, macro_type_text) == "2";
}

static Standin main_standin;
static thread_local Standin* of_this_thread = nullptr;

Standin& standin() { return of_this_thread == nullptr ? main_standin : *of_this_thread; }

void reset_standin() { standin() = Standin(); }

Worker::Worker() {
  const Standin& excel = standin();
  own.library_path = excel.library_path;
  own.find_entry = excel.find_entry;
  own.registrations = excel.registrations;
  own.place_of = excel.place_of;
  own.cells_come_late = excel.cells_come_late;
  own.worker = true;
}

void Worker::begin() { of_this_thread = &own; }
void Worker::end() { of_this_thread = nullptr; }

void Worker::join() {
  Standin& excel = standin();
  const auto append = [](auto& all, auto& more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    more.clear();
  };
  append(excel.alerts, own.alerts);
  append(excel.faults, own.faults);
  excel.accounting.arrays_handed_out += own.accounting.arrays_handed_out;
  excel.accounting.arrays_freed += own.accounting.arrays_freed;
  excel.accounting.texts_handed_out += own.accounting.texts_handed_out;
  excel.accounting.texts_freed += own.accounting.texts_freed;
  excel.accounting.results_freed += own.accounting.results_freed;
  own.accounting = {};
}

std::string load_addin(const std::string& path) {
  if (standin().find_entry) return "an add-in is loaded already";
  const std::string file = full_path(path);
  if (file.size() > 255) return file + ": a path of more than 255 characters, which Excel cannot name";
  std::string error;
  void* const library = open_library(file, error);
  if (library == nullptr) return error;
  standin().library = library;
  return attach_addin(file, [library](const char* name) { return find_symbol(library, name); });
}

std::string attach_addin(const std::string& name, std::function<void*(const char*)> find_entry) {
  standin().library_path = name;
  standin().find_entry = std::move(find_entry);
  return open_addin();
}

void unload_addin() {
  Standin& excel = standin();
  if (!excel.find_entry) return;
  void* const entry = excel.find_entry("xlAutoClose");
  if (entry != nullptr) {
    begin_call("xlAutoClose");
    reinterpret_cast<Command>(entry)();
    end_call();
  }
  for (Registration& registration : excel.registrations) registration.entry = nullptr;
  excel.find_entry = nullptr;
  if (excel.library != nullptr) close_library(std::exchange(excel.library, nullptr));
}

bool run_command(const std::string& name) {
  const Registration* const command = find_registration(name);
  if (command == nullptr || !is_command(*command) || command->entry == nullptr) return false;
  const auto entry = reinterpret_cast<Command>(command->entry);
  begin_call(registered_name(*command));
  entry();  // may unregister itself
  end_call();
  return true;
}

const Registration* find_function(const std::string& name) {
  const Registration* const function = find_registration(name);
  if (function == nullptr || function->entry == nullptr || !function->named) return nullptr;
  return is_command(*function) ? nullptr : function;
}

void begin_call(const std::string& entry) { standin().running = entry; }

void end_call() {
  Standin& excel = standin();
  if (!excel.handed_out.empty()) {
    note_fault("leak: " + std::to_string(excel.handed_out.size()) + " arrays or texts not freed");
    excel.handed_out.clear();
  }
  excel.running.clear();
}

void abandon_call() noexcept {
  standin().handed_out.clear();
  standin().running.clear();
}

void note_fault(const std::string& fault) {
  if (standin().out_of_memory) return;  // what follows from that is not the add-in's doing
  const std::string& running = standin().running;
  standin().faults.push_back((running.empty() ? "add-in" : running) + ": " + fault);
}

template <class Record>
int call_standin(int function, Record* result, int count, Record** operands) noexcept {
  if (standin().arrays_as_they_are && count > 0 && operands[0]->type == xltypeMulti) {
    if (function == xlCoerce && result != nullptr) *result = *operands[0];
    if (function == xlCoerce || function == xlFree) return xlretSuccess;
  }
  Call<Record> call{count, operands, result != nullptr, error_record<Record>(xlerrValue)};
  int code = xlretFailed;
  try {
    code = answer_call(function, call);
  } catch (const std::exception&) {
    // Nothing may be thrown through the add-in's calls.
    standin().out_of_memory = true;
    call.answer = error_record<Record>(xlerrValue);
  }
  if (result != nullptr) *result = call.answer;
  return code;
}
template int call_standin(int, XLOPER*, int, XLOPER**) noexcept;
template int call_standin(int, XLOPER12*, int, XLOPER12**) noexcept;

std::uintptr_t sheet_id(std::size_t index) { return first_sheet_id + index; }

template <class Record>
bool read_scalar(const Record& record, Scalar& scalar) {
  switch (record.type) {
    case xltypeNum:
      scalar = number_scalar(record.value.number);
      return true;
    case xltypeInt:
      scalar = number_scalar(record.value.integer);
      return true;
    case xltypeBool:
      scalar = boolean_scalar(record.value.boolean != 0);
      return true;
    case xltypeErr:
      scalar = error_scalar(record.value.error);
      return true;
    case xltypeStr:
      if (record.value.text == nullptr) return false;
      scalar = text_scalar(characters(record.value.text));
      return true;
    case xltypeMissing:
      scalar = Scalar();
      scalar.kind = Kind::missing;
      return true;
    case xltypeNil:
      scalar = Scalar();
      return true;
    default:
      return false;
  }
}
template bool read_scalar(const XLOPER&, Scalar&);
template bool read_scalar(const XLOPER12&, Scalar&);

template <class Record>
std::shared_ptr<Block> read_array(const Record& record) {
  if (record.type != xltypeMulti) return nullptr;
  const auto& array = record.value.array;
  if (array.elements == nullptr || array.rows <= 0 || array.columns <= 0) return nullptr;
  const auto rows = static_cast<std::size_t>(array.rows);
  const auto columns = static_cast<std::size_t>(array.columns);
  auto block = std::make_shared<Block>(Block{rows, columns, std::vector<Scalar>(rows * columns)});
  for (std::size_t i = 0; i < block->cells.size(); ++i) {
    if (!read_scalar(array.elements[i], block->cells[i])) block->cells[i] = error_scalar(xlerrValue);
  }
  return block;
}
template std::shared_ptr<Block> read_array(const XLOPER&);
template std::shared_ptr<Block> read_array(const XLOPER12&);

template <class Record>
Record make_array(const Block& block, std::unique_ptr<char[]>& memory) {
  return make_array<Record>(block, Area{0, 0, block.rows, block.columns}, memory);
}
template XLOPER make_array(const Block&, std::unique_ptr<char[]>&);
template XLOPER12 make_array(const Block&, std::unique_ptr<char[]>&);

template <class Record>
Record make_record(const Scalar& scalar, std::unique_ptr<char[]>& memory) {
  if (scalar.kind == Kind::text) memory.reset(new char[text_bytes<Record>(scalar)]);
  char* text = memory.get();
  return record_of<Record>(scalar, text);
}
template XLOPER make_record(const Scalar&, std::unique_ptr<char[]>&);
template XLOPER12 make_record(const Scalar&, std::unique_ptr<char[]>&);

}  // namespace kestran
