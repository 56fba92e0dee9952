#include <cstdint>
#include <random>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "text/StampText.h"

namespace orvantis::toolkit {
namespace {

using std::chrono::nanoseconds;

// The nanoseconds, or a word for what else it is; what is left of the text follows.
std::string read(const std::string& text) {
  nanoseconds value{77};
  const auto [end, error] = readSeconds(text.data(), text.data() + text.size(), value);
  const std::string rest(end, text.data() + text.size());
  const std::string result = error == std::errc::invalid_argument      ? "not a number"
                             : error == std::errc::result_out_of_range ? "out of range"
                                                                       : std::to_string(value.count());
  return result + (rest.empty() ? "" : "|" + rest);
}

TEST(StampText, SecondsAreReadToTheNanosecond) {
  EXPECT_EQ(read("0"), "0");
  EXPECT_EQ(read("1"), "1000000000");
  EXPECT_EQ(read("-1.5"), "-1500000000");
  EXPECT_EQ(read("1699999999.123456789"), "1699999999123456789");
  EXPECT_EQ(read("0.000000001"), "1");
  EXPECT_EQ(read("00012.50"), "12500000000");
  EXPECT_EQ(read(".25"), "250000000");
  EXPECT_EQ(read("3."), "3000000000");
  EXPECT_EQ(read("-0"), "0");
}

TEST(StampText, SecondsMayHaveAnExponent) {
  EXPECT_EQ(read("15e-1"), "1500000000");
  EXPECT_EQ(read("1.5E3"), "1500000000000");
  EXPECT_EQ(read("1e+0"), "1000000000");
  EXPECT_EQ(read("0.00001e5"), "1000000000");
  EXPECT_EQ(read("100000e-14"), "1");
  EXPECT_EQ(read("0e99999999999999999999"), "0");
  EXPECT_EQ(read("1e-99999999999999999999"), "0");
  EXPECT_EQ(read("1e99999999999999999999"), "out of range");
}

TEST(StampText, SecondsAreRoundedToTheNearestNanosecond) {
  EXPECT_EQ(read("0.0000000004999999999999999999"), "0");
  EXPECT_EQ(read("0.0000000005"), "1");
  EXPECT_EQ(read("-0.0000000005"), "-1");
  EXPECT_EQ(read("0.00000000005"), "0");
  EXPECT_EQ(read("0.0000000015"), "2");
  EXPECT_EQ(read("0.9999999999"), "1000000000");
  EXPECT_EQ(read("1699999999.1234567894999999999999"), "1699999999123456789");
}

TEST(StampText, SecondsEndWhereTheNumberDoes) {
  EXPECT_EQ(read("1,2"), "1000000000|,2");
  EXPECT_EQ(read("1.2.3"), "1200000000|.3");
  EXPECT_EQ(read("1e"), "1000000000|e");
  EXPECT_EQ(read("1e-"), "1000000000|e-");
  EXPECT_EQ(read("1 "), "1000000000| ");
}

TEST(StampText, WhatIsNotSecondsIsToldApart) {
  for (const std::string text : {"", "-", ".", "-.", "+1", "--1", "nan", "inf", "x", "e5", " 1"}) {
    EXPECT_EQ(read(text), "not a number" + (text.empty() ? "" : "|" + text)) << text;
  }
}

TEST(StampText, TheTimeBetweenAnyTwoCanBeTold) {
  EXPECT_EQ(read("4599999999.999999999"), "4599999999999999999");
  EXPECT_EQ(read("-4599999999.999999999"), "-4599999999999999999");
  EXPECT_EQ(read("4.6e9"), "out of range");
  EXPECT_EQ(read("-4600000000.0 s"), "out of range| s");
  EXPECT_EQ(read("10000000000"), "out of range");
  EXPECT_EQ(read("18446744073.709551616"), "out of range");
}

TEST(StampText, WhatIsWrittenComesBack) {
  std::mt19937_64 random(6);
  for (int round = 0; round < 100000; ++round) {
    const auto size = static_cast<std::int64_t>(random() % 4600000000000000000U) >> random() % 62;
    const nanoseconds time(random() % 2 == 0 ? size : -size);
    const std::string text = toText(time);
    ASSERT_EQ(read(text), std::to_string(time.count())) << text;
  }
}

TEST(StampText, SecondsInJsonAreTheNearestDouble) {
  EXPECT_EQ(toSeconds(nanoseconds(100'000'000)), 0.1);
  EXPECT_EQ(toSeconds(nanoseconds(-1)), -1e-9);
  EXPECT_EQ(toSeconds(nanoseconds(1'699'999'999'123'456'789)), 1699999999.123456789);
  // Beside the middle of two doubles: rounded to 64 bits first, it would lie exactly there, and then go to
  // the other one.
  EXPECT_EQ(toSeconds(nanoseconds(1'122'666'250'818'534'255)), 1122666250.818534255);
}

}  // namespace
}  // namespace orvantis::toolkit
