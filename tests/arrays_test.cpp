#include "numerics/arrays.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace kestran {
namespace {

constexpr int largest = std::numeric_limits<int>::max(), smallest = std::numeric_limits<int>::min();

std::string report(const std::string& text) {
  return "Numerical Recipes run-time error...\n" + text + "\n...now exiting to system...\n";
}

// Runs `action` and gives what it wrote to the error stream.
template <class Action>
std::string errors_of(Action action) {
  testing::internal::CaptureStderr();
  action();
  return testing::internal::GetCapturedStderr();
}

// Every usable element and the spare one ahead are written: the address sanitizer sees a block too short, or
// one released at another place.
template <class Element>
void use_vector(Element* make(int, int), void release(Element*, int, int)) {
  for (const int lowest : {0, 1, 5, -3, 1000000, -1000000}) {
    Element* v = make(lowest, lowest + 9);
    ASSERT_NE(v, nullptr);
    for (int i = lowest - 1; i <= lowest + 9; ++i) v[i] = static_cast<Element>(i & 127);
    for (int i = lowest - 1; i <= lowest + 9; ++i) EXPECT_EQ(v[i], static_cast<Element>(i & 127)) << i;
    release(v, lowest, lowest + 9);
  }
  release(make(1, 0), 1, 0);
  release(nullptr, 1, 3);
}

TEST(Arrays, VectorsHoldTheirRangeAndASpareElement) {
  static_assert(sizeof(*lvector(0, 0)) == 4, "four bytes on every build");
  use_vector(vector, free_vector);
  use_vector(ivector, free_ivector);
  use_vector(cvector, free_cvector);
  use_vector(lvector, free_lvector);
  use_vector(dvector, free_dvector);
}

template <class Element>
void use_matrix(Element** make(int, int, int, int), void release(Element**, int, int, int, int)) {
  for (const int nrl : {0, 1, -2})
    for (const int ncl : {0, 1, 7}) {
      Element** m = make(nrl, nrl + 3, ncl, ncl + 2);
      ASSERT_NE(m, nullptr);
      for (int k = -1; k < 12; ++k) (&m[nrl][ncl])[k] = static_cast<Element>(k);
      for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_EQ(m[nrl + i][ncl + j], static_cast<Element>(3 * i + j));
      m[nrl - 1] = nullptr;
      release(m, nrl, nrl + 3, ncl, ncl + 2);
    }
  release(nullptr, 0, 1, 0, 1);
}

TEST(Arrays, MatricesAreContiguousRowAfterRow) {
  use_matrix(matrix, free_matrix);
  use_matrix(dmatrix, free_dmatrix);
  use_matrix(imatrix, free_imatrix);
}

TEST(Arrays, TensorIsContiguousWithTheLastIndexFastest) {
  float*** t = f3tensor(1, 2, -1, 1, 4, 7);
  for (int k = -1; k < 24; ++k) (&t[1][-1][4])[k] = static_cast<float>(k);
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 4; ++k) EXPECT_EQ(t[1 + i][-1 + j][4 + k], static_cast<float>(12 * i + 4 * j + k));
  free_f3tensor(t, 1, 2, -1, 1, 4, 7);
  free_f3tensor(nullptr, 1, 2, -1, 1, 4, 7);
}

TEST(Arrays, ViewsShareTheElements) {
  float elements[12];
  for (int k = 0; k < 12; ++k) elements[k] = static_cast<float>(k);
  float** a = convert_matrix(elements, 1, 3, 1, 4);
  EXPECT_EQ(&a[1][1], elements);
  EXPECT_EQ(a[3][2], 9.0f);
  float** b = submatrix(a, 2, 3, 3, 4, 0, 10);
  EXPECT_EQ(&b[0][10], &a[2][3]);
  EXPECT_EQ(&b[1][11], &a[3][4]);
  free_submatrix(b, 0, 1, 10, 11);
  free_convert_matrix(a, 1, 3, 1, 4);
  EXPECT_EQ(submatrix(nullptr, 1, 3, 1, 3, 1, 1), nullptr);
  EXPECT_EQ(convert_matrix(nullptr, 1, 3, 1, 3), nullptr);
}

// Each request of each allocator in turn fails: null, one report, and (by the leak check of the address
// sanitizer) nothing kept.
TEST(Arrays, FailedRequestIsReportedAndGivesNull) {
  float element = 0.0f;
  float* row = &element;
  const auto expect_failure = [](int nth, const std::string& text, auto make) {
    set_allocation_limit(nth);
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(make(), nullptr) << text; }), report(text));
    set_allocation_limit(0);
  };
  expect_failure(1, "allocation failure in vector()", [] { return vector(1, 3); });
  expect_failure(1, "allocation failure in ivector()", [] { return ivector(1, 3); });
  expect_failure(1, "allocation failure in cvector()", [] { return cvector(1, 3); });
  expect_failure(1, "allocation failure in lvector()", [] { return lvector(1, 3); });
  expect_failure(1, "allocation failure in dvector()", [] { return dvector(1, 3); });
  for (const int nth : {1, 2}) {
    const std::string text = "allocation failure " + std::to_string(nth) + " in matrix()";
    expect_failure(nth, text, [] { return matrix(0, 2, 0, 2); });
    expect_failure(nth, text, [] { return dmatrix(0, 2, 0, 2); });
    expect_failure(nth, text, [] { return imatrix(0, 2, 0, 2); });
  }
  for (const int nth : {1, 2, 3})
    expect_failure(nth, "allocation failure " + std::to_string(nth) + " in f3tensor()",
                   [] { return f3tensor(0, 2, 0, 2, 0, 2); });
  expect_failure(1, "allocation failure in submatrix()", [&] { return submatrix(&row, 0, 0, 0, 0, 1, 1); });
  expect_failure(1, "allocation failure in convert_matrix()",
                 [&] { return convert_matrix(row, 0, 0, 0, 0); });

  set_allocation_limit(2);
  double* served = dvector(0, 1);
  EXPECT_NE(served, nullptr);
  errors_of([] { EXPECT_EQ(dvector(0, 1), nullptr); });
  free_dvector(served, 0, 1);
  free_dvector(dvector(0, 1), 0, 1);
}

TEST(Arrays, AbsurdBoundsAreAFailedRequest) {
  errors_of([] {
    EXPECT_EQ(dvector(1, -1), nullptr);
    EXPECT_EQ(cvector(smallest, largest), nullptr);
    EXPECT_EQ(dvector(0, 0x10000000 - 2), nullptr);
    EXPECT_EQ(dmatrix(1, 0, 1, 3), nullptr);
    EXPECT_EQ(dmatrix(smallest, largest, smallest, largest), nullptr);
    EXPECT_EQ(dmatrix(0, 1000, smallest, largest), nullptr);
    EXPECT_EQ(f3tensor(1, 2, 1, 0, 1, 2), nullptr);
    EXPECT_EQ(f3tensor(0, 99999, 0, 99, smallest, largest), nullptr);
  });
  double* v = dvector(largest - 1, largest);
  v[largest] = 1.0;
  free_dvector(v, largest - 1, largest);
}

TEST(Arrays, TreeNodesFillAFlatArray) {
  int place = 0;
  for (int n = 0; n <= 40; ++n)
    for (int j = -n; j <= n; j += 2) EXPECT_EQ(tree_node_index(n, j), place++) << n << ", " << j;
  EXPECT_EQ(place, 41 * 42 / 2);
  EXPECT_EQ(tree_node_index(65534, 65534), 2147450879);
}

}  // namespace
}  // namespace kestran
