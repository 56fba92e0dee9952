#include <sstream>
#include <string>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/Settings.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;
using testing::loadText;

// Deeper than the call stack: freeing, writing or copying such a tree must not recurse.
constexpr int DEPTH = 200000;

void dig(SettingsManager& settings, int depth) {
  for (int i = 0; i < depth; ++i) {
    settings.pathPush("a");
  }
}

TEST(DeepTree, IsFreedWithTheStore) {
  SettingsManager settings;
  dig(settings, 1000000);
  settings.put<int>("x", 1);
  EXPECT_EQ(settings.get<int>("x"), 1);
}

TEST(DeepTree, IsLeftStepByStep) {
  SettingsManager settings;
  dig(settings, DEPTH);
  for (int i = 0; i < DEPTH; ++i) {
    settings.pathPop();
  }
  EXPECT_EQ(settings.pathPop(), "");
  EXPECT_TRUE(settings.exists("a"));
}

TEST(DeepTree, IsFreedWhenADocumentReplacesIt) {
  SettingsManager settings;
  dig(settings, DEPTH);
  loadText(settings, R"({"x": 2})");
  EXPECT_EQ(settings.get<int>("x"), 2);
}

TEST(DeepTree, IsRefusedByTheWriter) {
  SettingsManager settings;
  dig(settings, DEPTH);
  std::ostringstream out;
  EXPECT_FALSE(settings.saveStream(out, SettingsManager::JSON));
  EXPECT_EQ(out.str(), "");
}

TEST(DeepTree, IsMadeAndFreedByADottedKeyToo) {
  std::string key = "a";
  for (int i = 0; i < 100000; ++i) {
    key += ".a";
  }
  SettingsManager settings;
  settings.put<int>(key, 1);
  EXPECT_EQ(settings.get<int>(key), 1);
}

TEST(DeepTree, IsFreedWhenASubtreeReplacesIt) {
  SettingsManager settings;
  dig(settings, DEPTH);
  for (int i = 0; i < DEPTH; ++i) {
    settings.pathPop();
  }
  settings.putChild("a", ptree("new"));
  EXPECT_EQ(settings.get<std::string>("a"), "new");
}

TEST(DeepTree, IsCopiedAsASubtree) {
  SettingsManager source;
  dig(source, DEPTH);
  source.put<int>("x", 1);
  SettingsManager target;
  target.putChild("copy", source.getTree());
  target.pathPush("copy");
  for (int i = 0; i < DEPTH; ++i) {
    ASSERT_TRUE(target.exists("a"));
    target.pathPush("a");
  }
  EXPECT_EQ(target.get<int>("x"), 1);
}

TEST(DeepTree, AWideTreeIsFreedToo) {
  SettingsManager settings;
  for (int i = 0; i < 1000; ++i) {
    settings.pathPush("list", i, nullptr);
    dig(settings, 100);
    for (int up = 0; up <= 100; ++up) {
      settings.pathPop();
    }
  }
  EXPECT_EQ(settings.getChildCount("list"), 1000);
}

}  // namespace
}  // namespace orvantis
