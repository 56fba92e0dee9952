#include <chrono>
#include <cstddef>
#include <functional>
#include <future>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>
#include <spdlog/sinks/base_sink.h>

#include <filter/detection/CounterLines.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "support/AllocationCounter.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::AllocationCounter;
using orvantis::testing::loadText;
using orvantis::testing::LogCapture;
using orvantis::testing::nameOf;
using orvantis::testing::Record;
using orvantis::testing::saveText;

using Point = CounterLine::point;
using Pairs = std::vector<std::pair<double, double>>;
using Texts = std::vector<std::string>;

CounterLine line(const std::string& name, const Point& first, const Point& second) {
  return {name, first, second, nullptr, CounterLineDirectionType::LEFT};
}

// A line without points, as moving from one leaves it.
CounterLine pointless(const std::string& name) {
  CounterLine source;
  const CounterLine moved(std::move(source));
  source.setName(name);  // NOLINT(bugprone-use-after-move): what is left is the point of it
  return source;
}

Texts namesOf(const CounterLines& lines) {
  Texts names;
  for (const auto& [name, line] : lines.clone()) {
    EXPECT_EQ(line.getName(), name) << "a stored line's name is its key";
    names.push_back(name);
  }
  return names;
}

Pairs pointsOf(const CounterLines& lines, const std::string& name) {
  Pairs points;
  const std::map<std::string, CounterLine> copy = lines.clone();
  for (const Point& point : copy.at(name).getPoints()) {
    points.emplace_back(point.x(), point.y());
  }
  return points;
}

void load(CounterLines& lines, const std::string& json) {
  SettingsManager settings;
  loadText(settings, json);
  lines.load(settings);
}

std::string document(const std::string& entries) {
  return R"({"CounterLines": {"CounterLine": [)" + entries + "]}}";
}

constexpr auto a = R"({"name": "A", "first": {"x": 1, "y": 2}, "second": {"x": 3, "y": 4}})";
constexpr auto b = R"({"name": "B", "first": {"x": 5, "y": 6}, "second": {"x": 7, "y": 8}})";
constexpr auto otherA = R"({"name": "A", "first": {"x": 9, "y": 9}, "second": {"x": 8, "y": 8}})";

// The text forms of those lines in log records.
constexpr auto aText = R"("CounterLine":{"name":"A","first":{"x:"1","y:"2"},"second":{"x:"3","y:"4"}})";
constexpr auto bText = R"("CounterLine":{"name":"B","first":{"x:"5","y:"6"},"second":{"x:"7","y:"8"}})";
constexpr auto otherAText = R"("CounterLine":{"name":"A","first":{"x:"9","y:"9"},"second":{"x:"8","y:"8"}})";

// A registry with the lines A and B, and what is logged from then on.
class Registry : public ::testing::Test {
 protected:
  Registry() {
    lines_.insert(line("A", {1, 2}, {3, 4}));
    lines_.insert(line("B", {5, 6}, {7, 8}));
    log_.clear();
  }
  Texts traces() const { return log_.texts(LogLevel::Trace); }

  CounterLines lines_;
  LogCapture log_;
};

TEST(EmptyRegistry, HoldsNothing) {
  const CounterLines lines;
  EXPECT_EQ(lines.size(), 0U);
  EXPECT_TRUE(lines.clone().empty());
  EXPECT_FALSE(lines.find(""));
  static_assert(!std::is_copy_constructible_v<CounterLines>);
}

TEST(EmptyRegistry, CloneTracesAnEmptyMap) {
  const CounterLines lines;
  const LogCapture log;
  EXPECT_TRUE(lines.clone().empty());
  EXPECT_EQ(log.records(),
            (std::vector<Record>{{LogLevel::Trace, "", "CounterLines::clone:\"CounterLinesMap\":\n{}"}}));
}

TEST_F(Registry, InsertAddsANewLine) {
  EXPECT_TRUE(lines_.insert(line("L1", {1.5, 2}, {3, 4})));
  EXPECT_EQ(lines_.size(), 3U);
  EXPECT_EQ(pointsOf(lines_, "L1"), (Pairs{{1.5, 2}, {3, 4}}));
  EXPECT_EQ(traces().at(0),
            "CounterLines::insert:1:"
            R"("CounterLine":{"name":"L1","first":{"x:"1.5","y:"2"},"second":{"x:"3","y:"4"}})");
}

TEST_F(Registry, InsertOfAKnownNameUpdatesItsPoints) {
  EXPECT_FALSE(lines_.insert(line("A", {9, 9}, {8, 8})));
  EXPECT_EQ(traces(), (Texts{"CounterLines::insert:0:" + std::string(otherAText),
                             "CounterLines::insert:updated:0:" + std::string(otherAText)}));
  EXPECT_EQ(lines_.size(), 2U);
  EXPECT_EQ(pointsOf(lines_, "A"), (Pairs{{9, 9}, {8, 8}}));
}

TEST_F(Registry, LoadedLinesHaveTheDefaultLoggerAndInsertedOnesTheirOwn) {
  lines_.setLogger(LoggingManager::getInstance().getLogger("registry"));
  load(lines_, document(a));
  CounterLine given = line("B", {0, 0}, {1, 0});
  given.setLogger(LoggingManager::getInstance().getLogger("given"));
  lines_.insert(given);
  EXPECT_EQ(nameOf(lines_.clone().at("A").getLogger()), "");
  EXPECT_EQ(nameOf(lines_.clone().at("B").getLogger()), "given");
}

TEST_F(Registry, AnUpdateKeepsNameAndLogger) {
  CounterLine first = line("L1", {0, 0}, {1, 0});
  first.setLogger(LoggingManager::getInstance().getLogger("first"));
  CounterLine second = line("L1", {5, 5}, {6, 6});
  second.setLogger(LoggingManager::getInstance().getLogger("second"));
  EXPECT_TRUE(lines_.insert(first));
  EXPECT_FALSE(lines_.insert(second));
  log_.clear();
  lines_.clone().at("L1").direction(Point(0, 0));
  ASSERT_EQ(log_.records().size(), 2U);
  EXPECT_EQ(log_.records()[1].logger, "first");
}

TEST_F(Registry, NamesAreComparedByteByByte) {
  EXPECT_TRUE(lines_.insert(line("a", {0, 0}, {1, 0})));
  EXPECT_TRUE(lines_.insert(line("", {0, 0}, {1, 0})));
  EXPECT_TRUE(lines_.insert(line(std::string("A\0", 2), {0, 0}, {1, 0})));
  EXPECT_FALSE(lines_.find("b"));
  EXPECT_EQ(namesOf(lines_), (Texts{"", "A", std::string("A\0", 2), "B", "a"}));
}

TEST_F(Registry, ALineWithoutNameHasNothingBetweenItsQuotes) {
  lines_.insert(line("", {0, 0}, {1, 0}));
  EXPECT_EQ(traces(), Texts{"CounterLines::insert:1:"
                            R"("CounterLine":{"name":"","first":{"x:"0","y:"0"},"second":{"x:"1","y:"0"}})"});
}

TEST_F(Registry, StoredLinesAreCopies) {
  CounterLine source = line("L1", {1, 1}, {2, 2});
  lines_.insert(source);
  source.setPoints({{9, 9}, {8, 8}});
  EXPECT_EQ(pointsOf(lines_, "L1"), (Pairs{{1, 1}, {2, 2}}));
  std::map<std::string, CounterLine> copy = lines_.clone();
  copy.at("L1").setPoints({{9, 9}, {8, 8}});
  copy.erase("A");
  EXPECT_EQ(pointsOf(lines_, "L1"), (Pairs{{1, 1}, {2, 2}}));
  EXPECT_TRUE(lines_.find("A"));
}

TEST_F(Registry, FindTellsWhetherALineIsThere) {
  EXPECT_TRUE(lines_.find("A"));
  EXPECT_FALSE(lines_.find("C"));
  EXPECT_EQ(traces(), (Texts{"CounterLines::find:1:A", "CounterLines::find:1:" + std::string(aText),
                             "CounterLines::find:0:C"}));
  EXPECT_EQ(lines_.size(), 2U);
}

TEST_F(Registry, EraseRemovesTheLineOfThatName) {
  EXPECT_TRUE(lines_.erase("A"));
  EXPECT_FALSE(lines_.erase("A"));
  EXPECT_EQ(traces(), (Texts{"CounterLines::erase:1:A", "CounterLines::erase:1:" + std::string(aText),
                             "CounterLines::erase:0:A"}));
  EXPECT_EQ(namesOf(lines_), Texts{"B"});
}

TEST_F(Registry, EraseAndFindOfAnUnknownNameChangeNothing) {
  EXPECT_FALSE(lines_.erase("unknown"));
  EXPECT_FALSE(lines_.find("unknown"));
  EXPECT_EQ(traces(), (Texts{"CounterLines::erase:0:unknown", "CounterLines::find:0:unknown"}));
  EXPECT_EQ(namesOf(lines_), (Texts{"A", "B"}));
}

TEST_F(Registry, CloneTracesTheWholeMapInAscendingOrder) {
  EXPECT_EQ(lines_.clone().size(), 2U);
  EXPECT_EQ(traces(), Texts{"CounterLines::clone:\"CounterLinesMap\":\n{" + std::string(aText) + "\n," +
                            bText + "\n}"});
}

TEST_F(Registry, SizeLogsNothing) {
  EXPECT_EQ(lines_.size(), 2U);
  EXPECT_TRUE(log_.records().empty());
}

TEST_F(Registry, LogsUnderItsOwnLogger) {
  lines_.setLogger(LoggingManager::getInstance().getLogger("registry"));
  lines_.insert(line("A", {9, 9}, {8, 8}));
  lines_.find("A");
  lines_.erase("A");
  load(lines_, document(std::string(a) + "," + a + ", {}"));
  lines_.clone();
  for (const Record& record : log_.records()) {
    EXPECT_EQ(record.logger, "registry") << record;
  }
}

TEST_F(Registry, NothingIsTracedBelowTraceLevel) {
  const LogCapture quiet(LogLevel::Debug);
  lines_.insert(line("A", {9, 9}, {8, 8}));
  lines_.find("A");
  lines_.clone();
  lines_.erase("A");
  load(lines_, document(a));
  EXPECT_TRUE(quiet.records().empty());
}

TEST_F(Registry, ALineWithoutPointsIsStoredAsItIs) {
  EXPECT_TRUE(lines_.insert(pointless("gone")));
  EXPECT_EQ(traces(),
            Texts{"CounterLines::insert:1:"
                  R"("CounterLine":{"name":"gone","first":{"x:"0","y:"0"},"second":{"x:"0","y:"0"}})"});
  EXPECT_EQ(pointsOf(lines_, "gone"), Pairs());
  EXPECT_TRUE(lines_.find("gone"));
  SettingsManager settings;
  lines_.save(settings);
  CounterLines copy;
  copy.load(settings);
  EXPECT_EQ(pointsOf(copy, "gone"), (Pairs{{0, 0}, {0, 0}}));
  EXPECT_FALSE(lines_.insert(line("gone", {1, 2}, {3, 4})));
  EXPECT_EQ(pointsOf(lines_, "gone"), (Pairs{{1, 2}, {3, 4}}));
}

TEST_F(Registry, AnUpdateWithoutPointsThrowsAndChangesNothing) {
  try {
    lines_.insert(pointless("A"));
    ADD_FAILURE() << "nothing thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "CounterLine points size is:0 must be:2");
  }
  EXPECT_EQ(traces(),
            Texts{"CounterLines::insert:0:"
                  R"("CounterLine":{"name":"A","first":{"x:"0","y:"0"},"second":{"x:"0","y:"0"}})"});
  EXPECT_EQ(lines_.size(), 2U) << "and the lock is free again";
  EXPECT_EQ(pointsOf(lines_, "A"), (Pairs{{1, 2}, {3, 4}}));
}

TEST_F(Registry, LoadWithoutAListKeepsTheLines) {
  for (const std::string json : {"{}", R"({"Other": {"CounterLines": {}}})", R"({"counterlines": {}})"}) {
    load(lines_, json);
    EXPECT_TRUE(log_.records().empty()) << json;
  }
  EXPECT_EQ(namesOf(lines_), (Texts{"A", "B"}));
}

TEST_F(Registry, LoadOfAnEmptyListEmptiesTheRegistry) {
  load(lines_, R"({"CounterLines": {}})");
  EXPECT_EQ(traces(), Texts{"CounterLines:\"CounterLinesMap\":\n{}"});
  EXPECT_EQ(lines_.size(), 0U);
}

TEST_F(Registry, LoadReplacesTheLinesInDocumentOrder) {
  lines_.insert(line("old", {0, 0}, {1, 0}));
  log_.clear();
  load(lines_, document(std::string(b) + "," + a));
  EXPECT_EQ(log_.records(),
            (std::vector<Record>{
                {LogLevel::Trace, "", "CounterLines::insert:1:" + std::string(bText)},
                {LogLevel::Trace, "", "CounterLines::insert:1:" + std::string(aText)},
                {LogLevel::Trace, "",
                 "CounterLines:\"CounterLinesMap\":\n{" + std::string(aText) + "\n," + bText + "\n}"}}));
  EXPECT_EQ(namesOf(lines_), (Texts{"A", "B"}));
}

TEST_F(Registry, LoadReadsAtTheCurrentPathAndLeavesItThere) {
  SettingsManager settings;
  loadText(settings, R"({"Site": )" + document(b) + "}");
  settings.pathPush("Site");
  lines_.load(settings);
  EXPECT_EQ(namesOf(lines_), Texts{"B"});
  EXPECT_EQ(settings.pathPush("probe"), "Site.probe");
}

TEST_F(Registry, LoadOfARepeatedNameWarnsAndTheLaterPointsWin) {
  load(lines_, document(std::string(a) + "," + otherA + "," + b));
  EXPECT_EQ(log_.records(),
            (std::vector<Record>{
                {LogLevel::Trace, "", "CounterLines::insert:1:" + std::string(aText)},
                {LogLevel::Trace, "", "CounterLines::insert:0:" + std::string(otherAText)},
                {LogLevel::Trace, "", "CounterLines::insert:updated:0:" + std::string(otherAText)},
                {LogLevel::Warning, "", "Duplicate CounterLine:" + std::string(otherAText)},
                {LogLevel::Trace, "", "CounterLines::insert:1:" + std::string(bText)},
                {LogLevel::Trace, "",
                 "CounterLines:\"CounterLinesMap\":\n{" + std::string(otherAText) + "\n," + bText + "\n}"}}));
  EXPECT_EQ(lines_.size(), 2U);
  EXPECT_EQ(pointsOf(lines_, "A"), (Pairs{{9, 9}, {8, 8}}));
}

TEST_F(Registry, ALineThatWasThereBeforeTheLoadIsNotADuplicate) {
  load(lines_, document(a));
  EXPECT_EQ(log_.texts(LogLevel::Warning), Texts());
}

TEST_F(Registry, LoadSkipsChildrenOfOtherKeysWithoutAWord) {
  load(lines_, R"({"CounterLines": {"Counterline": {}, "CounterLines": {}, "CounterLin": {"name": 1}, "": {},
                   "version": "2", "CounterLine": )" +
                   std::string(b) + R"(, "CounterLine ": {}}})");
  EXPECT_EQ(traces().size(), 2U);
  EXPECT_EQ(log_.records().size(), 2U);
  EXPECT_EQ(namesOf(lines_), Texts{"B"});
}

struct BadLine {
  const char* what;
  const char* entry;
  const char* message;
};

// Prints a case by its name.
void PrintTo(const BadLine& bad, std::ostream* out) {
  *out << bad.what;
}

class RegistryLoad : public Registry, public ::testing::WithParamInterface<BadLine> {};

TEST_P(RegistryLoad, KeepsTheLinesBeforeABadOneAndLogsWhy) {
  lines_.insert(line("old", {0, 0}, {1, 0}));
  log_.clear();
  load(lines_, document(std::string(b) + "," + GetParam().entry + "," + a));
  EXPECT_EQ(log_.records(),
            (std::vector<Record>{
                {LogLevel::Trace, "", "CounterLines::insert:1:" + std::string(bText)},
                {LogLevel::Error, "", "Unable to load settings: " + std::string(GetParam().message)}}));
  EXPECT_EQ(namesOf(lines_), Texts{"B"});
}

TEST_P(RegistryLoad, IsLeftEmptyByABadFirstLine) {
  load(lines_, document(std::string(GetParam().entry) + "," + a));
  EXPECT_EQ(log_.records(),
            (std::vector<Record>{
                {LogLevel::Error, "", "Unable to load settings: " + std::string(GetParam().message)}}));
  EXPECT_EQ(lines_.size(), 0U) << "and the lock is free again";
}

INSTANTIATE_TEST_SUITE_P(
    BadLines, RegistryLoad,
    ::testing::Values(
        BadLine{"no name", R"({"first": {"x": 1, "y": 2}, "second": {"x": 3, "y": 4}})",
                "No such node (name)"},
        BadLine{"no first", R"({"name": "C", "second": {"x": 3, "y": 4}})", "No such node (first)"},
        BadLine{"no second", R"({"name": "C", "first": {"x": 1, "y": 2}})", "No such node (second)"},
        BadLine{"no x", R"({"name": "C", "first": {"y": 2}, "second": {"x": 3, "y": 4}})",
                "No such node (x)"},
        BadLine{"no y", R"({"name": "C", "first": {"x": 1, "y": 2}, "second": {"x": 3}})",
                "No such node (y)"},
        BadLine{"a word for a number",
                R"({"name": "C", "first": {"x": "far", "y": 2}, "second": {"x": 3, "y": 4}})",
                "conversion of data to type \"d\" failed"},
        BadLine{"an object for a number",
                R"({"name": "C", "first": {"x": {}, "y": 2}, "second": {"x": 3, "y": 4}})",
                "conversion of data to type \"d\" failed"},
        BadLine{"keys in other letters",
                R"({"Name": "C", "First": {"x": 1, "y": 2}, "Second": {"x": 3, "y": 4}})",
                "No such node (name)"},
        BadLine{"a text for a line", R"("C")", "No such node (name)"},
        BadLine{"nothing", "{}", "No such node (name)"}));

TEST_F(Registry, CanBeLoadedAgainAfterABadLine) {
  load(lines_, document("{}"));
  load(lines_, document(a));
  EXPECT_EQ(namesOf(lines_), Texts{"A"});
}

TEST_F(Registry, SaveWritesTheLinesInAscendingOrder) {
  lines_.insert(line("10", {0, 0}, {1, 0}));
  log_.clear();
  SettingsManager settings;
  lines_.save(settings);
  EXPECT_TRUE(log_.records().empty());
  const auto& node = settings.getTree().get_child("CounterLines");
  Texts names;
  for (const auto& [key, entry] : node) {
    EXPECT_EQ(key, "CounterLine");
    names.push_back(entry.get<std::string>("name"));
  }
  EXPECT_EQ(names, (Texts{"10", "A", "B"}));
  EXPECT_EQ(node.back().second.get<std::string>("first.x"), "5");
  EXPECT_EQ(node.back().second.get<std::string>("second.y"), "8");
}

TEST_F(Registry, SaveOfAnEmptyRegistryStoresAnEmptyNode) {
  SettingsManager settings;
  CounterLines().save(settings);
  EXPECT_TRUE(settings.exists("CounterLines"));
  EXPECT_TRUE(settings.getTree().get_child("CounterLines").empty());
  lines_.load(settings);
  EXPECT_EQ(lines_.size(), 0U);
}

TEST_F(Registry, SaveReplacesWhatWasThere) {
  SettingsManager settings;
  loadText(settings,
           R"({"before": 1, "CounterLines": {"CounterLine": [{"name": "old"}], "note": "old"}, "after": 2})");
  lines_.save(settings);
  EXPECT_EQ(settings.getChildCount("CounterLines"), 1);
  Texts keys;
  for (const auto& [key, entry] : settings.getTree().get_child("CounterLines")) {
    keys.push_back(key);
  }
  EXPECT_EQ(keys, (Texts{"CounterLine", "CounterLine"}));
  EXPECT_EQ(settings.getTree().front().first, "before");
  EXPECT_EQ(settings.getTree().back().first, "after");
}

TEST_F(Registry, SaveWritesAtTheCurrentPathAndLeavesItThere) {
  SettingsManager settings;
  settings.pathPush("Site");
  lines_.save(settings);
  EXPECT_EQ(settings.getTree().get_child("Site.CounterLines").size(), 2U);
  EXPECT_EQ(settings.pathPush("probe"), "Site.probe");
}

TEST_F(Registry, SaveAndLoadGiveTheSameMap) {
  lines_.insert(line("a name with \"quotes\", dots . and \n lines", {0.1, -0.0}, {1e308, 5e-324}));
  lines_.insert(line("7", {1.0 / 3.0, 1e15}, {-1e-300, 123456789012345680.0}));
  SettingsManager saved;
  lines_.save(saved);
  SettingsManager settings;
  loadText(settings, saveText(saved));
  CounterLines copy;
  copy.load(settings);
  EXPECT_EQ(namesOf(copy), namesOf(lines_));
  for (const std::string& name : namesOf(lines_)) {
    EXPECT_EQ(pointsOf(copy, name), pointsOf(lines_, name)) << name;
  }
  EXPECT_EQ(saveText(saved).find("null"), std::string::npos);
}

TEST_F(Registry, ASavedLineThatIsNotFiniteEndsTheListWhenItIsLoaded) {
  lines_.insert(line("Away", {0, 0}, {1, std::numeric_limits<double>::infinity()}));
  SettingsManager saved;
  lines_.save(saved);
  SettingsManager settings;
  loadText(settings, saveText(saved));
  log_.clear();
  lines_.load(settings);
  EXPECT_EQ(log_.texts(LogLevel::Error),
            Texts{"Unable to load settings: conversion of data to type \"d\" failed"});
  EXPECT_EQ(namesOf(lines_), Texts{"A"});
}

TEST(RegistryDocument, OneLineIsAListOfOne) {
  CounterLines lines;
  lines.insert(line("7", {1.5, 2}, {3, 4}));
  SettingsManager settings;
  lines.save(settings);
  const std::string text = saveText(settings);
  EXPECT_NE(text.find(R"("CounterLine": [)"), std::string::npos) << text;
  EXPECT_NE(text.find(R"("name": "7")"), std::string::npos) << text;
  EXPECT_NE(text.find(R"("x": "1.5")"), std::string::npos) << text;
}

// The allocations that loading a document of so many lines takes.
std::size_t allocationsToLoad(int numLines) {
  std::string entries;
  for (int i = 0; i < numLines; ++i) {
    entries += (i == 0 ? R"({"name": "line )" : R"(,{"name": "line )") + std::to_string(i) +
               R"(", "first": {"x": 0, "y": 0}, "second": {"x": 1, "y": 0}})";
  }
  SettingsManager settings;
  loadText(settings, document(entries));
  CounterLines lines;
  const AllocationCounter allocations;
  lines.load(settings);
  const std::size_t count = allocations.count();
  EXPECT_EQ(lines.size(), static_cast<std::size_t>(numLines));
  return count;
}

TEST(RegistryDocument, AHundredThousandLinesCostAsMuchEachAsAThousandDo) {
  const std::size_t few = allocationsToLoad(1000);
  const std::size_t many = allocationsToLoad(100000);
  EXPECT_LE(many, few * 100 + few);
}

// Calls a function for each record, while the logging of that record goes on.
class CallingSink : public spdlog::sinks::base_sink<std::mutex> {
 public:
  explicit CallingSink(std::function<void(const std::string&)> call) : call_(std::move(call)) {}

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    call_(std::string(message.payload.begin(), message.payload.end()));
  }
  void flush_() override {}

 private:
  std::function<void(const std::string&)> call_;
};

// Asks at each record, from another thread, whether the registry's lock is free just then.
class LockProbe {
 public:
  explicit LockProbe(const CounterLines& lines)
      : sink_(std::make_shared<CallingSink>([this, &lines](const std::string& text) {
          auto size = std::make_shared<std::promise<void>>();
          std::future<void> isDone = size->get_future();
          askers_.push_back(std::async(std::launch::async, [&lines, size] {
            static_cast<void>(lines.size());
            size->set_value();
          }));
          // A lock that is held stays held until this returns. One that is free is had as soon as the thread
          // runs.
          const bool isFree = isDone.wait_for(patience(text)) == std::future_status::ready;
          seen_.emplace_back(text.substr(0, text.find(':', text.find("::") + 2)), isFree);
        })) {
    LoggingManager::getInstance().addSink(sink_);
  }
  LockProbe(const LockProbe&) = delete;
  LockProbe& operator=(const LockProbe&) = delete;
  ~LockProbe() { LoggingManager::getInstance().removeSink(sink_); }

  using Seen = std::vector<std::pair<std::string, bool>>;
  const Seen& seen() const { return seen_; }

 private:
  static std::chrono::milliseconds patience(const std::string& text) {
    const bool shouldBeFree =
        text.find("clone") != std::string::npos || text.find("Unable") != std::string::npos;
    return std::chrono::milliseconds(shouldBeFree ? 60000 : 50);
  }

  std::vector<std::future<void>> askers_;
  Seen seen_;
  std::shared_ptr<CallingSink> sink_;
};

TEST_F(Registry, HoldsItsLockWhileItTracesAndNotWhileItTracesAClone) {
  const LockProbe probe(lines_);
  lines_.insert(line("A", {9, 9}, {8, 8}));
  lines_.find("A");
  lines_.erase("A");
  lines_.clone();
  EXPECT_EQ(probe.seen(), (LockProbe::Seen{{"CounterLines::insert", false},
                                           {"CounterLines::insert", false},
                                           {"CounterLines::find", false},
                                           {"CounterLines::find", false},
                                           {"CounterLines::erase", false},
                                           {"CounterLines::erase", false},
                                           {"CounterLines::clone", true}}));
}

TEST_F(Registry, LoadHoldsItsLockUpToTheLastTrace) {
  const LockProbe probe(lines_);
  load(lines_, document(std::string(a) + "," + otherA));
  ASSERT_EQ(probe.seen().size(), 5U);
  for (const auto& [record, isFree] : probe.seen()) {
    EXPECT_FALSE(isFree) << record;
  }
}

TEST_F(Registry, LoadWithoutAListDoesNotWaitForTheLock) {
  std::future_status status = std::future_status::timeout;
  std::future<void> isLoaded;
  const auto sink = std::make_shared<CallingSink>([&](const std::string&) {
    isLoaded = std::async(std::launch::async, [&] {
      SettingsManager settings;
      lines_.load(settings);
    });
    status = isLoaded.wait_for(std::chrono::seconds(60));
  });
  LoggingManager::getInstance().addSink(sink);
  lines_.find("C");  // one record, and the lock is held meanwhile
  LoggingManager::getInstance().removeSink(sink);
  EXPECT_EQ(status, std::future_status::ready);
}

// The name is freed with its line if the lines are cleared too early, and the second record then shows it.
TEST_F(Registry, LoadTouchesNoLineBeforeItHasTheLock) {
  const std::string name = "a line whose name is too long for a string's own buffer";
  lines_.insert(line(name, {1, 2}, {3, 4}));
  log_.clear();
  std::future<void> isLoaded;
  const auto sink = std::make_shared<CallingSink>([&](const std::string& text) {
    if (text.find("CounterLines::find:1:a line") == 0) {
      isLoaded = std::async(std::launch::async, [this] { load(lines_, document("")); });
      isLoaded.wait_for(std::chrono::milliseconds(50));
    }
  });
  LoggingManager::getInstance().addSink(sink);
  lines_.find(name);
  isLoaded.get();
  LoggingManager::getInstance().removeSink(sink);
  const Texts texts = traces();
  ASSERT_GE(texts.size(), 2U);
  EXPECT_EQ(texts[0], "CounterLines::find:1:" + name);
  EXPECT_EQ(texts[1], R"(CounterLines::find:1:"CounterLine":{"name":")" + name +
                          R"(","first":{"x:"1","y:"2"},"second":{"x:"3","y:"4"}})");
  EXPECT_EQ(lines_.size(), 0U);
}

TEST_F(Registry, LoadReleasesItsLockBeforeItLogsAFailure) {
  const LockProbe probe(lines_);
  load(lines_, document("{}"));
  ASSERT_EQ(probe.seen().size(), 1U);
  EXPECT_TRUE(probe.seen()[0].second);
}

}  // namespace
}  // namespace orvantis::filter::detection
