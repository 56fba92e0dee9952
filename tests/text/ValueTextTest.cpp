#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include <boost/optional/optional_io.hpp>
#include <gtest/gtest.h>

#include "text/ValueText.h"

// That property_tree reads and writes the same is the settings tests' to show; here stands what holds with
// every standard library.
namespace orvantis::toolkit {
namespace {

using Limits = std::numeric_limits<double>;

boost::optional<double> number(const std::string& text) {
  return ValueText<double>().get_value(text);
}

TEST(ValueText, ReadsDecimalNumbersWithBlanksAroundThemOrAPlusInFront) {
  for (const auto& [text, value] :
       {std::pair("0", 0.0), std::pair("-1.5", -1.5), std::pair("+2", 2.0), std::pair(".5", 0.5),
        std::pair("5.", 5.0), std::pair("1e3", 1000.0), std::pair("1E+03", 1000.0), std::pair("007", 7.0),
        std::pair(" \t\n\v\f\r1 \t\n\v\f\r", 1.0), std::pair("+.5e-1", 0.05),
        std::pair("1.7976931348623157e308", Limits::max()), std::pair("4.9e-324", Limits::denorm_min())}) {
    EXPECT_EQ(number(text), value) << text;
  }
}

TEST(ValueText, WhatIsNotADecimalNumberIsNone) {
  for (const char* text :
       {"",    " ",    "+",    "-",      ".",     "+-1",   "-+1",   "++1", "- 1",   "+ 1",  "1 2",
        "1e",  "1e+",  "e5",   "0x10",   "0x1p3", "-0x10", "+0x10", "inf", "-inf",  "+inf", "infinity",
        "nan", "-nan", "+nan", "nan(1)", "INF",   "NaN",   "1f",    "1,5", "1.5.5", "true", "1\xA0"}) {
    EXPECT_FALSE(number(text)) << text;
  }
  EXPECT_FALSE(number(std::string("1\0", 2)));
}

TEST(ValueText, ANumberTooLargeIsNoneAndOneTooSmallIsZeroWithItsSign) {
  for (const std::string& text :
       {std::string("1e309"), std::string("-1e309"), "1" + std::string(400, '0'),
        "1" + std::string(800, '0') + "e-1", "0." + std::string(400, '0') + "1e+800",
        std::string("1e99999999999999999999"), std::string("1e2147483648")}) {
    EXPECT_FALSE(number(text)) << text;
  }
  for (const std::string& text : {std::string("1e-400"), "0." + std::string(400, '0') + "1",
                                  "1" + std::string(400, '0') + "e-800", "0." + std::string(800, '0') + "1e1",
                                  std::string("1e-99999999999999999999"), std::string("1e-2147483649")}) {
    ASSERT_TRUE(number(text)) << text;
    EXPECT_EQ(*number(text), 0.0) << text;
    EXPECT_FALSE(std::signbit(*number(text))) << text;
    EXPECT_TRUE(std::signbit(*number("-" + text))) << text;
  }
  EXPECT_EQ(number("0e99999999999999999999"), 0.0);
}

TEST(ValueText, ReadsWholeNumbersThatFit) {
  const ValueText<int> whole;
  EXPECT_EQ(whole.get_value(" +007 "), 7);
  EXPECT_EQ(whole.get_value("-2147483648"), std::numeric_limits<int>::min());
  EXPECT_EQ(whole.get_value("2147483647"), std::numeric_limits<int>::max());
  for (const char* text :
       {"", "2147483648", "-2147483649", "1.0", "1.", ".5", "1e2", "0x10", "+-1", "1 2", "true", "inf"}) {
    EXPECT_FALSE(whole.get_value(text)) << text;
  }
}

TEST(ValueText, ReadsTruthValuesAsWordsOrDigits) {
  const ValueText<bool> truth;
  EXPECT_EQ(truth.get_value("true"), true);
  EXPECT_EQ(truth.get_value(" false "), false);
  EXPECT_EQ(truth.get_value("1"), true);
  EXPECT_EQ(truth.get_value("0"), false);
  for (const char* text : {"", "True", "yes", "2", "truee"}) {
    EXPECT_FALSE(truth.get_value(text)) << text;
  }
}

TEST(ValueText, WritesWhatReadsBack) {
  for (const double value : {0.1, -0.0, 1.0 / 3.0, Limits::max(), Limits::denorm_min(), 1e22}) {
    const std::string text = *ValueText<double>().put_value(value);
    EXPECT_EQ(number(text), value) << text;
  }
  EXPECT_EQ(ValueText<double>().put_value(0.1), std::string("0.10000000000000001"));
  EXPECT_EQ(ValueText<double>().put_value(Limits::infinity()), std::string("inf"));
  EXPECT_EQ(ValueText<int>().put_value(-7), std::string("-7"));
  EXPECT_EQ(ValueText<bool>().put_value(false), std::string("false"));
}

}  // namespace
}  // namespace orvantis::toolkit
