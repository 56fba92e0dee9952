#include <climits>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis {
namespace {

using testing::loadText;
using testing::LogCapture;

TEST(Path, IsEmptyAtTheRootAndNamesJoinedByDotsBelow) {
  SettingsManager settings;
  EXPECT_EQ(settings.pathPush("ZoneDetector"), "ZoneDetector");
  EXPECT_EQ(settings.pathPush("Zone", 0, nullptr), "ZoneDetector.Zone");
  EXPECT_EQ(settings.pathPush("Polygon"), "ZoneDetector.Zone.Polygon");
  EXPECT_EQ(settings.pathPop(), "ZoneDetector.Zone");
  EXPECT_EQ(settings.pathPop(), "ZoneDetector");
  EXPECT_EQ(settings.pathPop(), "");
}

TEST(Path, APopAtTheRootChangesNothing) {
  SettingsManager settings;
  settings.put<int>("a", 1);
  EXPECT_EQ(settings.pathPop(), "");
  EXPECT_EQ(settings.pathPop(), "");
  EXPECT_EQ(settings.get<int>("a"), 1);
  EXPECT_EQ(settings.pathPush("b"), "b");
  EXPECT_EQ(settings.pathPop(), "");
}

TEST(Path, ReadsAndWritesAreRelativeToTheNodeEnteredLast) {
  SettingsManager settings;
  settings.pathPush("a");
  settings.pathPush("b");
  settings.put<int>("x", 1);
  settings.pathPop();
  settings.put<int>("x", 2);
  settings.pathPop();
  settings.put<int>("x", 3);
  EXPECT_EQ(settings.getTree().get_child("a.b.x").data(), "1");
  EXPECT_EQ(settings.getTree().get_child("a.x").data(), "2");
  EXPECT_EQ(settings.getTree().get_child("x").data(), "3");
}

TEST(Path, ANameIsLiteralDotsIncluded) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"b": 1}, "c.d": {"x": 2}, "c.d": {"x": 3}})");
  EXPECT_FALSE(settings.exists("a.b"));
  EXPECT_EQ(settings.getChildCount("a.b"), 0);
  EXPECT_FALSE(settings.getChildOptional("a.b"));
  EXPECT_TRUE(settings.exists("c.d"));
  EXPECT_EQ(settings.getChildCount("c.d"), 2);
  EXPECT_EQ(settings.getChildOptional("c.d")->get_child("x").data(), "2");
  EXPECT_EQ(settings.pathPush("c.d", 1, nullptr), "c.d");
  EXPECT_EQ(settings.get<int>("x"), 3);
  EXPECT_EQ(settings.pathPop(), "") << "one name is one step, with or without a dot";
  settings.pathPush("a.b");
  settings.pathPop();
  EXPECT_TRUE(settings.exists("a.b"));
  EXPECT_EQ(settings.get<int>("a.b"), 1) << "the pushed name went into the nested node";
}

TEST(Path, AnEmptyNameIsANameToo) {
  SettingsManager settings;
  loadText(settings, R"({"rows": [[1, 2]]})");
  settings.pathPush("rows");
  EXPECT_EQ(settings.getChildCount(""), 2);
  EXPECT_EQ(settings.pathPush("", 1, nullptr), "rows.");
  EXPECT_EQ(settings.pathPush("x"), "rows..x");
  settings.pathPop();
  EXPECT_EQ(settings.pathPop(), "rows");
  settings.pathPop();
  EXPECT_EQ(settings.pathPush(""), "");
  EXPECT_EQ(settings.pathPush("x"), ".x");
  EXPECT_EQ(settings.pathPop(), "");
  EXPECT_EQ(settings.pathPop(), "");
}

TEST(Path, APushEntersTheFirstChildOfThatName) {
  SettingsManager settings;
  loadText(settings, R"({"b": {"x": 0}, "a": [{"x": 1}, {"x": 2}]})");
  settings.pathPush("a");
  EXPECT_EQ(settings.get<int>("x"), 1);
}

TEST(Path, APushOfAMissingChildCreatesAnEmptyOneAtTheEndAndLogsNothing) {
  SettingsManager settings;
  loadText(settings, R"({"z": 1})");
  const LogCapture log;
  settings.pathPush("a");
  settings.pathPop();
  settings.pathPush("a");
  settings.pathPop();
  EXPECT_TRUE(log.records().empty());
  ASSERT_EQ(settings.getTree().size(), 2U);
  EXPECT_EQ(settings.getTree().back().first, "a");
  EXPECT_TRUE(settings.getTree().back().second.empty());
  EXPECT_TRUE(settings.getTree().back().second.data().empty());
  EXPECT_EQ(settings.get<int>("z"), 1);
}

TEST(Path, ATextOfTheStoreMayBeTheNameToPush) {
  SettingsManager settings;
  const std::string& path = settings.pathPush("a");
  EXPECT_EQ(settings.pathPush(path), "a.a");
  EXPECT_EQ(settings.pathPush(path), "a.a.a.a") << "the name is the one that the text was before the push";
  EXPECT_EQ(settings.pathPush(path, 0, nullptr), "a.a.a.a.a.a.a.a");
  settings.put<int>("x", 1);
  settings.pathPop();
  EXPECT_EQ(settings.pathPop(), "a.a");
  EXPECT_TRUE(settings.exists("a.a")) << "one name of three characters";
  EXPECT_EQ(settings.pathPop(), "a");
  EXPECT_EQ(settings.pathPop(), "");
  EXPECT_EQ(settings.pathPush(settings.getTree().front().first), "a");
}

TEST(Path, TheTextOfTheRootIsTheEmptyName) {
  SettingsManager settings;
  const std::string& path = settings.pathPop();
  EXPECT_EQ(settings.pathPush(path), "");
  EXPECT_EQ(settings.pathPush("x"), ".x");
  EXPECT_TRUE(settings.getTree().front().first.empty());
}

TEST(IndexedPush, EntersTheChildOfThatNumberInDocumentOrder) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"x": 0}, "b": {"x": 10}, "a": {"x": 1}, "b": {"x": 11}, "a": {"x": 2}})");
  for (const int index : {2, 0, 1}) {
    EXPECT_EQ(settings.pathPush("a", index, nullptr), "a");
    EXPECT_EQ(settings.get<int>("x"), index);
    settings.pathPop();
    EXPECT_EQ(settings.pathPush("b", index % 2, nullptr), "b");
    EXPECT_EQ(settings.get<int>("x"), 10 + index % 2);
    settings.pathPop();
  }
}

TEST(IndexedPush, TheIndexEqualToTheCountCreatesOneMore) {
  SettingsManager settings;
  for (int index = 0; index < 3; ++index) {
    const LogCapture log;
    settings.pathPush("Zone", index, nullptr);
    EXPECT_TRUE(log.records().empty());
    settings.put<int>("x", index);
    settings.pathPop();
    EXPECT_EQ(settings.getChildCount("Zone"), index + 1);
  }
  for (int index = 0; index < 3; ++index) {
    settings.pathPush("Zone", index, nullptr);
    EXPECT_EQ(settings.get<int>("x"), index);
    settings.pathPop();
  }
  EXPECT_EQ(settings.getChildCount("Zone"), 3);
}

TEST(IndexedPush, MinusOneEntersAsThePlainPushDoes) {
  SettingsManager settings;
  EXPECT_EQ(settings.pathPush("a", -1, nullptr), "a");
  settings.put<int>("x", 1);
  settings.pathPop();
  settings.pathPush("a", 1, nullptr);
  settings.put<int>("x", 2);
  settings.pathPop();
  settings.pathPush("a", -1, nullptr);
  EXPECT_EQ(settings.get<int>("x"), 1);
  settings.pathPop();
  EXPECT_EQ(settings.getChildCount("a"), 2);
}

TEST(IndexedPush, MinusOneEntersTheFirstOfSeveralAndCountsNothing) {
  SettingsManager settings;
  loadText(settings, R"({"a": [{"x": 1}, {"x": 2}, {"x": 3}]})");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(settings.pathPush("a", -1, nullptr), "a");
    EXPECT_EQ(settings.get<int>("x"), 1);
    settings.pathPop();
    EXPECT_EQ(settings.getChildCount("a"), 3);
  }
  EXPECT_EQ(settings.pathPush("b", -1, nullptr), "b");
  settings.pathPop();
  EXPECT_EQ(settings.pathPush("b", -1, nullptr), "b");
  settings.pathPop();
  EXPECT_EQ(settings.getChildCount("b"), 1) << "a missing child is made once";
}

TEST(IndexedPush, AnyOtherIndexNamesItselfAndTheRangeAndChangesNothing) {
  SettingsManager settings;
  loadText(settings, R"({"D": {"Zone": [{"x": 1}, {"x": 2}]}})");
  settings.pathPush("D");
  const auto before = settings.getTree();
  for (const int index : {3, 4, INT_MAX, -2, -3, INT_MIN}) {
    try {
      settings.pathPush("Zone", index, nullptr);
      ADD_FAILURE() << index;
    } catch (const std::out_of_range& error) {
      EXPECT_EQ(error.what(), "index " + std::to_string(index) + " of Zone is outside 0..2");
    }
  }
  EXPECT_THROW(settings.pathPush("None", 1, nullptr), std::out_of_range);
  EXPECT_TRUE(settings.getTree() == before);
  EXPECT_EQ(settings.pathPush("x"), "D.x") << "the failed push left its name in the path";
}

TEST(IndexedPush, ANodeIsRefused) {
  SettingsManager settings;
  SettingsManager::Tree node;
  EXPECT_THROW(settings.pathPush("a", 0, &node), std::invalid_argument);
  EXPECT_THROW(settings.pathPush("a", -1, &node), std::invalid_argument);
  EXPECT_TRUE(settings.getTree().empty());
  EXPECT_EQ(settings.pathPush("b"), "b");
}

TEST(Exists, TellsOfAChildOfTheCurrentNodeOnly) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"b": {"c": 1}}, "empty": {}, "text": ""})");
  EXPECT_TRUE(settings.exists("a"));
  EXPECT_TRUE(settings.exists("empty"));
  EXPECT_TRUE(settings.exists("text"));
  EXPECT_FALSE(settings.exists("b"));
  EXPECT_FALSE(settings.exists("A"));
  EXPECT_FALSE(settings.exists(""));
  settings.pathPush("a");
  EXPECT_TRUE(settings.exists("b"));
  EXPECT_FALSE(settings.exists("a"));
}

TEST(ChildCount, CountsTheChildrenOfThatNameOfTheCurrentNode) {
  SettingsManager settings;
  loadText(settings, R"({"a": [1, 2, 3], "b": {}, "c": [], "a": 4, "d": {"a": 1}})");
  EXPECT_EQ(settings.getChildCount("a"), 4);
  EXPECT_EQ(settings.getChildCount("b"), 1);
  EXPECT_EQ(settings.getChildCount("c"), 0);
  EXPECT_EQ(settings.getChildCount("none"), 0);
  settings.pathPush("d");
  EXPECT_EQ(settings.getChildCount("a"), 1);
  settings.pathPop();
  EXPECT_EQ(settings.getChildCount("a"), 4);
}

}  // namespace
}  // namespace orvantis
