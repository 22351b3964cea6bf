// kestran price: books of deals in, prices out.
#include "host/price_book.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "functions/example.h"
#include "functions/number_text.h"
#include "host/byte_streams.h"
#include "host/csv.h"

namespace kestran {
namespace {

namespace files = std::filesystem;

struct PriceBook : testing::Test {
  PriceBook() { files::create_directories(folder); }
  ~PriceBook() override { files::remove_all(folder); }

  static void write(const files::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }
  static std::string read(const files::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }

  // Prices the text; the status is kept, as is what was said on standard error.
  std::string priced(const std::string& text, PriceOptions options) {
    write(folder / "in.csv", text);
    files::remove(folder / "out.csv");
    options.input = (folder / "in.csv").string();
    options.output = (folder / "out.csv").string();
    testing::internal::CaptureStderr();
    status = price_book(options);
    said = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(files::exists(folder / "out.csv.partial"));
    return read(folder / "out.csv");
  }
  static PriceOptions of(const std::string& function, const std::string& results = "") {
    PriceOptions options;
    options.function = function;
    options.results = results;
    return options;
  }

  const files::path folder =
      files::temp_directory_path() / ("kestran_price_book_" + std::to_string(getpid()));
  int status = -1;
  std::string said;
};

constexpr char header[] = "Id,Price,Strike,IntRt,Yield,Vol,ExpDays,OptType";

TEST_F(PriceBook, AppendsResultsAndErrors) {
  const std::string deals = std::string(header) + "\na,100,95,5%,2%,25%,90,1\nb,100,,5%,2%,25%,90,1\n";
  EXPECT_EQ(priced(deals, of("EURO", "Premium, delta")),
            std::string(header) +
                ",premium,delta,Error\na,100,95,5%,2%,25%,90,1,8.14303821049409,0.70019657656922,\n"
                "b,100,,5%,2%,25%,90,1,,,Strike is missing\n");
  EXPECT_EQ(status, 0);
  PriceOptions strict = of("euro");
  strict.strict = true;
  strict.header_out = false;
  EXPECT_EQ(priced(deals, strict),
            "a,100,95,5%,2%,25%,90,1,8.14303821049409,\nb,100,,5%,2%,25%,90,1,,Strike is missing\n");
  EXPECT_EQ(status, 1);
}

TEST_F(PriceBook, TakesRowsAsPeopleWriteThem) {
  const std::string prices = ",8.14303821049409,\n";
  const struct {
    const char* what;
    std::string text;
    std::string expected;
  } rows[] = {
      {"any order and case, other columns",
       "opttype,STRIKE,note,price,IntRt,Yield,Vol,ExpDays\n1,95,x y,100,.05,.02,.25,90\n",
       "opttype,STRIKE,note,price,IntRt,Yield,Vol,ExpDays,premium,Error\n1,95,x y,100,.05,.02,.25,90" +
           prices},
      {"per cent throughout",
       "Price,Strike,IntRt,Yield,Vol,ExpDays,OptType\n10000%,9500%,5%,2%,25%,9000%,100%\n",
       "Price,Strike,IntRt,Yield,Vol,ExpDays,OptType,premium,Error\n10000%,9500%,5%,2%,25%,9000%,100%" +
           prices},
      {"RetType by row",
       "RetType,Price,Strike,IntRt,Yield,Vol,ExpDays,OptType\n1,100,95,5%,2%,25%,90,1\n9,100,95,5%,2%,25%,90,"
       "1\n",
       "RetType,Price,Strike,IntRt,Yield,Vol,ExpDays,OptType,result,Error\n1,100,95,5%,2%,25%,90,1,0."
       "70019657656922,\n"
       "9,100,95,5%,2%,25%,90,1,,RetType 9 is outside 0 to 8\n"},
      {"mark, quotes, Windows line ends, no last one",
       "\xEF\xBB\xBF\"Id\",\"Price\",Strike,IntRt,Yield,Vol,ExpDays,OptType\r\n\"a, "
       "\"\"b\"\"\nc\",\"100\",95,5%,2%,25%,90,1\r\n\r\nd,100,95,5%,2%,25%,90,1",
       "\xEF\xBB\xBF\"Id\",\"Price\",Strike,IntRt,Yield,Vol,ExpDays,OptType,premium,Error\r\n\"a, "
       "\"\"b\"\"\nc\",\"100\",95,5%,2%,25%,90,1,8.14303821049409,\r\n"
       "\r\nd,100,95,5%,2%,25%,90,1" +
           prices},
      {"what is no number, too few and too many fields",
       std::string(header) + "\na,x\"y,95,5%,2%,25%,90,1\nb,100\nc,100,95,5%,2%,25%,90,1,7\n",
       std::string(header) +
           ",premium,Error\na,x\"y,95,5%,2%,25%,90,1,,\"Price \"\"x\"\"y\"\" is no number\"\n"
           "b,100,,,,,,,,\"the row has 2 fields, the header 8\"\nc,100,95,5%,2%,25%,90,1,7,,\"the row has 9 "
           "fields, the header 8\"\n"},
      {"a header alone", std::string(header) + "\n", std::string(header) + ",premium,Error\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(priced(row.text, of("EURO")), row.expected) << row.what;
}

TEST_F(PriceBook, TakesRangesAndAFunctionForEachRow) {
  EXPECT_EQ(
      priced("Forward_Price,Annual_Vol,Drift,Weight,Correl_Matrix,ExpTime\n"
             "100;90,0.3;0.4,2%;-1%,0.6;0.4,1;0.5|0.5;1,0.75\n100;90,0.3,2%;-1%,0.6;0.4,1;0.5|0.5;1,0.75\n",
             of("BASVOL")),
      "Forward_Price,Annual_Vol,Drift,Weight,Correl_Matrix,ExpTime,volatility,Error\n"
      "100;90,0.3;0.4,2%;-1%,0.6;0.4,1;0.5|0.5;1,0.75,0.2932463481933795,\n"
      "100;90,0.3,2%;-1%,0.6;0.4,1;0.5|0.5;1,0.75,,Annual_Vol 0.3 is a single number beside ranges\n");
  PriceOptions semicolons = of("");
  semicolons.delimiter = ";";
  const std::string deals =
      "Function;Price;Strike;IntRt;Yield;Vol;ExpDays;OptType\nEURO;100;95;5%;2%;25%;90;1\nAMERR;1;1;1;1;1;1;"
      "1\nASN;1;1;1;1;1;1;1\n";
  EXPECT_EQ(priced(deals, semicolons),
            "Function;Price;Strike;IntRt;Yield;Vol;ExpDays;OptType;result;Error\nEURO;100;95;5%;2%;25%;90;1;"
            "8.14303821049409;\n"
            "AMERR;1;1;1;1;1;1;1;;\"there is no function AMERR; did you mean AMER?\"\n"
            "ASN;1;1;1;1;1;1;1;;the column SetPrice is wanting\n");
}

TEST_F(PriceBook, SaysWhatCannotBeUsed) {
  PriceOptions delimiter = of("EURO");
  delimiter.delimiter = "::";
  const struct {
    std::string text;
    PriceOptions options;
    const char* reason;
  } rows[] = {
      {"Id,Price\n1,2\n", of("EURO"), "no column Strike, IntRt, Yield, Vol, ExpDays, OptType"},
      {"Id,Price\n1,2\n", of("EURRO"), "no function EURRO; did you mean EURO?"},
      {"Id,Price\n1,2\n", of(""), "--function NAME"},
      {std::string(header) + "\n", of("EURO", "premium,velocity"),
       "EURO has no result velocity; it has premium, delta"},
      {"Price,price,Strike,IntRt,Yield,Vol,ExpDays,OptType\n", of("EURO"), "two columns PRICE"},
      {"Function,Price\n", of("", "all"), "--results all"},
      {"", of("EURO"), "no header"},
      {std::string(header) + "\n", delimiter, "--delimiter takes one character"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(priced(row.text, row.options), "") << row.reason;
    EXPECT_EQ(status, 2) << row.reason;
    EXPECT_NE(said.find(row.reason), std::string::npos) << said;
  }
  PriceOptions nowhere = of("EURO");
  nowhere.input = (folder / "missing.csv").string();
  EXPECT_EQ(price_book(nowhere), 2);
  write(folder / "in.csv", header);
  nowhere.input = (folder / "in.csv").string();
  nowhere.output = (folder / "no" / "out.csv").string();
  EXPECT_EQ(price_book(nowhere), 1);
}

// The rows of many blocks, priced by several threads, come in order and are those of one thread.
TEST_F(PriceBook, KeepsTheOrderOfRows) {
  std::string deals = std::string(header) + "\n";
  for (int i = 0; i < 60000; ++i)
    deals += (i % 7 == 0 ? "\"id\n" : "\"id") + std::to_string(i) + "\"," + std::to_string(80 + i % 41) +
             ",95,5%,2%,25%," + std::to_string(i % 500) + "," + std::to_string(i % 2) + "\n";
  const std::string one = priced(deals, of("EURO", "all"));
  PriceOptions several = of("EURO", "all");
  several.threads = 3;
  EXPECT_TRUE(priced(deals, several) == one);
  std::vector<std::string_view> fields;
  std::size_t begin = record_end(one, 0, ',');
  for (int i = 0; i < 60000; ++i) {
    const std::size_t end = record_end(one, begin, ',');
    split_record(without_line_end(std::string_view(one).substr(begin, end - begin)), ',', fields);
    ASSERT_EQ(fields.size(), 18u);
    ASSERT_NE(fields[0].find(std::to_string(i) + "\""), std::string::npos);
    const double numbers[] = {80.0 + i % 41, 95, 0.05, 0.02, 0.25, double(i % 500), double(i % 2), 3};
    ASSERT_EQ(fields[11], exact_number(price(*find_in_catalogue("EURO"), numbers).number)) << i;
    begin = end;
  }
  EXPECT_EQ(begin, one.size());
}

#if !defined(_WIN32)
TEST_F(PriceBook, LeavesNoFileOpen) {
  const auto open_files = [] { return std::distance(files::directory_iterator("/proc/self/fd"), {}); };
  const auto before = open_files();
  {
    ByteSink unfinished((folder / "out.csv").string());
    const ByteSource source("/dev/null");
    EXPECT_EQ(open_files(), before + 2);
  }
  EXPECT_EQ(open_files(), before);
  EXPECT_TRUE(files::is_empty(folder));
}

TEST(ByteStreams, GoOnAfterSignals) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const auto name = [&](int i) { return "/proc/self/fd/" + std::to_string(ends[i]); };
  ByteSource source(name(0));
  ByteSink sink(name(1));
  struct sigaction unheeded = {}, before;
  unheeded.sa_handler = [](int) {};  // and system calls do not start again
  sigaction(SIGUSR1, &unheeded, &before);
  const std::string deals(300000, 'x');  // more than a pipe holds
  // Signals come while the other thread waits for what this one gives or takes.
  const auto disturb = [](std::thread& other) {
    for (int i = 0; i < 20; ++i) {
      pthread_kill(other.native_handle(), SIGUSR1);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  };
  bool read = false, written = false;
  std::string text, rest;
  std::thread reader([&] { read = source.append_to(text, 100); });
  disturb(reader);
  EXPECT_TRUE(sink.write("deal"));
  reader.join();
  EXPECT_TRUE(read && text == "deal" && !source.failed());
  std::thread writer([&] { written = sink.write(deals); });
  disturb(writer);
  while (rest.size() < deals.size() && source.append_to(rest, deals.size())) continue;
  writer.join();
  EXPECT_TRUE(written && rest == deals && !sink.failed());
  sigaction(SIGUSR1, &before, nullptr);
  close(ends[0]);
  close(ends[1]);
}
#endif

}  // namespace
}  // namespace kestran
