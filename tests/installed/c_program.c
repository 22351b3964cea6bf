/* Prices through the installed C interface; prints numbers that read back exactly. */
#include <kestran/kestran.h>
#include <stdio.h>

int main(void) {
  const kestran_function* euro = kestran_find("euro");
  const kestran_function* basvol = kestran_find("BASVOL");
  const double terms[] = {100, 95, 0.05, 0.02, 0.25, 90, 1, 0};
  const double forwards[] = {100, 90}, vols[] = {0.3, 0.4}, drifts[] = {0.02, -0.01}, weights[] = {0.6, 0.4},
               correlations[] = {1, 0.5, 0.5, 1}, years = 0.75, strikes[] = {90, 95, -1.0 / 0.0, 105};
  const kestran_operand basket[] = {{forwards, 2, 1, 0}, {vols, 2, 1, 0},         {drifts, 2, 1, 0},
                                    {weights, 2, 1, 0},  {correlations, 2, 2, 0}, {&years, 0, 0, 0}};
  const int selectors[] = {0, 1};
  kestran_operand book[8];
  double value, results[8];
  int codes[8], i;
  char reason[80];
  for (i = 0; i < 8; ++i) {
    book[i].values = &terms[i];
    book[i].rows = book[i].columns = 0;
    book[i].stride = 0;
  }
  if (euro == NULL || basvol == NULL || kestran_find("NONE") != NULL) return 1;
  if (kestran_price_numbers(euro, terms, &value) != 0) return 2;
  printf("EURO %.17g\n", value);
  if (kestran_price(basvol, basket, &value) != 0) return 3;
  printf("BASVOL %.17g\n", value);
  book[1].values = strikes;
  book[1].stride = 1;
  if (kestran_price_many(euro, book, 4, selectors, 2, results, codes, 2) != 0) return 4;
  if (kestran_price_many(euro, book, 4, selectors, -1, results, codes, 2) != 0) return 6;
  printf("book %.17g %.17g %.17g\n", results[2], results[3], results[6]);
  book[7].values = &strikes[0];
  printf("code %d", kestran_price(euro, book, &value));
  kestran_refusal(euro, book, reason, sizeof reason);
  printf(" %s; %d functions, %s of %s\n", reason, kestran_count() > 80, kestran_result_name(euro, 1),
         kestran_argument_name(euro, 0));
  return kestran_result_selector(euro, "theta") == 5 && kestran_takes_cells(basvol, 4) == 1 ? 0 : 5;
}
