#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "settings/JsonExponent.h"
#include "support/Settings.h"

namespace orvantis {
namespace {

using testing::loadText;
using testing::saveText;

const std::vector<std::string> numbers = {"1e999999999",
                                          "1e1000000000",
                                          "1e2147483647",
                                          "1e2147483648",
                                          "1E+99999999999",
                                          "-1.5e-99999999999",
                                          "0e99999999999",
                                          "1e00000000000000000001",
                                          "123456789.123456789E+1234567890123456789012345678901234567890"};

TEST(JsonExponent, BeyondAnIntIsValidAndKeepsItsText) {
  for (const std::string& number : numbers) {
    SettingsManager settings;
    loadText(settings, "{\"x\": " + number + ", \"l\": [" + number + "," + number + " ]}");
    EXPECT_EQ(settings.get<std::string>("x"), number);
    EXPECT_EQ(settings.getChildCount("l"), 2);
    EXPECT_EQ(settings.getIndexedValue("l", 1), number);
    loadText(settings, number);
    EXPECT_EQ(settings.getTree().data(), number) << "a document of its own";
  }
}

TEST(JsonExponent, BeyondAnIntIsWrittenAsItWasRead) {
  for (const std::string& number : numbers) {
    SettingsManager settings;
    loadText(settings, "{\"x\": " + number + "}");
    EXPECT_EQ(saveText(settings), "{ \"x\": " + number + " }\n");
  }
}

TEST(JsonExponent, BeyondADoubleIsNotADouble) {
  SettingsManager settings;
  loadText(settings, R"({"x": 1e99999999999, "zero": 0e99999999999, "one": 1e00000000000})");
  EXPECT_THROW(settings.get<double>("x"), boost::property_tree::ptree_bad_data);
  EXPECT_EQ(settings.get<double>("x", 1.5), 1.5);
  EXPECT_EQ(settings.get<double>("zero"), 0.0);
  EXPECT_EQ(settings.get<double>("one"), 1.0);
}

TEST(JsonExponent, InAStringIsText) {
  const std::string text = "{\"e+12345678901234567890\": \"\\n1e12345678901234567890\\t, E99999999999\"}";
  SettingsManager settings;
  loadText(settings, text);
  EXPECT_EQ(settings.get<std::string>("e+12345678901234567890"), "\n1e12345678901234567890\t, E99999999999");
  EXPECT_EQ(saveText(settings), "{ " + text.substr(1, text.size() - 2) + " }\n");
}

TEST(JsonExponent, InAStringAfterANumberIsText) {
  SettingsManager settings;
  loadText(settings, R"([1e12345678901, "1e12345678901", 1e12345678902, {"1e12345678903": true}])");
  EXPECT_EQ(settings.getIndexedValue("", 0), "1e12345678901");
  EXPECT_EQ(settings.getIndexedValue("", 1), "1e12345678901");
  EXPECT_EQ(settings.getIndexedValue("", 2), "1e12345678902");
  settings.pathPush("", 3, nullptr);
  EXPECT_TRUE(settings.exists("1e12345678903"));
}

TEST(JsonExponent, IsWholeWhereverABlockOfTheReaderEnds) {
  const std::string number = "-12.5e+123456789012345";
  const std::string text = "\"1e1234567890\", " + number;
  for (std::size_t blanks = 16384 - text.size() - 3; blanks < 16386; ++blanks) {
    SettingsManager settings;
    loadText(settings, "[" + std::string(blanks, ' ') + text + "]");
    ASSERT_EQ(settings.getIndexedValue("", 0), "1e1234567890") << blanks;
    ASSERT_EQ(settings.getIndexedValue("", 1), number) << blanks;
  }
}

TEST(JsonExponent, MayBeLongerThanABlockOfTheReader) {
  for (const std::size_t length : {16383U, 16384U, 16385U, 32768U, 100000U}) {
    const std::string number = "1e" + std::string(length, '7');
    SettingsManager settings;
    loadText(settings, "[" + number + ", " + std::string(length, '8') + ", \"" + number + "\"]");
    EXPECT_EQ(settings.getIndexedValue("", 0), number);
    EXPECT_EQ(settings.getIndexedValue("", 1), std::string(length, '8'));
    EXPECT_EQ(settings.getIndexedValue("", 2), number);
  }
}

TEST(JsonExponent, DoesNotShiftThePlaceOfAnError) {
  SettingsManager settings;
  const auto errorOf = [&settings](const std::string& text) {
    std::istringstream in(text);
    EXPECT_FALSE(settings.loadStream(in, SettingsManager::JSON));
    return settings.getLoadError().substr(0, settings.getLoadError().find(':'));
  };
  EXPECT_EQ(errorOf("[1e12345678901, x]"), "JSON error in line 1, column 17");
  EXPECT_EQ(errorOf("[1e12345678901x]"), "JSON error in line 1, column 15");
  EXPECT_EQ(errorOf("[\n1e12345678901,\n1e12345678901.5]"), "JSON error in line 3, column 14");
  EXPECT_EQ(errorOf("[1e12345678901"), "JSON error in line 1, column 15");
  EXPECT_EQ(errorOf("1e12345678901 1e12345678901"), "JSON error in line 1, column 15");
  EXPECT_EQ(errorOf("[x, 1e12345678901]"), "JSON error in line 1, column 2");
  EXPECT_EQ(errorOf("[.e12345678901]"), "JSON error in line 1, column 2");
}

TEST(JsonExponent, TheFirstNineDigitsAreTheParsers) {
  const auto restOf = [](std::string_view text) {
    const json::Part rest = json::findLongExponent(text, 0);
    return std::string(text.substr(rest.begin, rest.end - rest.begin));
  };
  EXPECT_EQ(restOf("1e1234567890"), "0");
  EXPECT_EQ(restOf("1e+123456789012"), "012");
  EXPECT_EQ(restOf("1E-123456789012 "), "012");
  EXPECT_EQ(restOf("[1.5e12345678901,1e12345678902]"), "01");
  for (const char* text : {"", "e", "1e123456789", "1e+123456789", "12345678901", "1.12345678901", "ee",
                           "e++12345678901", "e.12345678901", "1e12345 67890"}) {
    EXPECT_EQ(restOf(text), "") << text;
  }
  // Wherever it stands: the search looks at many places at once.
  for (std::size_t before = 0; before < 600; ++before) {
    for (const char* exponent : {"e1234567890", "E+1234567890"}) {
      ASSERT_EQ(restOf(std::string(before, 'e') + exponent), "0") << before;
      ASSERT_EQ(restOf(std::string(before, '1') + exponent + std::string(before, ' ')), "0") << before;
    }
  }
}

}  // namespace
}  // namespace orvantis
