#include "host/excel_standin.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <new>
#include <utility>

#include "host/library.h"

namespace kestran {
namespace {

constexpr std::uintptr_t first_sheet_id = 0x4B0001;

using Command = int(EXCEL_STDCALL*)();

XLOPER error_record(std::uint16_t code) {
  XLOPER record;
  record.type = xltypeErr;
  record.value.error = code;
  return record;
}

XLOPER number_record(double number) {
  XLOPER record;
  record.type = xltypeNum;
  record.value.number = number;
  return record;
}

XLOPER boolean_record(bool value) {
  XLOPER record;
  record.type = xltypeBool;
  record.value.boolean = value ? 1 : 0;
  return record;
}

std::string counted_text(const char* text) { return {text + 1, static_cast<unsigned char>(text[0])}; }

bool number_operand(const XLOPER& operand, double& number) {
  Scalar scalar;
  if (!read_scalar(operand, scalar) || scalar.kind != Kind::number) return false;
  number = scalar.number;
  return true;
}

bool text_operand(const XLOPER& operand, std::string& text) {
  if (operand.type != xltypeStr || operand.value.text == nullptr) return false;
  text = counted_text(operand.value.text);
  return true;
}

// Menus are told apart by what the user reads: the letter an ampersand underlines and case do not count.
std::string menu_key(const std::string& name) {
  std::string key = upper_case(name);
  key.erase(std::remove(key.begin(), key.end(), '&'), key.end());
  return key;
}

// One call into Excel: what the add-in gave and what it gets. Its functions give Excel's return code.
struct Call {
  int count;
  XLOPER** operands;
  bool wants_result;
  XLOPER answer;
};

int answer_with(Call& call, const XLOPER& answer) {
  call.answer = answer;
  return xlretSuccess;
}

std::size_t text_bytes(const Scalar& scalar) {
  return scalar.kind == Kind::text ? std::min<std::size_t>(scalar.text.size(), 255) + 2 : 0;
}

// One value as a record; its text goes to `text`, which is moved to behind it.
XLOPER record_of(const Scalar& scalar, char*& text) {
  XLOPER record;
  switch (scalar.kind) {
    case Kind::empty:
      record.type = xltypeNil;
      break;
    case Kind::missing:
      record.type = xltypeMissing;
      break;
    case Kind::number:
      return number_record(scalar.number);
    case Kind::boolean:
      return boolean_record(scalar.code != 0);
    case Kind::error:
      return error_record(static_cast<std::uint16_t>(scalar.code));
    case Kind::text: {
      const std::size_t length = text_bytes(scalar) - 2;
      record.type = xltypeStr;
      record.value.text = text;
      *text++ = static_cast<char>(length);
      text = std::copy_n(scalar.text.data(), length, text);
      *text++ = '\0';
    }
  }
  return record;
}

// Rows of cells within a block.
struct Area {
  std::size_t first_row = 0, first_column = 0, rows = 0, columns = 0;
};

XLOPER make_array(const Block& block, const Area& area, std::unique_ptr<char[]>& memory) {
  const auto cell = [&](std::size_t index) -> const Scalar& {
    const std::size_t row = area.first_row + index / area.columns;
    return block.cells[row * block.columns + area.first_column + index % area.columns];
  };
  const std::size_t count = area.rows * area.columns;
  std::size_t all_text_bytes = 0;
  for (std::size_t i = 0; i < count; ++i) all_text_bytes += text_bytes(cell(i));
  memory.reset(new char[count * sizeof(XLOPER) + all_text_bytes]);
  auto* const records = reinterpret_cast<XLOPER*>(memory.get());
  char* text = memory.get() + count * sizeof(XLOPER);
  for (std::size_t i = 0; i < count; ++i) new (records + i) XLOPER(record_of(cell(i), text));
  XLOPER array;
  array.type = xltypeMulti;
  array.value.array.elements = records;
  array.value.array.rows = static_cast<std::uint16_t>(area.rows);
  array.value.array.columns = static_cast<std::uint16_t>(area.columns);
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

// The block a reference lies on and the part of it; false for a reference to anything else.
bool find_cells(const XLOPER& reference, std::shared_ptr<const Block>& block, Area& area) {
  const Standin& excel = standin();
  std::size_t sheet = 0;
  const AreaList* list = &reference.value.sheet_reference;
  if (reference.type == xltypeRef) {
    list = reference.value.reference.areas;
    sheet = reference.value.reference.sheet - first_sheet_id;
  }
  if (sheet >= excel.sheets.size() || list == nullptr || list->count != 1) return false;
  block = excel.sheets[sheet];
  const CellRectangle& cells = list->area;
  if (cells.first_row > cells.last_row || cells.last_row >= block->rows) return false;
  if (cells.first_column > cells.last_column || cells.last_column >= block->columns) return false;
  area.first_row = cells.first_row;
  area.first_column = cells.first_column;
  area.rows = cells.last_row - area.first_row + 1;
  area.columns = cells.last_column - area.first_column + 1;
  return true;
}

// What a value given for coercion holds: cells of a sheet, of an array or one value.
int read_cells(const XLOPER& value, std::shared_ptr<const Block>& block, Area& area) {
  Scalar scalar;
  switch (value.type) {
    case xltypeRef:
    case xltypeSRef:
      return find_cells(value, block, area) ? xlretSuccess : xlretFailed;
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

int coerce(Call& call) {
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
    call.answer = make_array(*block, area, memory);
    hand_out(call.answer.value.array.elements, std::move(memory), true);
    return xlretSuccess;
  }
  double number = 0.0;
  if (area.rows * area.columns != 1) return xlretFailed;
  if (!number_of(block->cells[area.first_row * block->columns + area.first_column], number))
    return xlretFailed;
  if (wanted == xltypeNum) return answer_with(call, number_record(number));
  const double whole = std::trunc(number);
  if (!(whole >= -32768.0 && whole <= 32767.0)) return xlretFailed;
  call.answer.type = xltypeInt;
  call.answer.value.integer = static_cast<std::int16_t>(whole);
  return xlretSuccess;
}

int free_records(Call& call) {
  for (int i = 0; i < call.count; ++i) {
    XLOPER& record = *call.operands[i];
    if (record.type == xltypeMulti) take_back(record.value.array.elements, "an array");
    if (record.type == xltypeStr) take_back(record.value.text, "a text");
    if (record.type == xltypeRef && record.value.reference.areas != nullptr)
      take_back(record.value.reference.areas, "a reference");
    record.type = xltypeNil;
  }
  return answer_with(call, boolean_record(true));
}

int give_library_name(Call& call) {
  const std::string& path = standin().library_path;
  if (path.empty() || path.size() > 255) return xlretFailed;
  if (!call.wants_result) return xlretSuccess;
  std::unique_ptr<char[]> memory;
  call.answer = make_record(text_scalar(path), memory);
  hand_out(call.answer.value.text, std::move(memory), false);
  return xlretSuccess;
}

int give_active_sheet(Call& call) {
  call.answer.type = xltypeRef;
  call.answer.value.reference = {nullptr, sheet_id(0)};
  return xlretSuccess;
}

Registration* find_registration(const std::string& name) {
  Standin& excel = standin();
  const auto found = excel.place_of.find(upper_case(name));
  return found == excel.place_of.end() ? nullptr : &excel.registrations[found->second];
}

// Why Excel would not register this, or an empty text.
std::string refusal(int count, XLOPER** operands, Registration& registration) {
  if (count > max_operands) return "more than 30 operands";
  if (count <= static_cast<int>(name_text)) return "no name is given";
  for (int i = 0; i < count; ++i) {
    const std::string place = "operand " + std::to_string(i + 1);
    std::string text;
    if (operands == nullptr || operands[i] == nullptr || !text_operand(*operands[i], text))
      return place + " is no text";
    // The count holds the low eight bits of the length only, so a longer text goes on after it.
    if (operands[i]->value.text[1 + text.size()] != '\0') return place + " is longer than 255 characters";
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
  const bool records = !type.empty() && type.size() <= static_cast<std::size_t>(max_operands) &&
                       type.find_first_not_of('R') == std::string::npos;
  if (type != "A" && (!records || macro == "2")) return "type text '" + type + "' is not supported";
  if (!is_worksheet_name(texts[name_text])) return "'" + texts[name_text] + "' is no name for a worksheet";
  registration.arguments = type.size() - 1;
  const std::string& names = registered_text(registration, argument_names_text);
  const auto commas = static_cast<std::size_t>(std::count(names.begin(), names.end(), ','));
  const bool any_name = names.find_first_not_of(' ') != std::string::npos;
  if (any_name && commas + 1 > registration.arguments)
    return "more argument names than the type text has arguments";
  return "";
}

int register_entry(Call& call) {
  Standin& excel = standin();
  Registration registration;
  const std::string reason = refusal(call.count, call.operands, registration);
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
  return answer_with(call, number_record(excel.last_id));
}

int find_id(Call& call) {
  std::string library, procedure;
  if (!text_operand(*call.operands[0], library) || !text_operand(*call.operands[1], procedure))
    return xlretSuccess;
  for (const Registration& registration : standin().registrations) {
    if (registration.texts[0] == library && registration.texts[procedure_text] == procedure)
      return answer_with(call, number_record(registration.id));
  }
  return answer_with(call, error_record(xlerrNA));
}

int unregister(Call& call) {
  Standin& excel = standin();
  auto& all = excel.registrations;
  double id = 0.0;
  const bool given = number_operand(*call.operands[0], id);
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Registration& one) { return one.id == id; });
  if (!given || found == all.end()) return answer_with(call, boolean_record(false));
  const auto place = static_cast<std::size_t>(found - all.begin());
  excel.place_of.erase(upper_case(registered_name(*found)));
  for (auto& other : excel.place_of)
    if (other.second > place) --other.second;
  all.erase(found);
  return answer_with(call, boolean_record(true));
}

int delete_name(Call& call) {
  std::string name;
  if (!text_operand(*call.operands[0], name)) return xlretSuccess;
  Registration* const registration = find_registration(name);
  const bool deleted = registration != nullptr && std::exchange(registration->named, false);
  return answer_with(call, boolean_record(deleted));
}

std::vector<Menu>::iterator find_menu(double bar, const std::string& name) {
  auto& menus = standin().menus;
  return std::find_if(menus.begin(), menus.end(), [&](const Menu& menu) {
    return menu.bar == bar && menu_key(menu.rows[0][0]) == menu_key(name);
  });
}

// The place of a menu among those of its bar, counted from 1.
XLOPER place_of(std::vector<Menu>::iterator menu) {
  return number_record(
      1.0 + static_cast<double>(std::count_if(standin().menus.begin(), menu,
                                              [&](const Menu& other) { return other.bar == menu->bar; })));
}

int get_bar(Call& call) {
  double bar = 0.0;
  double item = 0.0;
  std::string name;
  if (!number_operand(*call.operands[0], bar) || !text_operand(*call.operands[1], name)) return xlretSuccess;
  if (!number_operand(*call.operands[2], item) || item != 0.0) return xlretSuccess;
  const auto found = find_menu(bar, name);
  return found == standin().menus.end() ? xlretSuccess : answer_with(call, place_of(found));
}

int add_menu(Call& call) {
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
  return answer_with(call, place_of(standin().menus.end() - 1));
}

int delete_menu(Call& call) {
  double bar = 0.0;
  std::string name;
  if (!number_operand(*call.operands[0], bar) || !text_operand(*call.operands[1], name)) return xlretSuccess;
  const auto found = find_menu(bar, name);
  if (found == standin().menus.end()) return xlretSuccess;
  standin().menus.erase(found);
  return answer_with(call, boolean_record(true));
}

int show_alert(Call& call) {
  Alert alert;
  if (!text_operand(*call.operands[0], alert.text)) return xlretSuccess;
  if (call.count > 1 && !number_operand(*call.operands[1], alert.kind)) return xlretSuccess;
  standin().alerts.push_back(alert);
  return answer_with(call, boolean_record(true));
}

constexpr struct {
  int function, fewest_operands, most_operands;
  int (*answer)(Call& call);
} excel_functions[] = {
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
    {xlFree, 1, max_operands, free_records},
};

int answer_call(int function, Call& call) {
  // Bad operands of a registration are refused by value, with the reason.
  if (function == xlfRegister) return register_entry(call);
  for (const auto& known : excel_functions) {
    if (known.function != function) continue;
    if (call.count < known.fewest_operands || call.count > known.most_operands) return xlretInvCount;
    for (int i = 0; i < call.count; ++i)
      if (call.operands == nullptr || call.operands[i] == nullptr) return xlretInvXloper;
    return known.answer(call);
  }
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

Standin& standin() {
  static Standin instance;
  return instance;
}

void reset_standin() { standin() = Standin(); }

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
  const std::string& running = standin().running;
  standin().faults.push_back((running.empty() ? "add-in" : running) + ": " + fault);
}

int call_standin(int function, XLOPER* result, int count, XLOPER** operands) noexcept {
  if (standin().arrays_as_they_are && count > 0 && operands[0]->type == xltypeMulti) {
    if (function == xlCoerce && result != nullptr) *result = *operands[0];
    if (function == xlCoerce || function == xlFree) return xlretSuccess;
  }
  Call call{count, operands, result != nullptr, error_record(xlerrValue)};
  int code = xlretFailed;
  try {
    code = answer_call(function, call);
  } catch (const std::exception&) {
    // Nothing may be thrown through the add-in's calls.
    standin().out_of_memory = true;
    call.answer = error_record(xlerrValue);
  }
  if (result != nullptr) *result = call.answer;
  return code;
}

std::uintptr_t sheet_id(std::size_t index) { return first_sheet_id + index; }

bool read_scalar(const XLOPER& record, Scalar& scalar) {
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
      scalar = text_scalar(counted_text(record.value.text));
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

std::shared_ptr<Block> read_array(const XLOPER& record) {
  if (record.type != xltypeMulti) return nullptr;
  const auto& array = record.value.array;
  const std::size_t count = static_cast<std::size_t>(array.rows) * array.columns;
  if (array.elements == nullptr || count == 0) return nullptr;
  auto block = std::make_shared<Block>(Block{array.rows, array.columns, std::vector<Scalar>(count)});
  for (std::size_t i = 0; i < count; ++i) {
    if (!read_scalar(array.elements[i], block->cells[i])) block->cells[i] = error_scalar(xlerrValue);
  }
  return block;
}

XLOPER make_array(const Block& block, std::unique_ptr<char[]>& memory) {
  return make_array(block, Area{0, 0, block.rows, block.columns}, memory);
}

XLOPER make_record(const Scalar& scalar, std::unique_ptr<char[]>& memory) {
  if (scalar.kind == Kind::text) memory.reset(new char[text_bytes(scalar)]);
  char* text = memory.get();
  return record_of(scalar, text);
}

}  // namespace kestran
