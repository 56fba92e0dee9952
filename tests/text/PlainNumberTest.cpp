#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "text/Decimal.h"
#include "text/Number.h"
#include "text/PlainNumber.h"

namespace orvantis::toolkit {
namespace {

double doubleOf(std::uint64_t bits) {
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

// Both ways that a system without the standard library's conversions reads a number by.
void expectReads(const std::string& text) {
  double wanted = 0.0;
  const char* const first = text.data();
  const char* const last = first + text.size();
  const auto result = readNumber(first, last, wanted);
  double found = 0.0;
  const auto plainly = plain::readNumber(first, last, found, std::strtod);
  EXPECT_EQ(plainly.ptr - first, result.ptr - first) << text;
  EXPECT_EQ(plainly.ec, result.ec) << text;
  if (!std::isnan(wanted)) {
    EXPECT_EQ(found, wanted) << text;
  }
  double quick = 0.0;
  const char* end = first;
  if (detail::readUsual(first, last, quick, end)) {
    EXPECT_EQ(quick, wanted) << text;
    EXPECT_EQ(end - first, result.ptr - first) << text;
  }
}

TEST(PlainNumber, WritesWhatTheStandardLibraryWrites) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double value : {0.0,
                             -0.0,
                             1.0,
                             -1.0,
                             0.1,
                             0.3,
                             1e5,
                             123456.0,
                             100000.0,
                             1e-4,
                             1e-5,
                             0.001,
                             12.5,
                             1024.0,
                             0.5,
                             0.25,
                             1e14,
                             123456789012345.0,
                             999999999999999.9,
                             1e15,
                             1e22,
                             1e23,
                             5e-324,
                             0.1 + 0.2,
                             2.5e-6,
                             1e-6,
                             std::numeric_limits<double>::max(),
                             infinity,
                             -infinity,
                             9007199254740993.0,
                             1.7976931348623157e308}) {
    EXPECT_EQ(plain::shortest(value), toText(value));
    EXPECT_EQ(plain::shortest(std::nextafter(value, 1.0)), toText(std::nextafter(value, 1.0)));
  }
  std::mt19937_64 random(3);
  for (int i = 0; i < 30000; ++i) {
    const double any = doubleOf(random());
    const double usual =
        std::ldexp(static_cast<double>(random() >> 11U), static_cast<int>(random() % 80) - 75);
    const double given = static_cast<double>(random() % 2000000) / 1000.0 - 1000.0;
    for (const double value : {any, usual, -usual, given, std::nextafter(given, 0.0)}) {
      if (!std::isnan(value)) {
        ASSERT_EQ(plain::shortest(value), toText(value));
      }
    }
  }
}

TEST(PlainNumber, ReadsWhatTheStandardLibraryReads) {
  for (const char* const text : {"0",
                                 "-0",
                                 "1.",
                                 ".5",
                                 "1e5",
                                 "1E+5",
                                 "1e",
                                 "1e+",
                                 "-",
                                 "",
                                 "+1",
                                 "abc",
                                 "1e400",
                                 "-1e400",
                                 "1e-400",
                                 "inf",
                                 "-infinity",
                                 "nan",
                                 "0x10",
                                 "1,5",
                                 "12.5.6",
                                 "1e5e5",
                                 "007",
                                 "0.0e999",
                                 "9007199254740993",
                                 "123456789012345678901234567890",
                                 "0.1e1",
                                 "5e-324",
                                 "2e-324"}) {
    expectReads(text);
  }
  std::mt19937_64 random(4);
  for (int i = 0; i < 20000; ++i) {
    expectReads(toText(doubleOf(random())));
    expectReads(toDigits(std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 90) - 80),
                         1 + static_cast<int>(random() % 19)));
  }
}

}  // namespace
}  // namespace orvantis::toolkit
