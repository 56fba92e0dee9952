#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>

#include <settings/SettingsPathManager.h>

#include "support/Settings.h"

namespace orvantis {
namespace {

using testing::loadText;
using utils::SettingsPathManager;

TEST(SettingsPathManager, EntersForTheLengthOfAScope) {
  SettingsManager settings;
  loadText(settings, R"({"x": 0, "a": [{"x": 1}, {"x": 2, "b": {"x": 3}}]})");
  {
    const SettingsPathManager outer(settings, "a", 1);
    EXPECT_EQ(settings.get<int>("x"), 2);
    {
      const SettingsPathManager inner(settings, "b", -1);
      EXPECT_EQ(settings.get<int>("x"), 3);
    }
    EXPECT_EQ(settings.get<int>("x"), 2);
  }
  EXPECT_EQ(settings.get<int>("x"), 0);
}

TEST(SettingsPathManager, LeavesAlsoWhileAnExceptionPasses) {
  SettingsManager settings;
  loadText(settings, R"({"x": 0, "a": {"b": {}}})");
  try {
    const SettingsPathManager outer(settings, "a", -1);
    const SettingsPathManager inner(settings, "b", 0);
    settings.get<int>("missing");
    ADD_FAILURE();
  } catch (const boost::property_tree::ptree_bad_path&) {
    EXPECT_EQ(settings.get<int>("x"), 0);
  }
}

TEST(SettingsPathManager, ABadIndexIsLetOutAndTheRootStaysEntered) {
  SettingsManager settings;
  loadText(settings, R"({"x": 0, "a": {}})");
  const SettingsPathManager outer(settings, "a", 0);
  EXPECT_THROW(SettingsPathManager(settings, "b", 1), std::out_of_range);
  EXPECT_THROW(SettingsPathManager(settings, "b", -2), std::out_of_range);
  EXPECT_EQ(settings.pathPush("c"), "a.c");
  settings.pathPop();
}

TEST(SettingsPathManager, CreatesTheChildAtTheEndOfItsList) {
  SettingsManager settings;
  { const SettingsPathManager path(settings, "a", 0); }
  { const SettingsPathManager path(settings, "a", 1); }
  EXPECT_EQ(settings.getChildCount("a"), 2);
}

TEST(SettingsPathManager, IsNeitherCopiedNorMoved) {
  EXPECT_FALSE(std::is_copy_constructible_v<SettingsPathManager>);
  EXPECT_FALSE(std::is_copy_assignable_v<SettingsPathManager>);
  EXPECT_FALSE(std::is_move_constructible_v<SettingsPathManager>);
  EXPECT_FALSE(std::is_copy_constructible_v<SettingsManager>);
  EXPECT_FALSE(std::is_move_constructible_v<SettingsManager>);
}

}  // namespace
}  // namespace orvantis
