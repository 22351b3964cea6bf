// Many deals, and all results of a deal, in one call.
#include <array>
#include <memory>

#include "bench/cases.h"
#include "bench/straight.h"
#include "functions/price_many.h"

namespace kestran::bench {
namespace {

constexpr double K = 105.0, r = 0.06, q = 0.03, sigma = 0.25;
constexpr int days = 180, nine = 9;

void add_all_results() {
  Case& option = add_case("EURO/nine", 100.0, 100.0);
  const auto memory = std::make_shared<std::array<Answer, nine>>();
  add_model(option, [function = find_in_catalogue("EURO"), memory](double price) {
    const double numbers[] = {price, K, r, q, sigma, days, 1.0, 0.0};
    std::array<Answer, nine>& answers = *memory;
    price_all(*function, numbers, answers.data());
    double sum = 0.0;
    for (const Answer& answer : answers) sum += answer.number;
    return sum;
  });
  add_straight(option, [](double price) {
    double sum = 0.0;
    for (int RetType = 0; RetType < nine; ++RetType)
      sum += straight::european(price, K, days / 365.25, r, q, sigma, 1, RetType);
    return sum;
  });
  if constexpr (quantlib::available)
    add_quantlib(option, "BlackScholesCalculator, value and five greeks", not_compared,
                 quantlib::calculator({100.0, r, q, sigma}, K, days));
}

// Calls and puts that differ in everything but the rate.
struct Book {
  static constexpr std::size_t deals = inputs;
  std::vector<double> S = drawn(70.0, 130.0, deals, 1), strike = drawn(70.0, 130.0, deals, 2),
                      yield = drawn(0.0, 0.06, deals, 3), volatility = drawn(0.1, 0.6, deals, 4),
                      until = drawn(7.0, 730.0, deals, 5), call = drawn(0.0, 1.0, deals, 6);
  std::vector<Answer> answers = std::vector<Answer>(deals, 0.0);
  std::vector<double> premiums = std::vector<double>(deals);

  Book() {
    for (double& flag : call) flag = flag < 0.5 ? 0.0 : 1.0;
  }
  // The deal whose premium is compared.
  static std::size_t compared(double rate) { return static_cast<std::size_t>(rate * 1e9) % deals; }
};

void add_book() {
  const auto book = std::make_shared<Book>();
  Case& option = add_case("EURO/book", r, 100.0);
  option.deals = Book::deals;
  add_model(option, [book, function = find_in_catalogue("EURO")](double rate) {
    const double premium = 0.0;
    const Column columns[] = {{book->S.data(), 1},
                              {book->strike.data(), 1},
                              {&rate},
                              {book->yield.data(), 1},
                              {book->volatility.data(), 1},
                              {book->until.data(), 1},
                              {book->call.data(), 1},
                              {&premium}};
    price_many(*function, columns, Book::deals, nullptr, 1, book->answers.data());
    return book->answers[Book::compared(rate)].number;
  });
  add_straight(option, [book](double rate) {
    for (std::size_t k = 0; k < Book::deals; ++k)
      book->premiums[k] = straight::european(book->S[k], book->strike[k], book->until[k] / 365.25, rate,
                                             book->yield[k], book->volatility[k], book->call[k] == 1.0, 0);
    return book->premiums[Book::compared(rate)];
  });
}

// A book so long that starting a thread is nothing beside it, on one thread and on two.
void add_threads() {
  constexpr std::size_t times = 64;
  const auto book = std::make_shared<Book>();
  const auto repeated = [&](const std::vector<double>& once) {
    std::vector<double> column;
    for (std::size_t i = 0; i < times; ++i) column.insert(column.end(), once.begin(), once.end());
    return std::make_shared<const std::vector<double>>(std::move(column));
  };
  const auto S = repeated(book->S), strike = repeated(book->strike), yield = repeated(book->yield),
             volatility = repeated(book->volatility), until = repeated(book->until),
             call = repeated(book->call);
  const auto answers = std::make_shared<std::vector<Answer>>(S->size(), 0.0);
  for (int threads : {1, 2}) {
    Case& option = add_case("threads/" + std::to_string(threads), r, 100.0);
    option.deals = static_cast<double>(S->size());
    option.threads = true;
    add_model(option, [=, function = find_in_catalogue("EURO")](double rate) {
      const double premium = 0.0;
      const Column columns[] = {
          {S->data(), 1},          {strike->data(), 1}, {&rate},           {yield->data(), 1},
          {volatility->data(), 1}, {until->data(), 1},  {call->data(), 1}, {&premium}};
      price_many(*function, columns, S->size(), nullptr, 1, answers->data(), threads);
      return (*answers)[Book::compared(rate)].number;
    });
  }
}

}  // namespace

void add_book_cases() {
  add_all_results();
  add_book();
  add_threads();
}

}  // namespace kestran::bench
