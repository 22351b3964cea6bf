// What Excel calls when the add-in is opened, listed and closed, on its main thread only.
#include <exception>

#include "addin/modern/excel12_call.h"
#include "addin/modern/help_topic.h"
#include "addin/modern/registration12.h"
#include "addin/modern/system12.h"

namespace kestran {

// The library's name as Excel knows it, in Excel's memory while one lives.
struct LibraryName {
  LibraryName() {
    record.type = xltypeNil;
    Excel12(xlGetName, &record);
  }
  ~LibraryName() { Excel12(xlFree, nullptr, &record); }
  std::u16string text() const {
    if (record.type != xltypeStr || record.value.text == nullptr) return u"";
    const char16_t* const characters = record.value.text;
    return {characters + 1, characters[0]};
  }
  LibraryName(const LibraryName&) = delete;
  LibraryName& operator=(const LibraryName&) = delete;

  XLOPER12 record;
};

static bool register_function(int place, const std::string& reference, const LibraryName& library) {
  const std::vector<std::u16string> texts = registration_texts(place, reference);
  std::vector<XLOPER12> records = {library.record};
  for (const std::u16string& text : texts) records.push_back(text_record(text.c_str()));
  std::vector<XLOPER12*> operands;
  for (XLOPER12& record : records) operands.push_back(&record);
  XLOPER12 registered = error_record(xlerrValue);
  const int code = call_excel12(xlfRegister, &registered, static_cast<int>(operands.size()), operands.data());
  return code == xlretSuccess && registered.type == xltypeNum;
}

static void tell_failures(int failures) {
  const std::u16string message =
      counted(std::to_string(failures) + " of the " + std::to_string(registered_count) +
              " KESTRAN functions could not be registered and show #NAME?.\nUntick KESTRAN under File > "
              "Options > Add-ins > Go, restart Excel and tick it again.");
  XLOPER12 text = text_record(message.c_str());
  XLOPER12 information = integer_record(2);
  Excel12(xlcAlert, nullptr, &text, &information);
}

static void remove_function(int place, LibraryName& library) {
  const std::u16string name = counted(registered_functions[place].name);
  XLOPER12 procedure = text_record(name.c_str());
  XLOPER12 id = error_record(xlerrNA);
  if (Excel12(xlfRegisterId, &id, &library.record, &procedure) == xlretSuccess && id.type == xltypeNum)
    Excel12(xlfUnregister, nullptr, &id);
  Excel12(xlfSetName, nullptr, &procedure);
}

// Written while the library is loaded, then only read. The text's count is that of its characters.
static XLOPER12 product_name = text_record(u"\x29KESTRAN option pricing, on all processors");
static XLOPER12 no_such_action = error_record(xlerrValue);

extern "C" {

/// Registers the functions; tells once how many failed. Always 1.
KESTRAN_EXPORT int EXCEL_STDCALL xlAutoOpen() {
  try {
    const LibraryName library;
    const std::string reference = reference_address(library.text());
    int failures = 0;
    for (int place = 0; place < registered_count; ++place)
      failures += !register_function(place, reference, library);
    if (failures > 0) tell_failures(failures);
  } catch (const std::exception&) {
    // Memory ran out. What is registered so far works.
  }
  return 1;
}

/// Removes the functions and their names. Always 1.
KESTRAN_EXPORT int EXCEL_STDCALL xlAutoClose() {
  try {
    LibraryName library;
    for (int place = 0; place < registered_count; ++place) remove_function(place, library);
  } catch (const std::exception&) {
    // Memory ran out. Excel forgets what is left when it unloads the library.
  }
  return 1;
}

/// The add-in's name for action 1; #VALUE! for any other action.
KESTRAN_EXPORT XLOPER12* EXCEL_STDCALL xlAddInManagerInfo12(XLOPER12* action) {
  XLOPER12 number = error_record(xlerrValue);
  XLOPER12 wanted = integer_record(xltypeInt);
  const bool known = Excel12(xlCoerce, &number, action, &wanted) == xlretSuccess &&
                     number.type == xltypeInt && number.value.integer == 1;
  return known ? &product_name : &no_such_action;
}
}

}  // namespace kestran
