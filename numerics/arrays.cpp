#include "numerics/arrays.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace kestran {
namespace {

constexpr std::int64_t largest_block = 0x7fffffff;  // bytes

int requests_until_failure = 0;

std::int64_t extent(int lowest, int highest) { return std::int64_t{highest} - lowest + 1; }

// A block of `count` elements and the spare one, or null. `count` is below 2^62: products are formed of an
// extent, less than 2^33, and the count of a block already served, less than 2^29.
template <class Element>
Element* allocate(std::int64_t count, const char* failure_text) {
  const bool failed = requests_until_failure > 0 && --requests_until_failure == 0;
  const std::int64_t most = largest_block / static_cast<std::int64_t>(sizeof(Element)) - 1;
  void* block = nullptr;
  if (!failed && count >= 0 && count <= most)
    block = std::malloc((static_cast<std::size_t>(count) + 1) * sizeof(Element));
  if (!block) nrerror(failure_text);
  return static_cast<Element*>(block);
}

// `place` moved by `count` elements. In whole-number arithmetic, since an array with a lower bound other than
// 0 or 1 has its origin outside its block, where pointer arithmetic is undefined.
template <class Element>
Element* moved(Element* place, std::int64_t count) {
  return reinterpret_cast<Element*>(reinterpret_cast<std::uintptr_t>(place) +
                                    static_cast<std::uintptr_t>(count) * sizeof(Element));
}

// The array of a block whose element after the spare one gets index `lowest`, and back.
template <class Element>
Element* indexed_from(Element* block, int lowest) {
  return moved(block, 1 - std::int64_t{lowest});
}
template <class Element>
void free_indexed(Element* array, int lowest) {
  if (array) std::free(moved(array, std::int64_t{lowest} - 1));
}

template <class Element>
Element* new_vector(int nl, int nh, const char* failure_text) {
  Element* block = allocate<Element>(extent(nl, nh), failure_text);
  return block ? indexed_from(block, nl) : nullptr;
}

// Pointers to `rows` rows of `columns` elements each, the first of them at first[0] with index `lowest`.
template <class Element>
void set_rows(Element** row, std::int64_t rows, Element* first, std::int64_t columns, int lowest) {
  for (std::int64_t k = 0; k < rows; ++k) row[k] = moved(first, k * columns - lowest);
}

template <class Element>
Element** new_matrix(int nrl, int nrh, int ncl, int nch) {
  const std::int64_t rows = extent(nrl, nrh), columns = extent(ncl, nch);
  // Without a row there is no place to keep the element block.
  Element** row = allocate<Element*>(rows < 1 ? -1 : rows, "allocation failure 1 in matrix()");
  if (!row) return nullptr;
  Element* element = allocate<Element>(rows * columns, "allocation failure 2 in matrix()");
  if (!element) {
    std::free(row);
    return nullptr;
  }
  set_rows(row + 1, rows, element + 1, columns, ncl);
  return indexed_from(row, nrl);
}

template <class Element>
void delete_matrix(Element** m, int nrl, int ncl) {
  if (!m) return;
  free_indexed(*moved(m, nrl), ncl);
  free_indexed(m, nrl);
}

template <class Element>
Element*** new_tensor(int nrl, int nrh, int ncl, int nch, int ndl, int ndh) {
  const std::int64_t rows = extent(nrl, nrh), columns = extent(ncl, nch), depth = extent(ndl, ndh);
  Element*** row = allocate<Element**>(rows < 1 ? -1 : rows, "allocation failure 1 in f3tensor()");
  if (!row) return nullptr;
  Element** column =
      allocate<Element*>(columns < 1 ? -1 : rows * columns, "allocation failure 2 in f3tensor()");
  Element* element =
      column ? allocate<Element>(rows * columns * depth, "allocation failure 3 in f3tensor()") : nullptr;
  if (!element) {
    std::free(column);
    std::free(row);
    return nullptr;
  }
  set_rows(column + 1, rows * columns, element + 1, depth, ndl);
  set_rows(row + 1, rows, column + 1, columns, ncl);
  return indexed_from(row, nrl);
}

}  // namespace

void nrerror(const char* error_text) {
  std::fprintf(stderr, "Numerical Recipes run-time error...\n%s\n...now exiting to system...\n", error_text);
}

float* vector(int nl, int nh) { return new_vector<float>(nl, nh, "allocation failure in vector()"); }
int* ivector(int nl, int nh) { return new_vector<int>(nl, nh, "allocation failure in ivector()"); }
unsigned char* cvector(int nl, int nh) {
  return new_vector<unsigned char>(nl, nh, "allocation failure in cvector()");
}
std::uint32_t* lvector(int nl, int nh) {
  return new_vector<std::uint32_t>(nl, nh, "allocation failure in lvector()");
}
double* dvector(int nl, int nh) { return new_vector<double>(nl, nh, "allocation failure in dvector()"); }

float** matrix(int nrl, int nrh, int ncl, int nch) { return new_matrix<float>(nrl, nrh, ncl, nch); }
double** dmatrix(int nrl, int nrh, int ncl, int nch) { return new_matrix<double>(nrl, nrh, ncl, nch); }
int** imatrix(int nrl, int nrh, int ncl, int nch) { return new_matrix<int>(nrl, nrh, ncl, nch); }

float** submatrix(float** a, int oldrl, int oldrh, int oldcl, int, int newrl, int newcl) {
  if (!a) return nullptr;
  const std::int64_t rows = extent(oldrl, oldrh);
  float** row = allocate<float*>(rows, "allocation failure in submatrix()");
  if (!row) return nullptr;
  for (std::int64_t k = 0; k < rows; ++k)
    row[k + 1] = moved(*moved(a, oldrl + k), std::int64_t{oldcl} - newcl);
  return indexed_from(row, newrl);
}

float** convert_matrix(float* a, int nrl, int nrh, int ncl, int nch) {
  if (!a) return nullptr;
  const std::int64_t rows = extent(nrl, nrh);
  float** row = allocate<float*>(rows, "allocation failure in convert_matrix()");
  if (!row) return nullptr;
  set_rows(row + 1, rows, a, extent(ncl, nch), ncl);
  return indexed_from(row, nrl);
}

float*** f3tensor(int nrl, int nrh, int ncl, int nch, int ndl, int ndh) {
  return new_tensor<float>(nrl, nrh, ncl, nch, ndl, ndh);
}

void free_vector(float* v, int nl, int) { free_indexed(v, nl); }
void free_ivector(int* v, int nl, int) { free_indexed(v, nl); }
void free_cvector(unsigned char* v, int nl, int) { free_indexed(v, nl); }
void free_lvector(std::uint32_t* v, int nl, int) { free_indexed(v, nl); }
void free_dvector(double* v, int nl, int) { free_indexed(v, nl); }
void free_matrix(float** m, int nrl, int, int ncl, int) { delete_matrix(m, nrl, ncl); }
void free_dmatrix(double** m, int nrl, int, int ncl, int) { delete_matrix(m, nrl, ncl); }
void free_imatrix(int** m, int nrl, int, int ncl, int) { delete_matrix(m, nrl, ncl); }
void free_submatrix(float** b, int nrl, int, int, int) { free_indexed(b, nrl); }
void free_convert_matrix(float** b, int nrl, int, int, int) { free_indexed(b, nrl); }

void free_f3tensor(float*** t, int nrl, int, int ncl, int, int ndl, int) {
  if (!t) return;
  delete_matrix(*moved(t, nrl), ncl, ndl);
  free_indexed(t, nrl);
}

void set_allocation_limit(int n) { requests_until_failure = n; }

}  // namespace kestran
