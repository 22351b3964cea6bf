// Arrays indexed from any lower bound: vectors, matrices and three-index tensors of the heap, and the
// reporter of fatal numerical errors.
//
// v = dvector(nl, nh) is used as v[nl] .. v[nh], m = dmatrix(nrl, nrh, ncl, nch) as m[nrl][ncl] ..
// m[nrh][nch]. One spare element lies ahead of the first; the rows of a matrix follow each other without
// gaps. Elements are not set to zero. The owner releases an array with the matching free function and the
// bounds it was made with.
//
// A request that fails is reported by nrerror, gives back what was taken before it and answers null; freeing
// null does nothing. Bounds that describe no array (an upper bound more than one below the lower one, a
// matrix without rows, a tensor without rows or columns) and blocks of 2 GiB or more count as failed
// requests, on every build alike.
#pragma once

#include <cstdint>

namespace kestran {

/// Reports a fatal numerical error in three lines on the error stream and returns. The last line announces an
/// exit and none follows, which is intended: the process belongs to the spreadsheet.
void nrerror(const char* error_text);

/// Vectors of nh - nl + 1 elements; nh = nl - 1 gives one without elements.
float* vector(int nl, int nh);
int* ivector(int nl, int nh);
unsigned char* cvector(int nl, int nh);
std::uint32_t* lvector(int nl, int nh);
double* dvector(int nl, int nh);

/// Matrices of rows nrl .. nrh and columns ncl .. nch.
float** matrix(int nrl, int nrh, int ncl, int nch);
double** dmatrix(int nrl, int nrh, int ncl, int nch);
int** imatrix(int nrl, int nrh, int ncl, int nch);

/// A view of rows oldrl .. oldrh of `a` from column oldcl on, as rows from newrl and columns from newcl.
/// oldch is not used. The view shares the elements of `a`; null gives null.
float** submatrix(float** a, int oldrl, int oldrh, int oldcl, int oldch, int newrl, int newcl);

/// A view of the elements a[0], a[1], ... as a matrix stored row after row; null gives null.
float** convert_matrix(float* a, int nrl, int nrh, int ncl, int nch);

/// Tensor t[nrl..nrh][ncl..nch][ndl..ndh], contiguous with the last index fastest.
float*** f3tensor(int nrl, int nrh, int ncl, int nch, int ndl, int ndh);

/// Releases of the above; only the lower bounds matter. A view's release leaves the elements alone.
void free_vector(float* v, int nl, int nh);
void free_ivector(int* v, int nl, int nh);
void free_cvector(unsigned char* v, int nl, int nh);
void free_lvector(std::uint32_t* v, int nl, int nh);
void free_dvector(double* v, int nl, int nh);
void free_matrix(float** m, int nrl, int nrh, int ncl, int nch);
void free_dmatrix(double** m, int nrl, int nrh, int ncl, int nch);
void free_imatrix(int** m, int nrl, int nrh, int ncl, int nch);
void free_submatrix(float** b, int nrl, int nrh, int ncl, int nch);
void free_convert_matrix(float** b, int nrl, int nrh, int ncl, int nch);
void free_f3tensor(float*** t, int nrl, int nrh, int ncl, int nch, int ndl, int ndh);

/// Room for `count` doubles while a function runs: up to 16 without a request, more from the heap. Null when
/// there is none.
class WorkArray {
 public:
  explicit WorkArray(int count) : first(count > few ? dvector(0, count - 1) : own) {}
  ~WorkArray() {
    if (first != own) free_dvector(first, 0, 0);
  }
  WorkArray(const WorkArray&) = delete;
  WorkArray& operator=(const WorkArray&) = delete;

  operator double*() { return first; }

 private:
  static constexpr int few = 16;

  double own[few];
  double* const first;
};

/// Place in a flat array of node j = -n, -n + 2, ..., n (up-moves less down-moves) of level n of a
/// recombining binomial tree; levels 0 .. N take (N + 1)(N + 2) / 2 places. Right for n <= 65534; places
/// above the range of int wrap.
constexpr int tree_node_index(int n, int j) {
  return static_cast<int>((std::int64_t{n} * (std::int64_t{n} + 2) + j) / 2);
}

/// For tests of what a caller does without memory: the n-th request from now fails, all others are served. A
/// matrix makes two requests, a tensor three. 0 lets all be served again.
void set_allocation_limit(int n);

}  // namespace kestran
