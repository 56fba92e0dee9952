#include <ios>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "settings/JsonWriter.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;
using testing::loadText;
using testing::LogCapture;
using testing::saveText;

// What a text becomes that is read and written back.
std::string rewritten(const std::string& json) {
  SettingsManager settings;
  loadText(settings, json);
  return saveText(settings);
}

void expectUnchanged(const std::string& json) {
  EXPECT_EQ(rewritten(json), json);
}

// Nothing is written when the document cannot be read back.
void expectRefused(const SettingsManager& settings) {
  std::ostringstream out;
  EXPECT_FALSE(settings.saveStream(out, SettingsManager::JSON));
  EXPECT_EQ(out.str(), "");
}

TEST(JsonWrite, AnEmptyStoreIsAnEmptyObject) {
  EXPECT_EQ(saveText(SettingsManager()), "{}\n");
}

TEST(JsonWrite, ValuesPutAsNumbersOrTruthValuesAreBareAndStringsQuoted) {
  SettingsManager settings;
  settings.put<std::string>("name", "7");
  settings.put<std::string>("word", "true");
  settings.put<std::string>("nothing", "null");
  settings.put<std::string>("empty", "");
  settings.put<int>("index", 7);
  settings.put<double>("zMin", -0.5);
  settings.put<bool>("flag", false);
  settings.add("lidar", "1e5");
  EXPECT_EQ(saveText(settings),
            "{\n  \"name\": \"7\",\n  \"word\": \"true\",\n  \"nothing\": \"null\",\n  \"empty\": \"\",\n"
            "  \"index\": 7,\n  \"zMin\": -0.5,\n  \"flag\": false,\n  \"lidar\": [\n    \"1e5\"\n  ]\n}\n");
}

TEST(JsonWrite, TheLastPutDecidesTheType) {
  SettingsManager settings;
  settings.put<std::string>("a", "7");
  settings.put<int>("a", 7);
  EXPECT_EQ(saveText(settings), "{ \"a\": 7 }\n");
  settings.put<std::string>("a", "7");
  EXPECT_EQ(saveText(settings), "{\n  \"a\": \"7\"\n}\n");
  settings.put<std::string>("a", "seven");
  EXPECT_EQ(saveText(settings), "{ \"a\": \"seven\" }\n");
}

TEST(JsonWrite, WhatWasReadKeepsItsJsonTypes) {
  expectUnchanged(
      "{\n  \"name\": \"7\",\n  \"n\": 7,\n  \"t\": true,\n  \"ts\": \"true\",\n  \"null\": null,\n"
      "  \"nulls\": \"null\",\n  \"empty\": \"\",\n  \"object\": {},\n  \"d\": 1.50\n}\n");
}

TEST(JsonWrite, AOneEntryArrayStaysAnArray) {
  expectUnchanged("{\n  \"tags\": [\n    \"a\"\n  ],\n  \"other\": [\n    { \"x\": 1 }\n  ]\n}\n");
}

TEST(JsonWrite, AOneEntryArrayStaysAnArrayWhenItsEntryIsWritten) {
  SettingsManager settings;
  loadText(settings, R"({"tags": ["a"], "numbers": [1]})");
  settings.put<std::string>("tags", "7");
  settings.put<int>("numbers", 2);
  EXPECT_EQ(saveText(settings), "{\n  \"tags\": [\n    \"7\"\n  ],\n  \"numbers\": [\n    2\n  ]\n}\n");
}

TEST(JsonWrite, NestedArraysStayNestedAndEmptyOnesEmpty) {
  expectUnchanged(
      "{\n  \"rows\": [\n    [\n      1,\n      2\n    ],\n    [],\n    [\n      []\n    ]\n  ]\n}\n");
  expectUnchanged("[]\n");
  expectUnchanged("[\n  1\n]\n");
  expectUnchanged("[\n  [\n    {}\n  ],\n  \"\"\n]\n");
}

TEST(JsonWrite, AnEmptyArrayUnderAKeyIsDropped) {
  EXPECT_EQ(rewritten(R"({"a": [], "b": 1})"), "{ \"b\": 1 }\n");
}

TEST(JsonWrite, AScalarDocumentStaysOne) {
  expectUnchanged("\"7\"\n");
  expectUnchanged("7\n");
  expectUnchanged("\"\"\n");
  expectUnchanged("null\n");
}

TEST(JsonWrite, RepeatedChildrenBecomeAnArrayAtThePlaceOfTheFirst) {
  EXPECT_EQ(rewritten(R"({"a": 1, "b": 2, "a": "3", "a": {"c": 4}})"),
            "{\n  \"a\": [\n    1,\n    \"3\",\n    { \"c\": 4 }\n  ],\n  \"b\": 2\n}\n");
}

TEST(JsonWrite, TheListsOfTheDocumentsAreArraysAlsoWithOneEntry) {
  for (const std::string name :
       {"Point", "ExclusionZone", "EvaluationField", "Zone", "lidar", "Zone3d", "CounterLine"}) {
    SettingsManager settings;
    settings.pathPush(name, 0, nullptr);
    settings.put<int>("x", 1);
    const std::string list = "{\n  \"" + name + "\": [\n    { \"x\": 1 }\n  ]\n}\n";
    EXPECT_EQ(saveText(settings), list);
    EXPECT_EQ(rewritten("{\"" + name + "\": {\"x\": 1}}"), list);
    EXPECT_EQ(rewritten(list), list);
  }
}

TEST(JsonWrite, ANameLikeAListsIsNotAList) {
  for (const std::string name :
       {"point", "Points", "Zones", "zone", "ZoneDetector", "Polygon", "CounterLines"}) {
    EXPECT_EQ(rewritten("{\"" + name + "\": {\"x\": 1}}"), "{\n  \"" + name + "\": { \"x\": 1 }\n}\n");
  }
}

TEST(JsonWrite, AnEntryPushedButNotFilledIsAnEmptyObject) {
  SettingsManager settings;
  settings.pathPush("a");
  EXPECT_EQ(saveText(settings), "{ \"a\": {} }\n");
}

TEST(JsonWrite, TheWholeDocumentIsWrittenWhateverThePath) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"b": 1}})");
  const std::string before = saveText(settings);
  settings.pathPush("a");
  EXPECT_EQ(saveText(settings), before);
  EXPECT_EQ(settings.get<int>("b"), 1);
}

TEST(JsonWrite, EveryCharacterOfAStringOrAKeyComesBack) {
  std::string all;
  for (int c = 0; c < 0x80; ++c) {
    all += static_cast<char>(c);
  }
  all += "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBB\xBF\xED\x9F\xBF\xEE\x80\x80";
  SettingsManager settings;
  settings.put<std::string>("s", all);
  settings.pathPush(all);
  settings.put<int>("x", 1);
  SettingsManager loaded;
  loadText(loaded, saveText(settings));
  EXPECT_EQ(loaded.get<std::string>("s"), all);
  EXPECT_TRUE(loaded.exists(all));
  EXPECT_TRUE(loaded.getTree() == settings.getTree());
}

TEST(JsonWrite, ControlCharactersQuotesAndBackslashesAreEscaped) {
  SettingsManager settings;
  settings.put<std::string>("s", std::string("\0\x01\b\t\n\x0B\f\r\x1F\"\\/\x7F", 13));
  EXPECT_EQ(saveText(settings),
            "{ \"s\": \"\\u0000\\u0001\\u0008\\t\\n\\u000b\\u000c\\u000d\\u001f\\\"\\\\/\x7F\" }\n");
}

TEST(JsonWrite, LogsNothing) {
  SettingsManager settings;
  settings.put<int>("a", 1);
  const LogCapture log;
  saveText(settings);
  EXPECT_TRUE(log.records().empty());
}

TEST(JsonWrite, TextThatIsNotUtf8IsRefused) {
  for (const std::string bad :
       {"\xFF", "\x80", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\xE2\x82"}) {
    SettingsManager value;
    value.put<std::string>("a", bad);
    expectRefused(value);
    SettingsManager name;
    name.pathPush(bad);
    expectRefused(name);
  }
}

TEST(JsonWrite, ANodeWithBothAValueAndChildrenIsRefused) {
  SettingsManager settings;
  settings.put<int>("a.b", 1);
  EXPECT_EQ(saveText(settings), "{\n  \"a\": { \"b\": 1 }\n}\n");
  settings.put<std::string>("a", "value");
  expectRefused(settings);
}

TEST(JsonWrite, NestingBeyondWhatIsReadIsRefused) {
  SettingsManager settings;
  for (int depth = 1; depth <= SettingsManager::MAX_DEPTH; ++depth) {
    SettingsManager loaded;
    loadText(loaded, saveText(settings));
    settings.pathPush("a");
  }
  expectRefused(settings);
  settings.put<int>("x", 1);
  expectRefused(settings);
}

TEST(JsonWrite, AListCountsAsALevel) {
  SettingsManager settings;
  for (int depth = 0; depth < SettingsManager::MAX_DEPTH / 2; ++depth) {
    settings.pathPush("Zone", 0, nullptr);
    settings.put<int>("x", 1);
    if (2 * (depth + 1) + 1 <= SettingsManager::MAX_DEPTH) {
      SettingsManager loaded;
      loadText(loaded, saveText(settings));
    }
  }
  expectRefused(settings);
}

// The writer says so itself: what it leaves behind need not be looked at.
TEST(JsonWrite, TheWriterReportsARefusalFromEveryLevel) {
  const auto isWritten = [](const ptree& root) {
    std::string text;
    return json::write(root, {}, text);
  };
  ptree both("value");
  both.put("x", 1);
  EXPECT_FALSE(isWritten(both));
  ptree inMember;
  inMember.add_child("a.b", both);
  inMember.add("c", 1);
  EXPECT_FALSE(isWritten(inMember));
  ptree inElement;
  inElement.add("a", 1);
  inElement.add_child("a", both);
  EXPECT_FALSE(isWritten(inElement));

  const auto nestedIn = [](int depth, const ptree& innermost) {
    ptree root;
    ptree* node = &root;
    for (int i = 0; i < depth; ++i) {
      node = &node->add_child("a", ptree());
    }
    *node = innermost;
    return root;
  };
  ptree list;
  list.add("x", 1);
  list.add("x", 2);
  EXPECT_TRUE(isWritten(nestedIn(SettingsManager::MAX_DEPTH - 1, ptree())));
  EXPECT_FALSE(isWritten(nestedIn(SettingsManager::MAX_DEPTH, ptree())));
  EXPECT_TRUE(isWritten(nestedIn(SettingsManager::MAX_DEPTH - 2, list)));
  EXPECT_FALSE(isWritten(nestedIn(SettingsManager::MAX_DEPTH - 1, list)));
}

TEST(JsonWrite, AStoreThatWasRefusedCanBeMendedAndWritten) {
  SettingsManager settings;
  settings.put<std::string>("a", "\xFF");
  expectRefused(settings);
  settings.put<std::string>("a", "x");
  EXPECT_EQ(saveText(settings), "{ \"a\": \"x\" }\n");
}

TEST(JsonWrite, AnUnknownFormatWritesNothing) {
  SettingsManager settings;
  for (const char* format : {"", "xml", "JSON "}) {
    std::ostringstream out;
    EXPECT_FALSE(settings.saveStream(out, format));
    EXPECT_EQ(out.str(), "");
  }
}

TEST(JsonWrite, AStreamThatIsBadFromTheStartIsReported) {
  SettingsManager settings;
  for (const auto state : {std::ios::failbit, std::ios::badbit, std::ios::eofbit}) {
    std::ostringstream out;
    out.setstate(state);
    EXPECT_FALSE(settings.saveStream(out, SettingsManager::JSON));
    EXPECT_EQ(out.str(), "");
  }
  std::ostream nowhere(nullptr);
  EXPECT_FALSE(settings.saveStream(nowhere, SettingsManager::JSON));
}

// Takes so many bytes, then is full as a disk is; or takes all and fails when they are to be kept.
class FullBuffer : public std::streambuf {
 public:
  FullBuffer(int room, bool failsToFlush) : room_(room), failsToFlush_(failsToFlush) {}

 protected:
  int_type overflow(int_type byte) override { return room_-- > 0 ? byte : traits_type::eof(); }
  int sync() override { return failsToFlush_ ? -1 : 0; }

 private:
  int room_;
  bool failsToFlush_;
};

TEST(JsonWrite, AStreamThatTakesNotAllIsReported) {
  SettingsManager settings;
  settings.put<int>("a", 1);
  const int size = static_cast<int>(saveText(settings).size());
  for (int room = 0; room <= size; ++room) {
    FullBuffer buffer(room, false);
    std::ostream out(&buffer);
    EXPECT_EQ(settings.saveStream(out, SettingsManager::JSON), room == size) << room << " of " << size;
  }
  FullBuffer buffer(size, true);
  std::ostream out(&buffer);
  EXPECT_FALSE(settings.saveStream(out, SettingsManager::JSON)) << "a failed flush was not reported";
}

}  // namespace
}  // namespace orvantis
