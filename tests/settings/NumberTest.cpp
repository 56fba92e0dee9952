#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <boost/optional/optional.hpp>
#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/AllocationCounter.h"
#include "support/GroupingLocale.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;
using testing::GroupingLocale;
using testing::loadText;
using testing::LogCapture;
using testing::saveText;

// The conversion that the store's has to equal: property_tree's own, in the classic locale.
template <typename T>
using Oracle = boost::property_tree::stream_translator<char, std::char_traits<char>, std::allocator<char>, T>;

template <typename T>
std::string written(T value) {
  return Oracle<T>(std::locale::classic()).put_value(value).value();
}

void setText(SettingsManager& settings, const std::string& text) {
  settings.putChild("x", ptree(text));
}

template <typename T>
bool isSame(T a, T b) {
  return a == b;
}
template <>
bool isSame(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// Reads a text both ways. The default tells "no value" from any value.
template <typename T>
void expectReadAsPropertyTreeDoes(SettingsManager& settings, const std::string& text) {
  setText(settings, text);
  const boost::optional<T> expected = Oracle<T>(std::locale::classic()).get_value(text);
  if (expected) {
    EXPECT_TRUE(isSame(settings.get<T>("x"), *expected)) << '\'' << text << '\'';
    EXPECT_TRUE(isSame(settings.get<T>("x", T()), *expected)) << '\'' << text << '\'';
  } else {
    EXPECT_THROW(settings.get<T>("x"), boost::property_tree::ptree_bad_data) << '\'' << text << '\'';
    EXPECT_TRUE(isSame(settings.get<T>("x", static_cast<T>(1)), static_cast<T>(1))) << '\'' << text << '\'';
  }
}

void expectAllReadAsPropertyTreeDoes(SettingsManager& settings, const std::string& text) {
  expectReadAsPropertyTreeDoes<double>(settings, text);
  expectReadAsPropertyTreeDoes<int>(settings, text);
  expectReadAsPropertyTreeDoes<bool>(settings, text);
}

const std::vector<double>& notableDoubles() {
  using Limits = std::numeric_limits<double>;
  static const std::vector<double> values = {0.0,
                                             -0.0,
                                             1.0,
                                             -1.0,
                                             0.1,
                                             1.0 / 3.0,
                                             20.0,
                                             3.141592653589793,
                                             -3.141592653589793,
                                             6.283185307179586,
                                             1e15,
                                             1e16,
                                             1e17,
                                             1e22,
                                             1e23,
                                             123456789012345678.0,
                                             9007199254740993.0,
                                             Limits::max(),
                                             Limits::lowest(),
                                             Limits::min(),
                                             Limits::denorm_min(),
                                             -Limits::denorm_min(),
                                             std::nextafter(Limits::min(), 0.0),
                                             Limits::epsilon(),
                                             std::nextafter(1.0, 2.0),
                                             std::nextafter(1.0, 0.0),
                                             1e-5,
                                             1e-4,
                                             0.00012345};
  return values;
}

void expectRoundTrip(const std::vector<double>& values) {
  SettingsManager saved;
  for (std::size_t i = 0; i < values.size(); ++i) {
    saved.pathPush("v", static_cast<int>(i), nullptr);
    saved.put<double>("x", values[i]);
    saved.pathPop();
  }
  SettingsManager loaded;
  loadText(loaded, saveText(saved));
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (SettingsManager* settings : {&saved, &loaded}) {
      settings->pathPush("v", static_cast<int>(i), nullptr);
      EXPECT_TRUE(isSame(settings->get<double>("x"), values[i]))
          << std::hexfloat << values[i] << " became " << settings->get<double>("x");
      settings->pathPop();
    }
  }
}

double randomDouble(std::mt19937_64& random) {
  for (;;) {
    const auto value = std::bit_cast<double>(random());
    if (std::isfinite(value)) {
      return value;
    }
  }
}

TEST(Numbers, NotableDoublesRoundTripBitForBit) {
  expectRoundTrip(notableDoubles());
}

TEST(Numbers, RandomDoublesRoundTripBitForBit) {
  std::mt19937_64 random(1);
  std::vector<double> values(20000);
  for (double& value : values) {
    value = randomDouble(random);
  }
  expectRoundTrip(values);
}

TEST(Numbers, RandomDenormalsRoundTripBitForBit) {
  std::mt19937_64 random(2);
  std::vector<double> values(5000);
  for (double& value : values) {
    value = std::bit_cast<double>(random() & 0x800FFFFFFFFFFFFFULL);
  }
  expectRoundTrip(values);
}

TEST(Numbers, DoublesAreStoredAsPropertyTreeStoresThem) {
  std::mt19937_64 random(3);
  std::vector<double> values = notableDoubles();
  for (int i = 0; i < 20000; ++i) {
    values.push_back(randomDouble(random));
    // Sizes that occur in documents, where the shorter notations are chosen.
    values.push_back(std::ldexp(static_cast<double>(random() >> 11U), -40 - static_cast<int>(random() % 40)));
    values.push_back(static_cast<double>(static_cast<std::int64_t>(random()) >> (random() % 60)));
    values.push_back(static_cast<double>(random() % 2000000) / 1000.0 - 1000.0);
  }
  values.push_back(std::numeric_limits<double>::infinity());
  values.push_back(-std::numeric_limits<double>::infinity());
  values.push_back(std::numeric_limits<double>::quiet_NaN());
  values.push_back(-std::numeric_limits<double>::quiet_NaN());
  SettingsManager settings;
  for (const double value : values) {
    settings.put<double>("x", value);
    EXPECT_EQ(settings.getTree().get<std::string>("x"), written(value)) << std::hexfloat << value;
  }
}

TEST(Numbers, IntegersAndTruthValuesAreStoredAsPropertyTreeStoresThem) {
  std::mt19937_64 random(4);
  SettingsManager settings;
  std::vector<int> values = {0, 1, -1, INT_MIN, INT_MAX, 102400};
  for (int i = 0; i < 5000; ++i) {
    values.push_back(static_cast<int>(static_cast<std::int32_t>(random()) >> (random() % 31)));
  }
  for (const int value : values) {
    settings.put<int>("x", value);
    EXPECT_EQ(settings.getTree().get<std::string>("x"), written(value));
    EXPECT_EQ(settings.get<int>("x"), value);
  }
  for (const bool value : {true, false}) {
    settings.put<bool>("x", value);
    EXPECT_EQ(settings.getTree().get<std::string>("x"), written(value));
    EXPECT_EQ(settings.get<bool>("x"), value);
  }
}

TEST(Numbers, NotableTextsAreReadAsPropertyTreeReadsThem) {
  SettingsManager settings;
  for (const char* text : {"",
                           " ",
                           "0",
                           "-0",
                           "+0",
                           "+1",
                           "-1",
                           "007",
                           "-007",
                           "1 ",
                           " 1",
                           "\t1\n",
                           "1 2",
                           "1,5",
                           "1.",
                           ".5",
                           "-.5",
                           ".",
                           "-",
                           "+",
                           "1e",
                           "1e+",
                           "1e5",
                           "1E5",
                           "1e+5",
                           "1e-5",
                           "e5",
                           "1e5.",
                           "1.5.5",
                           "--1",
                           "+-1",
                           "inf",
                           "-inf",
                           "infinity",
                           "nan",
                           "-nan",
                           "NaN",
                           "0x10",
                           "0X1p3",
                           "1e400",
                           "-1e400",
                           "1e-400",
                           "-1e-400",
                           "1e308",
                           "1.8e308",
                           "4.9e-324",
                           "2.4e-324",
                           "2147483647",
                           "2147483648",
                           "-2147483648",
                           "-2147483649",
                           "99999999999999999999",
                           "-99999999999999999999",
                           "1.0",
                           "1f",
                           "1d",
                           "true",
                           "false",
                           "True",
                           "TRUE",
                           "tru",
                           "truee",
                           "true ",
                           " true",
                           "false\t",
                           "2",
                           "-0.0",
                           "1.0e0",
                           "0 ",
                           "00",
                           "01",
                           "yes",
                           "no",
                           "t",
                           "f",
                           "1true",
                           "0false",
                           "\v1",
                           "\f1",
                           "1\v",
                           "1\xA0",
                           "\xC2\xA0"
                           "1",
                           "1e00005",
                           "1e-00005",
                           "1e99999999999999999999",
                           "0e99999999999999999999",
                           "1e-99999999999999999999",
                           "1_000",
                           "1'000",
                           "0.1e1e1",
                           "0000000000000000000000000000000000000001",
                           "0b1",
                           "0o7"}) {
    expectAllReadAsPropertyTreeDoes(settings, text);
  }
  expectAllReadAsPropertyTreeDoes(settings, std::string("1\0", 2));
  expectAllReadAsPropertyTreeDoes(settings, std::string("\0", 1));
  expectAllReadAsPropertyTreeDoes(settings, std::string("1\0"
                                                        "2",
                                                        3));
  expectAllReadAsPropertyTreeDoes(settings, "0." + std::string(2000, '0') + "1e2001");
  expectAllReadAsPropertyTreeDoes(settings, std::string(400, '9'));
  expectAllReadAsPropertyTreeDoes(settings, std::string(2000, '1') + "e-1999");
}

TEST(Numbers, RandomTextsAreReadAsPropertyTreeReadsThem) {
  static constexpr std::array pieces = {
      "0",     "1",    "9",   "00",  "12",  "345",   "2147483647", "4294967296",
      ".",     "-",    "+",   "e",   "E",   "e-",    "e+",         "e308",
      "e-310", "e400", "inf", "nan", "x",   "true",  "false",      " ",
      "\t",    "\n",   ",",   "f",   "1.5", "-2.25", "0.1",        "1797693134862315"};
  std::mt19937_64 random(5);
  SettingsManager settings;
  for (int i = 0; i < 50000; ++i) {
    std::string text;
    for (auto count = 1 + random() % 6; count != 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    expectAllReadAsPropertyTreeDoes(settings, text);
    if (::testing::Test::HasFailure()) {
      return;
    }
  }
}

TEST(Numbers, RandomDecimalsAreRoundedAsPropertyTreeRoundsThem) {
  std::mt19937_64 random(6);
  SettingsManager settings;
  for (int i = 0; i < 50000; ++i) {
    std::string text = random() % 2 == 0 ? "" : "-";
    for (auto count = 1 + random() % 20; count != 0; --count) {
      text += static_cast<char>('0' + random() % 10);
    }
    if (random() % 2 == 0) {
      text += '.';
      for (auto count = 1 + random() % 25; count != 0; --count) {
        text += static_cast<char>('0' + random() % 10);
      }
    }
    if (random() % 2 == 0) {
      text += 'e' + std::to_string(static_cast<int>(random() % 700) - 350);
    }
    expectReadAsPropertyTreeDoes<double>(settings, text);
    if (::testing::Test::HasFailure()) {
      return;
    }
  }
}

TEST(Numbers, TextsHalfwayBetweenTwoDoublesAreRoundedAsPropertyTreeRoundsThem) {
  // 2^53 + 1 lies halfway; a digit far behind decides.
  SettingsManager settings;
  for (const std::string digits :
       {"9007199254740993", "9007199254740995", "4503599627370496.5", "4503599627370497.5",
        "0.500000000000000055511151231257827021181583404541015625"}) {
    const std::string point = digits.find('.') == std::string::npos ? "." : "";
    expectReadAsPropertyTreeDoes<double>(settings, digits);
    expectReadAsPropertyTreeDoes<double>(settings, digits + point + std::string(700, '0') + "1");
    expectReadAsPropertyTreeDoes<double>(settings, digits + point + std::string(900, '0'));
  }
}

TEST(Numbers, ANumberThatIsNotFiniteIsWrittenAsAStringAndNeverReadAsANumber) {
  using Limits = std::numeric_limits<double>;
  SettingsManager settings;
  settings.put<double>("a", Limits::infinity());
  settings.put<double>("b", -Limits::infinity());
  settings.put<double>("c", Limits::quiet_NaN());
  EXPECT_EQ(saveText(settings), "{\n  \"a\": \"inf\",\n  \"b\": \"-inf\",\n  \"c\": \"nan\"\n}\n");
  EXPECT_THROW(settings.get<double>("a"), boost::property_tree::ptree_bad_data);
  EXPECT_EQ(settings.get<double>("c", 1.5), 1.5);
}

TEST(Numbers, ConvertInTheClassicLocaleWhateverTheGlobalOneIs) {
  const GroupingLocale grouping;
  std::ostringstream check;
  check << 1234.5;
  ASSERT_EQ(check.str(), "1.234,5") << "the locale of this test does not group";

  const LogCapture log;
  SettingsManager settings;
  settings.put<double>("d", 1234567.25);
  settings.put<int>("i", 102400);
  settings.put<bool>("b", true);
  const std::string text = saveText(settings);
  EXPECT_EQ(text, "{\n  \"d\": 1234567.25,\n  \"i\": 102400,\n  \"b\": true\n}\n");
  SettingsManager loaded;
  loadText(loaded, text);
  EXPECT_EQ(loaded.get<double>("d"), 1234567.25);
  EXPECT_EQ(loaded.get<int>("i"), 102400);
  EXPECT_TRUE(loaded.get<bool>("b"));
  EXPECT_EQ(loaded.get<double>("none", 2048.5), 2048.5);
  EXPECT_EQ(log.texts(LogLevel::Debug),
            (std::vector<std::string>{"set .d to: 1.23457e+06", "set .i to: 102400", "set .b to: 1"}));
  EXPECT_EQ(log.texts(LogLevel::Trace),
            (std::vector<std::string>{"got .d, value: 1.23457e+06", "got .i, value: 102400",
                                      "got .b, value: 1", "got .none, default: 2048.5, value  : 2048.5"}));
}

TEST(Numbers, MessagesAreInTheClassicLocale) {
  const GroupingLocale grouping;
  SettingsManager settings;
  EXPECT_THROW(
      try { settings.pathPush("a", 102400, nullptr); } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "index 102400 of a is outside 0..0");
        throw;
      },
      std::out_of_range);
  EXPECT_THROW(
      try { settings.getIndexedValue("a", 102400); } catch (const boost::property_tree::ptree_error& error) {
        EXPECT_STREQ(error.what(), "Cannot access 102400 with node named a");
        throw;
      },
      boost::property_tree::ptree_error);
  std::istringstream in(std::string(1234, '\n') + std::string(2345, ' ') + "x");
  EXPECT_FALSE(settings.loadStream(in, SettingsManager::JSON));
  EXPECT_NE(settings.getLoadError().find("line 1235, column 2346"), std::string::npos)
      << settings.getLoadError();
}

TEST(Numbers, ThatWereReadKeepTheirText) {
  const std::string text =
      "{\n  \"v\": [\n    1.50,\n    -0,\n    1E5,\n    1e-0005,\n    100000000000000000000000000001,\n    "
      "0.1000000000000000055511151231257827021181583404541015625\n  ]\n}\n";
  SettingsManager settings;
  loadText(settings, text);
  EXPECT_EQ(settings.getIndexedValue("v", 0), "1.50");
  EXPECT_EQ(settings.getIndexedValue("v", 4), "100000000000000000000000000001");
  EXPECT_EQ(saveText(settings), text);
}

// However many digits it has; a stream would copy it first.
TEST(Numbers, APlainOneIsReadWithoutACopyOfItsText) {
  SettingsManager settings;
  loadText(settings, R"({"few": 1, "all": -123456.789012345678901234})");
  const auto allocationsOf = [&settings](const char* key) {
    const testing::AllocationCounter allocations;
    EXPECT_NE(settings.get<double>(key, 0.0), 0.0);
    return allocations.count();
  };
  EXPECT_EQ(allocationsOf("all"), allocationsOf("few"));
}

}  // namespace
}  // namespace orvantis
