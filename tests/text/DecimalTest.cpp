#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "text/Decimal.h"

namespace orvantis::toolkit {
namespace {

// The value, or a word for what else it is; what is left of the text follows.
template <typename Real>
std::string read(const std::string& text) {
  Real value = 77;
  const auto [end, error] = readDecimal(text.data(), text.data() + text.size(), value);
  const std::string rest(end, text.data() + text.size());
  if (error != std::errc()) {
    return (error == std::errc::result_out_of_range ? "out of range" : "not a number") +
           (rest.empty() ? "" : "|" + rest);
  }
  char buffer[40];
  std::snprintf(buffer, sizeof(buffer), "%.17g", static_cast<double>(value));
  return buffer + (rest.empty() ? "" : "|" + rest);
}

TEST(Decimal, NumbersAreReadUpToWhereTheyEnd) {
  EXPECT_EQ(read<double>("12.5"), "12.5");
  EXPECT_EQ(read<double>("-12.5 3"), "-12.5| 3");
  EXPECT_EQ(read<double>("+1"), "1");
  EXPECT_EQ(read<double>(".5"), "0.5");
  EXPECT_EQ(read<double>("5.x"), "5|x");
  EXPECT_EQ(read<double>("1e3"), "1000");
  EXPECT_EQ(read<double>("1E+3"), "1000");
  EXPECT_EQ(read<double>("25e-1,"), "2.5|,");
  EXPECT_EQ(read<double>("1e"), "1|e");
  EXPECT_EQ(read<double>("1e+"), "1|e+");
  EXPECT_EQ(read<double>("1e00000000000000000003"), "1000");
  EXPECT_EQ(read<double>("0x10"), "0|x10");
  EXPECT_EQ(read<double>("-0"), "-0");
  EXPECT_EQ(read<float>("-0.0"), "-0");
  EXPECT_EQ(read<double>("00012"), "12");
  EXPECT_EQ(read<double>("nan"), "nan");
  EXPECT_EQ(read<float>("-inf"), "-inf");
  EXPECT_EQ(read<float>("+inf"), "inf");
}

TEST(Decimal, WhatIsNotANumberIsToldApart) {
  for (const std::string text : {"", "-", "+", ".", "-.", "x", "+-1", "--1", "++1", "e5", " 1"}) {
    EXPECT_EQ(read<double>(text).substr(0, 12), "not a number") << text;
    EXPECT_EQ(read<float>(text).substr(0, 12), "not a number") << text;
  }
}

TEST(Decimal, RangesAreThoseOfTheType) {
  EXPECT_EQ(read<double>("1e400"), "out of range");
  EXPECT_EQ(read<float>("1e39"), "out of range");
  EXPECT_EQ(read<float>("-1e39 1"), "out of range| 1");
  EXPECT_EQ(read<float>("3.4028235e38"), "3.4028234663852886e+38");
  // Too small for a float, which a writer of doubles does not care about.
  EXPECT_EQ(read<float>("6e-50"), "0");
  EXPECT_EQ(read<float>("-6e-50"), "-0");
  EXPECT_EQ(read<float>("1e-42"), "1.0005271035279194e-42");
}

TEST(Decimal, ANumberBesideTheMiddleOfTwoFloatsIsRoundedOnce) {
  // 1 + 2^-24 lies between two floats; as a double, what is a little more is the same number.
  EXPECT_EQ(read<float>("1.000000059604644775390625"), "1");
  EXPECT_EQ(read<float>("1.0000000596046447754"), "1.0000001192092896");
  EXPECT_EQ(read<float>("1.0000000596046447753"), "1");
  EXPECT_EQ(read<float>("16777217"), "16777216");
  EXPECT_EQ(read<float>("16777219"), "16777220");
  EXPECT_EQ(read<float>("16777217.000000001"), "16777218");
}

// Numbers with few digits that lie exactly in the middle of two floats: any other way to them than the exact
// one goes to the wrong side of some.
TEST(Decimal, TheMiddleOfTwoFloatsGoesToTheEvenOne) {
  for (int decimals = 1; decimals <= 6; ++decimals) {
    const auto steps = static_cast<std::uint32_t>(1U << decimals);
    for (std::uint32_t i = 0; i < 20000; ++i) {
      const std::uint32_t odd =
          (1U << 24U) + 2 * (997 * i % (1U << 23U)) + 1;  // one bit more than a float has
      const double middle = static_cast<double>(odd) / steps;
      char text[60];
      std::snprintf(text, sizeof(text), "%.*f              ", decimals, middle);
      float value = 0.0F;
      readDecimal(text, text + std::strlen(text), value);
      ASSERT_EQ(value, std::strtof(text, nullptr)) << text;
    }
  }
}

TEST(Decimal, LongNumbersAreRoundedOnce) {
  EXPECT_EQ(read<double>("9007199254740993"), "9007199254740992");
  EXPECT_EQ(read<double>("9007199254740993.0000000001"), "9007199254740994");
  EXPECT_EQ(read<double>("18446744073709551616"), "1.8446744073709552e+19");
  EXPECT_EQ(read<double>("0.1000000000000000055511151231257827"), "0.10000000000000001");
  EXPECT_EQ(read<double>("1e22"), "1e+22");
  EXPECT_EQ(read<double>("1e23"), "9.9999999999999992e+22");
  EXPECT_EQ(read<double>("9007199254740991e-22"), "9.0071992547409914e-07");
}

TEST(Decimal, NumbersOfAllScalesAreTheNearest) {
  EXPECT_EQ(read<double>("0.000000000000000000000000000"), "0");
  EXPECT_EQ(read<double>("-0e-5"), "-0");
  EXPECT_EQ(read<double>("0e5"), "0");
  std::mt19937_64 random(12);
  for (int power = -32; power <= 24; ++power) {
    for (int round = 0; round < 5000; ++round) {
      const std::uint64_t digits = random() >> random() % 64 >> 1U;
      const std::string text = std::to_string(digits) + "e" + std::to_string(power);
      double value = 0.0;
      const auto [end, error] = readDecimal(text.data(), text.data() + text.size(), value);
      ASSERT_EQ(end, text.data() + text.size()) << text;
      const double expected = std::strtod(text.c_str(), nullptr);
      ASSERT_EQ(std::memcmp(&value, &expected, sizeof(value)), 0) << text;
    }
  }
}

// In the middle between two doubles, and one unit of the last digit beside it.
TEST(Decimal, TheMiddleOfTwoDoublesGoesToTheEvenOne) {
  std::mt19937_64 random(13);
  for (int round = 0; round < 200000; ++round) {
    // 53 to 56 bits of a whole number that is divided by 2, 4 or 8: it ends with up to three decimals.
    const int decimals = static_cast<int>(random() % 3) + 1;
    const std::uint64_t odd =
        (std::uint64_t{1} << 53U) + (random() >> 11U) % (std::uint64_t{1} << 53U) / 2 * 2 + 1;
    const std::uint64_t whole = odd >> static_cast<unsigned>(decimals);
    std::uint64_t fraction = odd & ((std::uint64_t{1} << static_cast<unsigned>(decimals)) - 1);
    for (int i = 0; i < decimals; ++i) {
      fraction *= 5;  // fraction / 2^decimals = fraction * 5^decimals / 10^decimals
    }
    std::string tail = std::to_string(fraction);
    tail.insert(0, static_cast<std::size_t>(decimals) - tail.size(), '0');
    for (const char* const rest : {"", "1", "0"}) {
      const std::string text = std::to_string(whole) + "." + tail + rest + " ";
      double value = 0.0;
      readDecimal(text.data(), text.data() + text.size(), value);
      ASSERT_EQ(value, std::strtod(text.c_str(), nullptr)) << text;
    }
    const std::string below =
        std::to_string(whole) + "." +
        std::string(static_cast<std::size_t>(decimals) - std::to_string(fraction - 1).size(), '0') +
        std::to_string(fraction - 1) + "9 ";
    double value = 0.0;
    readDecimal(below.data(), below.data() + below.size(), value);
    ASSERT_EQ(value, std::strtod(below.c_str(), nullptr)) << below;
  }
}

// What is printed with enough digits comes back, and with fewer digits it is what the C library reads.
// Numbers with text behind them are read in another way than numbers at the end.
TEST(Decimal, AgreesWithTheCLibrary) {
  std::mt19937_64 random(3);
  const char* const formats[] = {"%.*f", "%.*e", "%.*g"};
  for (int round = 0; round < 600000; ++round) {
    const double size = std::pow(10.0, static_cast<double>(random() % 40) - 20.0);
    const double number = (static_cast<double>(random() % 2000001) - 1000000.0) / 1e6 * size;
    char text[400];
    std::snprintf(text, sizeof(text), formats[random() % 3], static_cast<int>(random() % 20), number);
    const std::string behind = round % 2 == 0 ? "" : " 3.25 1234567.1";
    const std::string all = text + behind;
    const char* const last = all.data() + all.size();
    double wide = 0.0;
    const auto [end, error] = readDecimal(all.data(), last, wide);
    ASSERT_TRUE(error == std::errc() && end + behind.size() == last) << all;
    const double expected = std::strtod(text, nullptr);
    ASSERT_EQ(std::memcmp(&wide, &expected, sizeof(wide)), 0) << all;
    float narrow = 0.0F;
    readDecimal(all.data(), last, narrow);
    const float narrowExpected = std::strtof(text, nullptr);
    ASSERT_EQ(std::memcmp(&narrow, &narrowExpected, sizeof(narrow)), 0) << all;
  }
}

// The usual form of a scan, in which the ground is near zero.
TEST(Decimal, SmallNumbersOfEightDigitsAgreeWithTheCLibrary) {
  std::mt19937_64 random(8);
  for (int round = 0; round < 300000; ++round) {
    const auto digits = static_cast<double>(random() % 200000001) - 1e8;
    const double number = digits / std::pow(10.0, 8.0 + static_cast<double>(random() % 6));
    char text[40];
    std::snprintf(text, sizeof(text), "%.8g \n-0.5\n0.25\n", number);
    double wide = 0.0;
    readDecimal(text, text + std::strlen(text), wide);
    ASSERT_EQ(wide, std::strtod(text, nullptr)) << text;
    float narrow = 0.0F;
    const auto [end, error] = readDecimal(text, text + std::strlen(text), narrow);
    ASSERT_EQ(narrow, std::strtof(text, nullptr)) << text;
    ASSERT_EQ(*end, ' ') << text;
  }
}

// The digits of doubles, and of what lies in the middle of two, cut or rounded to 16 to 19: as near to a
// change of the result as so many digits can be.
TEST(Decimal, LongNumbersAgreeWithTheCLibrary) {
  std::mt19937_64 random(7);
  for (int round = 0; round < 400000; ++round) {
    const double number =
        std::ldexp(static_cast<double>(random() | 1U), static_cast<int>(random() % 100) - 110);
    const double beside = std::nextafter(number, 1e300);
    const long double middle = (static_cast<long double>(number) + static_cast<long double>(beside)) / 2;
    char text[100];
    std::snprintf(text, sizeof(text), round % 2 == 0 ? "%.*Le" : "%.*Lf", 15 + static_cast<int>(random() % 4),
                  round % 3 == 0 ? static_cast<long double>(number) : middle);
    const char* const last = text + std::strlen(text);
    double value = 0.0;
    const auto [end, error] = readDecimal(text, last, value);
    ASSERT_TRUE(error == std::errc() && end == last) << text;
    ASSERT_EQ(value, std::strtod(text, nullptr)) << text;
  }
}

// Every number of digits before and after the point, at the end of the text and before more of it.
TEST(Decimal, NumbersOfEverySizeAreRead) {
  for (std::size_t whole = 0; whole <= 20; ++whole) {
    for (std::size_t fraction = 0; fraction <= 20; ++fraction) {
      for (const std::string sign : {"", "-"}) {
        for (const std::string rest : {"", " 987654321.123456789", ",", "\n-1.5\n"}) {
          const std::string number = sign + std::string("98765432109876543210").substr(0, whole) +
                                     (fraction == 0 ? "" : ".") +
                                     std::string("12345678901234567890").substr(0, fraction);
          if (whole + fraction == 0) {
            continue;
          }
          const std::string text = number + rest;
          double value = 0.0;
          const auto [end, error] = readDecimal(text.data(), text.data() + text.size(), value);
          ASSERT_EQ(std::string(end, text.data() + text.size()), rest) << text;
          ASSERT_EQ(value, std::strtod(number.c_str(), nullptr)) << text;
        }
      }
    }
  }
}

TEST(Decimal, EveryFloatComesBack) {
  std::mt19937 random(4);
  for (int round = 0; round < 300000; ++round) {
    const auto bits = static_cast<std::uint32_t>(random());
    float number = 0.0F;
    std::memcpy(&number, &bits, sizeof(number));
    if (!std::isfinite(number)) {
      continue;
    }
    char text[64];
    std::snprintf(text, sizeof(text), "%.9g", static_cast<double>(number));
    float back = 0.0F;
    readDecimal(text, text + std::strlen(text), back);
    ASSERT_EQ(std::memcmp(&back, &number, sizeof(back)), 0) << text;
  }
}

}  // namespace
}  // namespace orvantis::toolkit
