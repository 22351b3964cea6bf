// Excel's records, old and new, as the intake of arguments reads them. Interface says
//   Record                     the record
//   to_array(given, cells)     has Excel make an array of a reference; true when it did
//   release(cells)             gives the array back
#pragma once

#include "addin/excel_api.h"
#include "functions/intake.h"

namespace kestran {

template <class Interface>
struct RecordReader {
  using Record = typename Interface::Record;
  using Given = Record*;

  static Holds holds(const Record* given) {
    switch (given->type) {
      case xltypeNum:
        return Holds::number;
      case xltypeErr:
        return Holds::error;
      case xltypeMissing:
        return Holds::nothing;
      case xltypeSRef:
      case xltypeRef:
      case xltypeMulti:
        return Holds::cells;
      default:  // text, logical values, integers, and types with a flag bit set
        return Holds::other;
    }
  }
  static double number(const Record* given) { return given->value.number; }
  static int error(const Record* given) { return error_code(given->value.error); }

  // Negative codes mean something else to the intake, and none is wider than 16 bits.
  static int error_code(int code) { return code >= 0 && code <= 65535 ? code : value_code; }

  // The array that Excel makes of a reference, freed when it goes out of scope. Cells that are not calculated
  // yet are as little ready as those that cannot be read for another reason.
  class Block {
   public:
    explicit Block(Record* reference) {
      cells.type = xltypeNil;
      if (Interface::to_array(reference, cells) && cells.type == xltypeMulti && rows() > 0 && columns() > 0)
        elements = cells.value.array.elements;
    }
    ~Block() { Interface::release(cells); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    bool ready() const { return elements != nullptr; }
    int rows() const { return cells.value.array.rows; }
    int columns() const { return cells.value.array.columns; }
    Holds holds(int i) const {
      switch (element(i).type) {
        case xltypeNum:
          return Holds::number;
        case xltypeErr:
          return Holds::error;
        case xltypeNil:
          return Holds::nothing;
        default:
          return Holds::other;
      }
    }
    double number(int i) const { return element(i).value.number; }
    int error(int i) const { return error_code(element(i).value.error); }
    const double* numbers() const { return &elements->value.number; }
    static constexpr int apart = sizeof(Record) / sizeof(double);

   private:
    const Record& element(int i) const { return elements[i]; }

    Record cells;
    const Record* elements = nullptr;  // stays in a register while the numbers are copied
  };
};

}  // namespace kestran
