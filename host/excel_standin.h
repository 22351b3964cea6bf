// Plays Excel to an add-in, through the old interface (Excel4, XLOPER) and today's (MdCallBack12, XLOPER12):
// keeps what it registers, answers its calls into Excel and accounts for the memory handed to it. An add-in
// that does what Excel would refuse, keeps memory or frees it twice is at fault.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "addin/excel_api.h"
#include "host/formula.h"

namespace kestran {

/// Places of the texts that a registration consists of. The library stands first; category, shortcut and help
/// topic before the description, the descriptions of the arguments last.
constexpr std::size_t procedure_text = 1;
constexpr std::size_t type_text = 2;
constexpr std::size_t name_text = 3;
constexpr std::size_t argument_names_text = 4;
constexpr std::size_t macro_type_text = 5;
constexpr std::size_t help_topic_text = 8;
constexpr std::size_t description_text = 9;
constexpr std::size_t first_argument_text = 10;

/// One function or command as the add-in registered it.
struct Registration {
  double id = 0.0;
  std::vector<std::string> texts;  // all of them, as they came
  void* entry = nullptr;
  std::size_t arguments = 0;  // declared by the type text
  bool named = true;          // until its name is deleted
  bool wide = false;          // takes and gives XLOPER12
  bool thread_safe = false;
  void* take_back = nullptr;  // the add-in's xlAutoFree12
};

const std::string& registered_name(const Registration& registration);
bool is_command(const Registration& registration);
/// The text at this place of `texts`, empty when the add-in gave fewer.
const std::string& registered_text(const Registration& registration, std::size_t place);

struct Menu {
  double bar = 0.0;
  std::vector<std::vector<std::string>> rows;  // the menu itself, then its items, as the add-in gave them
  std::string before;                          // the menu it was put before
};

struct Alert {
  std::string text;
  double kind = 0.0;
};

struct HelpCall {
  std::string path;
  unsigned command = 0;
};

/// Arrays and texts given to the add-in and freed by it, and results that it made and got back.
struct Accounting {
  std::size_t arrays_handed_out = 0;
  std::size_t arrays_freed = 0;
  std::size_t texts_handed_out = 0;
  std::size_t texts_freed = 0;
  std::size_t results_freed = 0;
};

/// Memory the add-in has to free: the records of an array followed by their texts, or one text.
struct HandedOut {
  std::unique_ptr<char[]> memory;
  bool array = false;
};

struct Standin {
  std::string library_path;
  void* library = nullptr;
  std::function<void*(const char*)> find_entry;  // among the add-in's exports; empty when none is loaded
  std::vector<Registration> registrations;
  std::unordered_map<std::string, std::size_t> place_of;  // among the registrations, by name in upper case
  std::vector<Menu> menus;
  std::vector<Alert> alerts;
  std::vector<HelpCall> help_calls;
  std::vector<std::string> faults;
  Accounting accounting;
  std::map<const void*, HandedOut> handed_out;
  /// The cells of each sheet; the first is the active one.
  std::vector<std::shared_ptr<const Block>> sheets;
  std::string running;            // the add-in's entry that is being called
  int next_coerce_code = 0;       // when not 0 the next xlCoerce fails with it, such as xlretUncalced
  bool cells_come_late = false;   // cells are calculated only once an xlCoerce asked for them in vain
  std::vector<char> calculated;   // of each sheet, where they come late
  bool met_uncalculated = false;  // an xlCoerce failed for that reason
  bool user_breaks = false;       // Escape was pressed
  bool worker = false;            // on a thread beside the main one
  double last_id = 0.0;
  bool arrays_as_they_are = false;  // coerced to themselves at no cost, for measuring the add-in alone
  bool out_of_memory = false;       // a call of the add-in could not be answered for want of memory
};

/// What differs between the interfaces.
template <class Record>
struct Interface;
template <>
struct Interface<XLOPER> {
  using Areas = AreaList;
  static constexpr std::size_t columns = 256, longest_text = 255;
  static constexpr int most_operands = max_operands;
};
template <>
struct Interface<XLOPER12> {
  using Areas = AreaList12;
  static constexpr std::size_t rows = 1048576, columns = 16384, longest_text = 32767;
  static constexpr int most_operands = max_operands12;
};

/// The first cell of a block on its sheet: the sheet's first to the old interface; to today's the block ends
/// with the sheet's last row and column.
struct Origin {
  std::size_t row = 0, column = 0;
};
template <class Record>
Origin origin_of([[maybe_unused]] const Block& block) {
  if constexpr (std::is_same_v<Record, XLOPER12>)
    return {Interface<Record>::rows - block.rows, Interface<Record>::columns - block.columns};
  else
    return {};
}

/// The stand-in of this thread: the process's, or that of a Worker. The add-in's calls carry nothing that
/// could tell several apart.
Standin& standin();

/// One of Excel's further threads: what the add-in registered, and sheets, memory and faults of its own. Made
/// and joined on the main thread, which receives what there is to tell; begin() and end() on the thread
/// itself.
class Worker {
 public:
  Worker();
  void begin();
  static void end();
  void join();

 private:
  Standin own;
};

/// Forgets everything; an add-in that is still loaded stays in memory and is not told.
void reset_standin();

/// Loads an add-in and calls its xlAutoOpen. Gives the reason when that fails, else an empty text.
std::string load_addin(const std::string& path);

/// The same for functions that are already in the process: `find_entry` gives their addresses by name.
std::string attach_addin(const std::string& name, std::function<void*(const char*)> find_entry);

/// Calls xlAutoClose and lets go of the add-in. What it left registered stays to be looked at but cannot be
/// called.
void unload_addin();

/// Calls a registered command, as a click on its menu item does; false when there is none of this name.
bool run_command(const std::string& name);

/// The function a formula reaches under this name, in any case; null when there is none.
const Registration* find_function(const std::string& name);

/// Marks that the add-in's `entry` is being called. end_call() notes a leak when it kept memory.
void begin_call(const std::string& entry);
void end_call();

/// Ends a call that did not come back, and takes away what was handed out to it.
void abandon_call() noexcept;

/// Notes a fault of the entry that is being called.
void note_fault(const std::string& fault);

/// Answers one call of the add-in: what Excel4v and MdCallBack12 do. Without memory the call fails.
template <class Record>
int call_standin(int function, Record* result, int count, Record** operands) noexcept;

/// Id of a sheet by its index in Standin::sheets.
std::uintptr_t sheet_id(std::size_t index);

/// What a record holds if that is one value, whole numbers as numbers; false for arrays, references and
/// records that make no sense.
template <class Record>
bool read_scalar(const Record& record, Scalar& scalar);

/// What an array record holds; values Excel does not know in an array are #VALUE!. Null for anything but an
/// array.
template <class Record>
std::shared_ptr<Block> read_array(const Record& record);

/// A block as an array record, which lives in `memory`.
template <class Record>
Record make_array(const Block& block, std::unique_ptr<char[]>& memory);

/// One value as a record, whose text lives in `memory`.
template <class Record>
Record make_record(const Scalar& scalar, std::unique_ptr<char[]>& memory);

}  // namespace kestran
