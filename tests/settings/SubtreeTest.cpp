#include <string>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;
using testing::loadText;
using testing::LogCapture;
using testing::saveText;

TEST(GetChildOptional, GivesTheFirstChildItselfOrNone) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"x": 1}, "a": {"x": 2}})");
  const LogCapture log;
  const auto child = settings.getChildOptional("a");
  ASSERT_TRUE(child);
  EXPECT_EQ(&*child, &settings.getTree().front().second);
  EXPECT_EQ(child->get_child("x").data(), "1");
  EXPECT_FALSE(settings.getChildOptional("b"));
  settings.pathPush("a", 1, nullptr);
  EXPECT_EQ(settings.getChildOptional("x")->data(), "2");
  EXPECT_TRUE(log.records().empty());
}

TEST(PutChild, StoresACopyAtTheEndAndReturnsTheStoredNode) {
  SettingsManager settings;
  settings.put<int>("first", 1);
  ptree subtree;
  subtree.put("p.x", "2");
  ptree& stored = settings.putChild("CounterLine", subtree);
  subtree.put("p.x", "3");
  EXPECT_EQ(&stored, &settings.getTree().back().second);
  EXPECT_EQ(settings.getTree().back().first, "CounterLine");
  EXPECT_EQ(settings.get<int>("CounterLine.p.x"), 2);
}

TEST(PutChild, ReplacesTheFirstChildOfThatNameInItsPlace) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"old": 1}, "b": 2, "a": {"second": 3}})");
  ptree subtree;
  subtree.put("new", "4");
  settings.putChild("a", subtree);
  ASSERT_EQ(settings.getTree().size(), 3U);
  EXPECT_TRUE(settings.getTree().front().second == subtree);
  EXPECT_EQ(settings.getChildCount("a"), 2);
  EXPECT_EQ(settings.getTree().back().second.get_child("second").data(), "3");
}

TEST(PutChild, TakesALiteralName) {
  SettingsManager settings;
  settings.putChild("a.b", ptree("x"));
  EXPECT_TRUE(settings.exists("a.b"));
  EXPECT_FALSE(settings.exists("a"));
}

TEST(PutChild, IsCountedAtOnce) {
  SettingsManager settings;
  EXPECT_EQ(settings.getChildCount("a"), 0);
  settings.putChild("a", ptree());
  EXPECT_EQ(settings.getChildCount("a"), 1);
  settings.putChild("a", ptree());
  EXPECT_EQ(settings.getChildCount("a"), 1);
}

TEST(PutChild, MayReplaceAChildByAPartOfItselfAndTakeTheWholeDocument) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"b": {"c": "1"}}})");
  const ptree whole = settings.getTree();
  const ptree part = whole.get_child("a.b");
  settings.putChild("a", *settings.getChildOptional("a")->get_child_optional("b"));
  EXPECT_TRUE(settings.getTree().get_child("a") == part);

  loadText(settings, R"({"a": {"b": {"c": "1"}}})");
  settings.putChild("a", *settings.getChildOptional("a"));
  EXPECT_TRUE(settings.getTree() == whole);
  settings.putChild("copy", settings.getTree());
  EXPECT_TRUE(settings.getTree().get_child("copy") == whole);
}

TEST(PutChild, ValuesOfASubtreeAreStringsSinceItCarriesTextOnly) {
  SettingsManager settings;
  ptree subtree;
  subtree.put("number", 7);
  subtree.put("word", "w");
  subtree.put("flag", true);
  subtree.put("none", "");
  settings.putChild("a", subtree);
  settings.putChild("leaf", ptree("1"));
  settings.putChild("empty", ptree());
  EXPECT_EQ(saveText(settings),
            "{\n  \"a\": {\n    \"number\": \"7\",\n    \"word\": \"w\",\n    \"flag\": \"true\",\n    "
            "\"none\": \"\"\n"
            "  },\n  \"leaf\": \"1\",\n  \"empty\": {}\n}\n");
}

TEST(PutChild, ForgetsTheTypesOfWhatItReplaces) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"x": "1", "y": [2], "z": [[3]]}, "b": ""})");
  ptree subtree;
  subtree.put("x", "text");
  settings.putChild("a", subtree);
  settings.putChild("b", ptree());
  settings.pathPush("a");
  settings.put<int>("x", 5);
  EXPECT_EQ(saveText(settings), "{\n  \"a\": { \"x\": 5 },\n  \"b\": {}\n}\n");
}

TEST(PutChild, ATextSetInTheStoredNodeIsBareOnlyWhenItIsALiteral) {
  SettingsManager settings;
  ptree& stored = settings.putChild("a", ptree());
  for (const char* text : {"7", "-0.5e+3", "true", "null"}) {
    stored.data() = text;
    EXPECT_EQ(saveText(settings), "{ \"a\": " + std::string(text) + " }\n");
  }
  for (const char* text :
       {"007", "-01", "-", "1.", ".5", "1.e5", "1e", "1e+", "+1", "0x1", "1 ", "1f", "True", "nul"}) {
    stored.data() = text;
    EXPECT_EQ(saveText(settings), "{ \"a\": \"" + std::string(text) + "\" }\n");
  }
}

TEST(PutChild, AValuePutIntoTheSubtreeAfterwardsKeepsItsOwnType) {
  SettingsManager settings;
  ptree subtree;
  subtree.put("x", "1");
  subtree.put("y", "2");
  settings.putChild("a", subtree);
  settings.put<int>("a.x", 3);
  EXPECT_EQ(saveText(settings), "{\n  \"a\": {\n    \"x\": 3,\n    \"y\": \"2\"\n  }\n}\n");
}

}  // namespace
}  // namespace orvantis
