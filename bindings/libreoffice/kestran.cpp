// The worksheet functions as functions of LibreOffice Calc: one component whose methods Calc calls. The
// interface with a method for each function, and the methods here, are written by make_addin.cpp.
#include <kestran/XFunctions.hpp>

#include <com/sun/star/lang/XServiceInfo.hpp>
#include <com/sun/star/uno/XComponentContext.hpp>
#include <cppuhelper/implbase2.hxx>
#include <cppuhelper/supportsservice.hxx>

#include <cmath>
#include <cstdint>
#include <cstring>

#include "functions/intake.h"

namespace kestran {
namespace {

using com::sun::star::uno::Any;
using com::sun::star::uno::Sequence;
using com::sun::star::uno::TypeClass_DOUBLE;
using rtl::OUString;

// Calc's numbers of errors. Those of arguments go through a call as they are.
constexpr int calc_num = 503;
constexpr int calc_value = 519;

// An error is a NaN with its number in the lower half.
int error_in(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return static_cast<int>(bits & 0xFFFF);
}

double error_number(int error) {
  const std::uint64_t bits = 0x7FF8000000000000u | static_cast<std::uint64_t>(error);
  double number = 0.0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

// Calc hands over an empty cell as 0, or among cells as an empty text, and a logical value as a number.
struct CalcReader {
  using Given = const Any*;
  using Rows = Sequence<Sequence<Any>>;

  static Holds holds(const Any* given) {
    if (given->getValueTypeClass() == TypeClass_DOUBLE)
      return std::isnan(number(given)) ? Holds::error : Holds::number;
    if (!given->hasValue()) return Holds::nothing;
    return given->getValueType() == cppu::UnoType<Rows>::get() ? Holds::cells : Holds::other;
  }
  static double number(const Any* given) { return *static_cast<const double*>(given->getValue()); }
  static int error(const Any* given) { return error_in(number(given)); }

  class Block {
   public:
    explicit Block(const Any* given) : cells(*static_cast<const Rows*>(given->getValue())) {}

    bool ready() const {
      for (const Sequence<Any>& row : cells)
        if (row.getLength() != columns()) return false;
      return rows() > 0 && columns() > 0;
    }
    int rows() const { return cells.getLength(); }
    int columns() const { return cells.hasElements() ? cells[0].getLength() : 0; }
    Holds holds(int i) const { return CalcReader::holds(&cell(i)); }
    double number(int i) const { return CalcReader::number(&cell(i)); }
    int error(int i) const { return CalcReader::error(&cell(i)); }

   private:
    const Any& cell(int i) const { return cells[i / columns()][i % columns()]; }

    const Rows& cells;
  };
};

// A number that a cell cannot hold is #NUM!. Code 65535 is no error of Calc's either, and shows as Err:65535.
Any priced(const Function& function, const Any* const* given) {
  const Answer answer = FrameReader<CalcReader>::evaluate(function, given);
  if (answer.is_number()) return Any(std::isfinite(answer.number) ? answer.number : error_number(calc_num));
  return Any(error_number(answer.error == value_code ? calc_value : answer.error));
}

class Functions : public cppu::WeakImplHelper2<XFunctions, com::sun::star::lang::XServiceInfo> {
 public:
#include "methods.inc"

  OUString SAL_CALL getImplementationName() override { return "kestran.Functions"; }
  sal_Bool SAL_CALL supportsService(const OUString& name) override {
    return cppu::supportsService(this, name);
  }
  // Calc knows a function as SERVICE.NAME, and files of Excel as _xll.NAME.
  Sequence<OUString> SAL_CALL getSupportedServiceNames() override {
    const OUString name("_xll");
    return {&name, 1};
  }
};

}  // namespace
}  // namespace kestran

extern "C" SAL_DLLPUBLIC_EXPORT com::sun::star::uno::XInterface* kestran_functions(
    com::sun::star::uno::XComponentContext*, const com::sun::star::uno::Sequence<com::sun::star::uno::Any>&) {
  return cppu::acquire(new kestran::Functions);
}
