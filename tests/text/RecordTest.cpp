#include <chrono>
#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "text/Record.h"

namespace orvantis::toolkit {
namespace {

using std::chrono::nanoseconds;

TEST(Record, AsJsonKeepsEveryKindOfValue) {
  const Record record = {{"none", "", nullptr},
                         {"yes", "", true},
                         {"whole", "", std::int64_t{-7}},
                         {"large", "", std::uint64_t{18446744073709551615U}},
                         {"number", "", 0.1},
                         {"endless", "", std::numeric_limits<double>::infinity()},
                         {"time", "", nanoseconds(1'500'000'000)},
                         {"text", "", "a\"b\n\xFF"},
                         {"words", "", std::vector<std::string>{"low", "high"}},
                         {"range", "", std::vector<double>{-0.5, 2.0}},
                         {"inner", "", Record{{"a", "", "b"}}},
                         {"things", "", std::vector<Record>{{{"a", "", std::int64_t{1}}}, {}}},
                         {"", "column", "in tables only"}};
  EXPECT_EQ(toJson(record),
            R"({"none":null,"yes":true,"whole":-7,"large":18446744073709551615,"number":0.1,"endless":null,)"
            R"("time":1.5,"text":"a\"b\n)"
            "\xEF\xBF\xBD"
            R"(","words":["low","high"],"range":[-0.5,2],"inner":{"a":"b"},"things":[{"a":1},{}]})");
}

TEST(Record, TimesAreExactDecimalsInJsonAndTables) {
  const Value unixTime = nanoseconds(1'700'000'000'123'456'789);
  EXPECT_EQ(toJson({{"stamp", "", unixTime}}), R"({"stamp":1700000000.123456789})");
  EXPECT_EQ(toCell(unixTime), "1700000000.123456789");
  EXPECT_EQ(toCell(nanoseconds(-1)), "-0.000000001");
}

TEST(Record, ACellIsEmptyAWordOrANumber) {
  EXPECT_EQ(toCell(nullptr), "");
  EXPECT_EQ(toCell(true), "1");
  EXPECT_EQ(toCell(false), "0");
  EXPECT_EQ(toCell(0.1), "0.1");
  EXPECT_EQ(toCell("a b"), "a b");
}

TEST(Record, ARowHasACellForEachColumnInTheirOrder) {
  const Record record = {{"b", "b", "x,y"}, {"", "a", 2.5}, {"c", "", "not in tables"}, {"", "other", "e"}};
  EXPECT_EQ(toRow(record, {"a", "missing", "b"}), "2.5,,\"x,y\"\n");
}

TEST(Record, ASentenceTakesTheValuesOfItsKeys) {
  const Record record = {{"name", "", "a\x1b"},
                         {"at", "", nanoseconds(928'571'429)},
                         {"x", "", 10.6000001},
                         {"levels", "", std::vector<std::string>{"low", "high"}}};
  EXPECT_EQ(toSentence(record, "{name} at {at} s, {x}: {levels}{missing}."),
            "a\\x1b at 0.929 s, 10.6: low high.");
}

}  // namespace
}  // namespace orvantis::toolkit
