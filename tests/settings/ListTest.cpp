#include <string>

#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/Settings.h"

namespace orvantis {
namespace {

using testing::loadText;

constexpr int LONG = 100000;

TEST(LongList, IsWalkedByIndexWithTheCountAskedBeforeEachStep) {
  std::string text = R"({"list": {"Zone": [)";
  for (int i = 0; i < LONG; ++i) {
    text += (i == 0 ? "{\"i\": " : ", {\"i\": ") + std::to_string(i) + "}";
  }
  SettingsManager settings;
  loadText(settings, text + "]}}");
  settings.pathPush("list");
  long long sum = 0;
  for (int i = 0; i < settings.getChildCount("Zone"); ++i) {
    settings.pathPush("Zone", i, nullptr);
    const int value = settings.get<int>("i");
    ASSERT_EQ(value, i);
    sum += value;
    settings.pathPop();
  }
  EXPECT_EQ(sum, static_cast<long long>(LONG) * (LONG - 1) / 2);
}

TEST(LongList, IsWrittenByIndexWithTheCountAskedBeforeEachStep) {
  SettingsManager settings;
  for (int i = 0; i < LONG; ++i) {
    ASSERT_EQ(settings.getChildCount("Zone"), i);
    settings.pathPush("Zone", i, nullptr);
    settings.put<int>("i", i);
    settings.pathPop();
  }
  int next = 0;
  for (const auto& [name, node] : settings.getTree()) {
    ASSERT_EQ(name, "Zone");
    ASSERT_EQ(node.get_child("i").data(), std::to_string(next++));
  }
  EXPECT_EQ(next, LONG);
}

TEST(LongList, ValuesAreReadByIndex) {
  SettingsManager settings;
  for (int i = 0; i < LONG; ++i) {
    settings.add("lidar", std::to_string(i));
  }
  for (int i = 0; i < settings.getChildCount("lidar"); ++i) {
    ASSERT_EQ(settings.getIndexedValue("lidar", i), std::to_string(i));
  }
}

TEST(LongList, ChangingAnEntryOrAnotherKeyBetweenTheStepsKeepsTheWalkRight) {
  SettingsManager settings;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(settings.getChildCount("Zone"), i);
    settings.pathPush("Zone", i, nullptr);
    settings.pathPop();
    settings.put<int>("written", i);
    settings.put<int>("Zone.i", -1);
  }
  EXPECT_EQ(settings.getChildCount("Zone"), 1000);
  EXPECT_EQ(settings.getChildCount("written"), 1);
}

}  // namespace
}  // namespace orvantis
