/* The pricing functions of KESTRAN for C and for languages that call C.
 *
 *   const kestran_function* euro = kestran_find("EURO");
 *   double terms[] = {100, 95, 0.05, 0.02, 0.25, 90, 1, 0};
 *   double premium;
 *   if (kestran_price_numbers(euro, terms, &premium) == 0) printf("%.15g\n", premium);
 *
 * Every call may be made from any number of threads. Values are the worksheet's to the bit, refusal codes
 * too: 15 stands for #VALUE!, 65535 for a missing number or a selector out of range. A NaN among the
 * arguments counts as an empty cell. Where memory does not suffice for a price, it is a NaN. */
#ifndef KESTRAN_H
#define KESTRAN_H

#include <stddef.h>

#if defined(_WIN32) && defined(KESTRAN_SHARED)
#define KESTRAN_API __declspec(dllimport)
#elif defined(_WIN32)
#define KESTRAN_API
#else
#define KESTRAN_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* One function; it lives as long as the library. */
typedef struct kestran_function kestran_function;

/* Version of the library, such as "1.0.0". */
KESTRAN_API const char* kestran_version(void);

/* The functions: how many, the one at a place counted from 0 and the one of a name, in any case. Null when
 * there is none. */
KESTRAN_API int kestran_count(void);
KESTRAN_API const kestran_function* kestran_at(int place);
KESTRAN_API const kestran_function* kestran_find(const char* name);

/* What a function takes: its name, how many arguments, and the name and the meaning of each, counted from 0;
 * null beyond. kestran_takes_cells: 1 for an argument that is a range or a block of cells.
 * kestran_result_argument: place of the argument that asks for the result, -1 when there is one result only.
 */
KESTRAN_API const char* kestran_name(const kestran_function* function);
KESTRAN_API int kestran_arguments(const kestran_function* function);
KESTRAN_API const char* kestran_argument_name(const kestran_function* function, int argument);
KESTRAN_API const char* kestran_argument_meaning(const kestran_function* function, int argument);
KESTRAN_API int kestran_takes_cells(const kestran_function* function, int argument);
KESTRAN_API int kestran_result_argument(const kestran_function* function);

/* The result that a selector asks for, such as "delta"; null when there is none. And back: the selector of a
 * result's name, -1 when there is none. */
KESTRAN_API const char* kestran_result_name(const kestran_function* function, int selector);
KESTRAN_API int kestran_result_selector(const kestran_function* function, const char* name);

/* One argument: a number (rows 0), or rows x columns cells, row after row. In kestran_price_many the value or
 * the cells of deal k stand at values + k * stride; a stride of 0 gives every deal the same. */
typedef struct {
  const double* values;
  int rows, columns;
  ptrdiff_t stride;
} kestran_operand;

/* Prices one deal. 0 and the number in *result, or the code of the refusal and a NaN. */
KESTRAN_API int kestran_price(const kestran_function* function, const kestran_operand* given, double* result);

/* The same for plain numbers. */
KESTRAN_API int kestran_price_numbers(const kestran_function* function, const double* numbers,
                                      double* result);

/* Why kestran_price refuses a deal, with the argument's name, as text of at most `size` characters with its
 * end mark; empty when it does not. Gives the length of the whole text. */
KESTRAN_API size_t kestran_refusal(const kestran_function* function, const kestran_operand* given, char* text,
                                   size_t size);

/* Prices `deals` deals on `threads` threads. With `selectors`, the argument that asks for the result is not
 * looked at, and each deal gives `count` results: results[k * count + j] is that of selectors[j]; without,
 * count is 1. Refused ones are NaN, their codes in `codes` unless that is null, else 0 there. Gives the
 * number of refused results, or (size_t)-1 when memory ran out. */
KESTRAN_API size_t kestran_price_many(const kestran_function* function, const kestran_operand* given,
                                      size_t deals, const int* selectors, int count, double* results,
                                      int* codes, int threads);

#ifdef __cplusplus
}
#endif

#endif
