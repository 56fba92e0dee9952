#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/string.hpp>
#include <gtest/gtest.h>

#include "text/JsonText.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

TEST(JsonText, EveryCharacterIsQuotedAsByAnotherWriter) {
  std::string all;
  for (int c = 0; c < 128; ++c) {
    all += static_cast<char>(c);
  }
  all += "\u00e4\u20ac\U0001F600";
  EXPECT_EQ(jsonQuoted(all), boost::json::serialize(boost::json::string(all)));
  EXPECT_EQ(jsonQuoted("a\"b\\c\x01\x1f\x7f\n"), "\"a\\\"b\\\\c\\u0001\\u001f\x7f\\n\"");
  EXPECT_EQ(jsonQuoted(""), "\"\"");
}

TEST(JsonText, WholeNumbersAndWordsAreWhole) {
  using Limits = std::numeric_limits<std::int64_t>;
  const boost::json::array values = {
      Limits::min(), Limits::max(), std::numeric_limits<std::uint64_t>::max(), 0, true, false, nullptr};
  EXPECT_EQ(toJson(values),
            "[-9223372036854775808,9223372036854775807,18446744073709551615,0,true,false,null]");
}

TEST(Text, NumbersAreShort) {
  EXPECT_EQ(toText(0.1), "0.1");
  EXPECT_EQ(toText(1.0 / 3.0), "0.3333333333333333");
  EXPECT_EQ(toText(2.50, 3), "2.5");
  EXPECT_EQ(toText(100.0, 2), "100");
  EXPECT_EQ(toText(-0.0001, 2), "0");
  EXPECT_EQ(toText(-0.5, 0), "0");
  EXPECT_EQ(toText(-999999999999999.0, 2), "-999999999999999");
  EXPECT_EQ(toText(1e15, 2), "1e+15");
  EXPECT_EQ(toText(-1e308, 2), "-1e+308");
  EXPECT_EQ(toText(-HUGE_VAL, 2), "-inf");
  EXPECT_EQ(toFixed(2.5, 2), "2.50");
  EXPECT_EQ(toFixed(-0.001, 2), "0.00");
}

TEST(Text, NumbersHaveAsManyDigitsAsAskedFor) {
  EXPECT_EQ(toDigits(0.1, 17), "0.10000000000000001");
  EXPECT_EQ(toDigits(0.5, 17), "0.5");
  EXPECT_EQ(toDigits(-1e300, 17), "-1.0000000000000001e+300");
  EXPECT_EQ(toDigits(1e-7, 17), "9.9999999999999995e-08");
  EXPECT_EQ(toDigits(123456.0, 3), "1.23e+05");
  EXPECT_EQ(toDigits(-0.0, 17), "-0");
}

TEST(Text, TheLargestNumberFits) {
  EXPECT_EQ(toFixed(-std::numeric_limits<double>::max(), 6).size(), 317U);
}

TEST(Text, ControlCharactersAreWrittenOut) {
  EXPECT_EQ(printable("a\x1b[1m\n\x7f"), "a\\x1b[1m\\x0a\\x7f");
  EXPECT_EQ(printable("\xC2\x9B"), "\\x9b");
  EXPECT_EQ(printable("\xC2\xB2 \xC3\xA9"), "\xC2\xB2 \xC3\xA9");
}

TEST(Text, EachByteThatIsNotUtf8IsReplaced) {
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_EQ(toUtf8("\xC2\xB2 \xE2\x82\xAC \xF0\x9F\x98\x80"), "\xC2\xB2 \xE2\x82\xAC \xF0\x9F\x98\x80");
  EXPECT_EQ(toUtf8("a\xE9"
                   "b"),
            "a" + mark + "b");
  EXPECT_EQ(toUtf8("\xE2\x82"), mark + mark);
  EXPECT_EQ(toUtf8("\xC0\xAF"), mark + mark);             // longer than it needs to be
  EXPECT_EQ(toUtf8("\xED\xA0\x80"), mark + mark + mark);  // half of a pair
  EXPECT_EQ(toUtf8("\xE2\"x"), mark + "\"x");             // what follows stays
  EXPECT_EQ(toUtf8(std::string_view("a\0b", 3)), std::string("a\0b", 3));
  EXPECT_EQ(printable("\x9B"
                      "2J"),
            mark + "2J");
  EXPECT_EQ(toJson(boost::json::object{{"k\xFF", "v\xFF\n"}}), "{\"k" + mark + "\":\"v" + mark + "\\n\"}");
}

TEST(Text, WidthCountsCharacters) {
  EXPECT_EQ(displayWidth("m²"), 2U);
  EXPECT_EQ(displayWidth("→ +x"), 4U);
}

TEST(Text, OneIsSingular) {
  EXPECT_EQ(counted(0, "point"), "0 points");
  EXPECT_EQ(counted(1, "point"), "1 point");
}

TEST(Json, NumbersAreShortAndStringsEscaped) {
  EXPECT_EQ(toJson(boost::json::object{{"a", 1.5},
                                       {"b", boost::json::array{1, 2.0, nullptr, true}},
                                       {"c\"", "\n"},
                                       {"d", std::numeric_limits<double>::infinity()},
                                       {"e", boost::json::array{}}}),
            R"({"a":1.5,"b":[1,2,null,true],"c\"":"\n","d":null,"e":[]})");
}

}  // namespace
}  // namespace orvantis::toolkit
