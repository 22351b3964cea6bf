#include "numerics/gauss_legendre.h"

#include "numerics/gauss_legendre_table.h"

namespace kestran {

QuadratureRule gauss_legendre(int n) {
  switch (n) {
    case 18:
      return {n, gauss_legendre_18};
    case 19:
      return {n, gauss_legendre_19};
    case 24:
      return {n, gauss_legendre_24};
    case 27:
      return {n, gauss_legendre_27};
    case 28:
      return {n, gauss_legendre_28};
    case 55:
      return {n, gauss_legendre_55};
    default:
      return {0, nullptr};
  }
}

}  // namespace kestran
