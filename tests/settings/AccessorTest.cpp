#include <climits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/property_tree/exceptions.hpp>
#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree_bad_data;
using boost::property_tree::ptree_bad_path;
using boost::property_tree::ptree_error;
using testing::loadText;
using testing::LogCapture;
using testing::Record;
using Records = std::vector<Record>;

static_assert(std::is_base_of_v<LoggedComponent, SettingsManager>);
static_assert(std::has_virtual_destructor_v<SettingsManager>);

Record trace(const std::string& text) {
  return {LogLevel::Trace, "SettingsManager", text};
}
Record debug(const std::string& text) {
  return {LogLevel::Debug, "SettingsManager", text};
}

TEST(RequiredRead, GivesAndTracesTheValueOfEachType) {
  SettingsManager settings;
  loadText(settings, R"({"s": "a b", "d": 2.5, "i": -7, "t": true, "f": false})");
  const LogCapture log;
  EXPECT_EQ(settings.get<std::string>("s"), "a b");
  EXPECT_EQ(settings.get<double>("d"), 2.5);
  EXPECT_EQ(settings.get<int>("i"), -7);
  EXPECT_TRUE(settings.get<bool>("t"));
  EXPECT_FALSE(settings.get<bool>("f"));
  EXPECT_EQ(log.records(),
            (Records{trace("got .s, value: a b"), trace("got .d, value: 2.5"), trace("got .i, value: -7"),
                     trace("got .t, value: 1"), trace("got .f, value: 0")}));
}

TEST(RequiredRead, TracesDoublesInTheStreamsDefaultFormat) {
  SettingsManager settings;
  loadText(settings, R"({"third": 0.33333333333333331, "big": 123456789, "small": 1e-7, "zero": -0.0})");
  const LogCapture log;
  settings.get<double>("third");
  settings.get<double>("big");
  settings.get<double>("small");
  settings.get<double>("zero");
  EXPECT_EQ(log.records(),
            (Records{trace("got .third, value: 0.333333"), trace("got .big, value: 1.23457e+08"),
                     trace("got .small, value: 1e-07"), trace("got .zero, value: -0")}));
}

TEST(RequiredRead, NamesThePathInTheTrace) {
  SettingsManager settings;
  loadText(settings, R"({"ZoneDetector": {"Zone": [{"index": 0}, {"index": 1, "Polygon": {"n": 3}}]}})");
  settings.pathPush("ZoneDetector");
  settings.pathPush("Zone", 1, nullptr);
  const LogCapture log;
  EXPECT_EQ(settings.get<int>("index"), 1);
  EXPECT_EQ(settings.get<int>("Polygon.n"), 3);
  EXPECT_EQ(log.records(), (Records{trace("got ZoneDetector.Zone.index, value: 1"),
                                    trace("got ZoneDetector.Zone.Polygon.n, value: 3")}));
}

TEST(RequiredRead, ADotInAKeySeparatesNames) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"b": "nested"}, "a.b": "literal"})");
  EXPECT_EQ(settings.get<std::string>("a.b"), "nested");
}

const char* const unusualKeys[] = {"",     ".",    "..", "...", ".a",  "..a",   "a.",   "a..", ".a.", "a.b",
                                   "a.b.", "a..b", "b",  "b.",  "b.a", "a.b.c", "c..d", " ",   "a. b"};

TEST(RequiredRead, AKeyIsTakenApartAsPropertyTreeTakesIt) {
  SettingsManager settings;
  loadText(settings, R"({"": {"": {"a": "1", "": "2"}, "a": "3"}, "a": {"": {"b": "4", "": "5"}, "b": "6"},
                         "b": "7", " ": "8"})");
  for (const char* key : unusualKeys) {
    EXPECT_EQ(settings.get<std::string>(key, "none"), settings.getTree().get<std::string>(key, "none"))
        << '\'' << key << '\'';
  }
}

TEST(RequiredRead, TakesTheFirstOfRepeatedChildren) {
  SettingsManager settings;
  loadText(settings, R"({"x": [1, 2], "y": {"z": 5}, "y": {"z": 6}})");
  EXPECT_EQ(settings.get<int>("x"), 1);
  EXPECT_EQ(settings.get<int>("y.z"), 5);
}

TEST(RequiredRead, AMissingKeyFailsWithTheTreesOwnErrorAndIsNotTraced) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"b": 1}})");
  settings.pathPush("a");
  const LogCapture log;
  for (const char* key : {"c", "b.c", "c.d.e"}) {
    try {
      settings.get<double>(key);
      ADD_FAILURE() << key;
    } catch (const ptree_bad_path& error) {
      EXPECT_EQ(error.what(), "No such node (" + std::string(key) + ")");
      EXPECT_EQ(error.path<SettingsManager::Tree::path_type>().dump(), key);
    }
  }
  EXPECT_THROW(settings.get<std::string>("c"), ptree_bad_path);
  EXPECT_THROW(settings.get<int>("c"), ptree_bad_path);
  EXPECT_THROW(settings.get<bool>("c"), ptree_bad_path);
  EXPECT_TRUE(log.records().empty());
  EXPECT_EQ(settings.get<int>("b"), 1) << "a failed read moved the path";
}

template <typename T>
void expectBadData(const SettingsManager& settings, const std::string& key, const std::string& type) {
  try {
    settings.get<T>(key);
    ADD_FAILURE() << key << " converted to " << type;
  } catch (const ptree_bad_data& error) {
    EXPECT_EQ(error.what(), "conversion of data to type \"" + type + "\" failed");
    EXPECT_EQ(error.data<std::string>(), settings.get<std::string>(key));
  }
}

TEST(RequiredRead, DataThatDoesNotConvertFailsWithTheTreesOwnError) {
  SettingsManager settings;
  loadText(settings, R"({"word": "abc", "empty": "", "tail": "1.5x", "float": 1.5, "big": 2147483648,
                         "huge": 1e400, "null": null, "object": {"a": 1}, "two": "1 2"})");
  for (const char* key : {"word", "empty", "tail", "huge", "null", "object", "two"}) {
    expectBadData<double>(settings, key, "d");
  }
  for (const char* key : {"word", "empty", "tail", "float", "big", "huge", "null", "object", "two"}) {
    expectBadData<int>(settings, key, "i");
  }
  for (const char* key : {"word", "empty", "tail", "float", "big", "huge", "null", "object", "two"}) {
    expectBadData<bool>(settings, key, "b");
  }
}

TEST(RequiredRead, AFailedConversionIsNotTraced) {
  SettingsManager settings;
  loadText(settings, R"({"word": "abc"})");
  const LogCapture log;
  EXPECT_THROW(settings.get<double>("word"), ptree_bad_data);
  EXPECT_TRUE(log.records().empty());
}

TEST(RequiredRead, NullIsTheTextNull) {
  SettingsManager settings;
  loadText(settings, R"({"a": null})");
  EXPECT_EQ(settings.get<std::string>("a"), "null");
}

TEST(ReadWithDefault, TracesDefaultAndResultWithTheUnevenBlanks) {
  SettingsManager settings;
  const LogCapture log;
  EXPECT_EQ(settings.get<double>("zMin", 0.0), 0.0);
  EXPECT_EQ(log.records(), (Records{trace("got .zMin, default: 0, value  : 0")}));
}

TEST(ReadWithDefault, GivesAndTracesTheValueOfEachType) {
  SettingsManager settings;
  loadText(settings, R"({"A": {"s": "text", "d": 0.1, "i": 3, "b": true}})");
  settings.pathPush("A");
  const LogCapture log;
  EXPECT_EQ(settings.get<std::string>("s", "other"), "text");
  EXPECT_EQ(settings.get<double>("d", 2.0), 0.1);
  EXPECT_EQ(settings.get<int>("i", 4), 3);
  EXPECT_TRUE(settings.get<bool>("b", false));
  EXPECT_EQ(
      log.records(),
      (Records{trace("got A.s, default: other, value  : text"), trace("got A.d, default: 2, value  : 0.1"),
               trace("got A.i, default: 4, value  : 3"), trace("got A.b, default: 0, value  : 1")}));
}

TEST(ReadWithDefault, NeverFails) {
  SettingsManager settings;
  loadText(settings, R"({"A": {"d": "abc", "i": 1.5, "b": "maybe", "o": {"x": 1}}})");
  settings.pathPush("A");
  const LogCapture log;
  EXPECT_EQ(settings.get<double>("d", 7.5), 7.5);
  EXPECT_EQ(settings.get<int>("i", -4), -4);
  EXPECT_TRUE(settings.get<bool>("b", true));
  EXPECT_EQ(settings.get<double>("o", 1.0), 1.0);
  EXPECT_EQ(settings.get<std::string>("none", "n"), "n");
  EXPECT_EQ(settings.get<int>("o.y", 9), 9);
  EXPECT_EQ(
      log.records(),
      (Records{trace("got A.d, default: 7.5, value  : 7.5"), trace("got A.i, default: -4, value  : -4"),
               trace("got A.b, default: 1, value  : 1"), trace("got A.o, default: 1, value  : 1"),
               trace("got A.none, default: n, value  : n"), trace("got A.o.y, default: 9, value  : 9")}));
}

TEST(ReadWithDefault, AnEmptyTextIsAValue) {
  SettingsManager settings;
  loadText(settings, R"({"name": ""})");
  EXPECT_EQ(settings.get<std::string>("name", "default"), "");
}

TEST(Reads, AreTracedAlsoThroughALoggerThatWasSet) {
  SettingsManager settings;
  settings.setLogger(LoggingManager::getInstance().getLogger("host"));
  const LogCapture log;
  settings.get<int>("a", 1);
  EXPECT_EQ(log.records(), (Records{{LogLevel::Trace, "host", "got .a, default: 1, value  : 1"}}));
}

TEST(Reads, CreateNothing) {
  SettingsManager settings;
  settings.get<int>("a.b", 1);
  EXPECT_THROW(settings.get<int>("c"), ptree_bad_path);
  EXPECT_THROW(settings.getIndexedValue("d", 0), ptree_error);
  EXPECT_FALSE(settings.exists("e"));
  EXPECT_EQ(settings.getChildCount("f"), 0);
  EXPECT_FALSE(settings.getChildOptional("g"));
  EXPECT_TRUE(settings.getTree().empty());
}

TEST(Put, WritesAndLogsTheValueOfEachType) {
  SettingsManager settings;
  settings.pathPush("A");
  const LogCapture log;
  settings.put<std::string>("s", "a b");
  settings.put<double>("d", 0.1);
  settings.put<int>("i", -7);
  settings.put<bool>("t", true);
  settings.put<bool>("f", false);
  EXPECT_EQ(log.records(),
            (Records{debug("set A.s to: a b"), debug("set A.d to: 0.1"), debug("set A.i to: -7"),
                     debug("set A.t to: 1"), debug("set A.f to: 0")}));
  EXPECT_EQ(settings.get<std::string>("s"), "a b");
  EXPECT_EQ(settings.get<double>("d"), 0.1);
  EXPECT_EQ(settings.get<int>("i"), -7);
  EXPECT_TRUE(settings.get<bool>("t"));
  EXPECT_FALSE(settings.get<bool>("f"));
}

TEST(Put, StoresTheTextsOfPropertyTree) {
  SettingsManager settings;
  settings.put<double>("d", 0.1);
  settings.put<double>("whole", 20.0);
  settings.put<int>("i", INT_MIN);
  settings.put<bool>("b", true);
  const auto& tree = settings.getTree();
  EXPECT_EQ(tree.get<std::string>("d"), "0.10000000000000001");
  EXPECT_EQ(tree.get<std::string>("whole"), "20");
  EXPECT_EQ(tree.get<std::string>("i"), "-2147483648");
  EXPECT_EQ(tree.get<std::string>("b"), "true");
}

TEST(Put, LogsAtTheRootWithALeadingDot) {
  SettingsManager settings;
  const LogCapture log;
  settings.put<int>("a", 1);
  settings.add("b", "x");
  EXPECT_EQ(log.records(), (Records{debug("set .a to: 1"), debug("add .b to: x")}));
}

TEST(Put, LogsNothingAtTheDefaultLevel) {
  SettingsManager settings;
  const LogCapture log(LogLevel::Warning);
  settings.put<int>("a", 1);
  settings.add("b", "x");
  settings.get<int>("a");
  settings.get<int>("c", 2);
  EXPECT_TRUE(log.records().empty());
}

TEST(Put, ChangesOnlyTheFirstOfRepeatedChildren) {
  SettingsManager settings;
  settings.add("lidar", "one");
  settings.add("other", "x");
  settings.add("lidar", "two");
  settings.put<std::string>("lidar", "new");
  EXPECT_EQ(settings.getChildCount("lidar"), 2);
  EXPECT_EQ(settings.getIndexedValue("lidar", 0), "new");
  EXPECT_EQ(settings.getIndexedValue("lidar", 1), "two");
}

TEST(Put, CreatesAMissingChildAtTheEnd) {
  SettingsManager settings;
  settings.put<int>("b", 1);
  settings.put<int>("a", 2);
  settings.put<int>("b", 3);
  ASSERT_EQ(settings.getTree().size(), 2U);
  EXPECT_EQ(settings.getTree().front().first, "b");
  EXPECT_EQ(settings.getTree().front().second.data(), "3");
  EXPECT_EQ(settings.getTree().back().first, "a");
}

TEST(Put, ADottedKeyCreatesTheNodesOnTheWay) {
  SettingsManager settings;
  const LogCapture log;
  settings.put<int>("a.b.c", 1);
  EXPECT_EQ(log.records(), (Records{debug("set .a.b.c to: 1")}));
  settings.pathPush("a");
  settings.pathPush("b");
  EXPECT_EQ(settings.get<int>("c"), 1);
}

TEST(Put, AKeyIsTakenApartAsPropertyTreeTakesIt) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"": {"": {}}, "b": {}}, "b": {}, "": {"": {"": {}}, "a": {}}})");
  boost::property_tree::ptree expected = settings.getTree();
  int value = 0;
  for (const char* key : unusualKeys) {
    settings.put<std::string>(key, std::to_string(++value));
    expected.put(key, std::to_string(value));
    EXPECT_TRUE(settings.getTree() == expected) << '\'' << key << '\'';
  }
}

TEST(Put, KeepsTheChildrenOfANodeThatGetsAValue) {
  SettingsManager settings;
  settings.put<int>("a.b", 1);
  settings.put<int>("a", 2);
  EXPECT_EQ(settings.get<int>("a"), 2);
  EXPECT_EQ(settings.get<int>("a.b"), 1);
}

TEST(Add, AlwaysAppends) {
  SettingsManager settings;
  settings.pathPush("Z");
  const LogCapture log;
  settings.add("lidar", "left");
  settings.add("lidar", "right");
  EXPECT_EQ(log.records(), (Records{debug("add Z.lidar to: left"), debug("add Z.lidar to: right")}));
  EXPECT_EQ(settings.getChildCount("lidar"), 2);
  EXPECT_EQ(settings.getIndexedValue("lidar", 0), "left");
  EXPECT_EQ(settings.getIndexedValue("lidar", 1), "right");
}

TEST(Add, ADottedKeyAppendsBelowTheFirstNodeOnTheWay) {
  SettingsManager settings;
  settings.add("a.b", "1");
  settings.add("a.b", "2");
  EXPECT_EQ(settings.getChildCount("a"), 1);
  settings.pathPush("a");
  EXPECT_EQ(settings.getChildCount("b"), 2);
}

TEST(Add, TheLastNameOfAnyKeyIsANewChild) {
  SettingsManager settings;
  settings.add("", "1");
  settings.add("", "2");
  EXPECT_EQ(settings.getChildCount(""), 2);
  settings.add("a.", "3");
  settings.add("a.", "4");
  EXPECT_EQ(settings.getChildCount("a"), 2);
  settings.add("b..c", "5");
  settings.add("b..c", "6");
  settings.pathPush("b");
  EXPECT_EQ(settings.getChildCount(""), 1);
  settings.pathPush("");
  EXPECT_EQ(settings.getChildCount("c"), 2);
}

TEST(IndexedValue, FailsPastTheEndAndBelowZeroWithTheFixedText) {
  SettingsManager settings;
  settings.pathPush("Zone3d");
  settings.add("lidar", "left");
  settings.add("lidar", "right");
  const LogCapture log;
  EXPECT_EQ(settings.getIndexedValue("lidar", 1), "right");
  for (const int index : {2, 3, INT_MAX, -1, INT_MIN}) {
    try {
      settings.getIndexedValue("lidar", index);
      ADD_FAILURE() << index;
    } catch (const ptree_error& error) {
      EXPECT_EQ(error.what(), "Cannot access " + std::to_string(index) + " with node named lidar");
    }
  }
  EXPECT_TRUE(log.records().empty()) << "indexed values are not logged";
  EXPECT_EQ(settings.pathPush("x"), "Zone3d.x") << "a failed read moved the path";
}

TEST(IndexedValue, FailsAsARuntimeErrorForAnUnknownName) {
  const SettingsManager settings;
  try {
    settings.getIndexedValue("a.b", 0);
    ADD_FAILURE();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "Cannot access 0 with node named a.b");
  }
}

TEST(IndexedValue, TakesALiteralNameInDocumentOrder) {
  SettingsManager settings;
  loadText(settings, R"({"a.b": "1", "x": 0, "a.b": "2", "a": {"b": "nested"}})");
  EXPECT_EQ(settings.getIndexedValue("a.b", 0), "1");
  EXPECT_EQ(settings.getIndexedValue("a.b", 1), "2");
}

TEST(Accessors, TakeTheFormatNameJson) {
  EXPECT_FALSE(SettingsManager::JSON.empty());
  EXPECT_EQ(SettingsManager::MAX_DEPTH, 64);
}

}  // namespace
}  // namespace orvantis
