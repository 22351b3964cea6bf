// Excel's records as the intake of arguments reads them.
#pragma once

#include "addin/excel_call.h"
#include "functions/intake.h"

namespace kestran {

struct XloperReader {
  using Given = XLOPER*;

  static Holds holds(const XLOPER* given) {
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
  static double number(const XLOPER* given) { return given->value.number; }
  static int error(const XLOPER* given) { return given->value.error; }

  // The array that Excel makes of a reference, freed when it goes out of scope. Cells that are not calculated
  // yet are as little ready as those that cannot be read for another reason.
  class Block {
   public:
    explicit Block(XLOPER* reference) {
      cells.type = xltypeNil;
      made = Excel(xlCoerce, &cells, 2, reference, TempInt(xltypeMulti)) == xlretSuccess &&
             cells.type == xltypeMulti && rows() > 0 && columns() > 0;
      if (made) elements = cells.value.array.elements;
    }
    ~Block() { Excel(xlFree, nullptr, 1, &cells); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    bool ready() const { return made; }
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
    int error(int i) const { return element(i).value.error; }

   private:
    const XLOPER& element(int i) const { return elements[i]; }

    XLOPER cells;
    const XLOPER* elements = nullptr;  // stays in a register while the numbers are copied
    bool made;
  };
};

}  // namespace kestran
