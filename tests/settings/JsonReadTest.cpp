#include <cstddef>
#include <fstream>
#include <istream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/AllocationCounter.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;
using testing::loadText;
using testing::LogCapture;

// The tree as one line: name=value{children}.
std::string outline(const ptree& node) {
  std::string text = node.data();
  if (!node.empty()) {
    text += '{';
    for (const auto& [name, child] : node) {
      text += (text.back() == '{' ? "" : " ") + name + "=" + outline(child);
    }
    text += '}';
  }
  return text;
}

std::string outlineOf(const std::string& json) {
  SettingsManager settings;
  loadText(settings, json);
  return outline(settings.getTree());
}

bool load(SettingsManager& settings, const std::string& json) {
  std::istringstream in(json);
  return settings.loadStream(in, SettingsManager::JSON);
}

// More than the reader keeps blank nodes for.
TEST(JsonRead, ManyKeysKeepTheirNamesValuesAndOrder) {
  std::string json;
  std::string expected;
  for (int i = 0; i < 300; ++i) {
    const std::string number = std::to_string(i);
    json += (i == 0 ? "{\"k" : ",\"k") + number + "\":[" + number + ",\"v\"]";
    expected += (i == 0 ? "{k" : " k") + number + "=" + number + " k" + number + "=v";
  }
  EXPECT_EQ(outlineOf(json + "}"), expected + "}");
}

TEST(JsonRead, AnArrayUnderAKeyBecomesRepeatedChildrenInOrder) {
  EXPECT_EQ(outlineOf(R"({"a": [1, "b", true, null], "c": 2})"), "{a=1 a=b a=true a=null c=2}");
  EXPECT_EQ(outlineOf(R"({"Zone": [{"x": 1}, {}, {"x": 2}]})"), "{Zone={x=1} Zone= Zone={x=2}}");
}

TEST(JsonRead, RepeatedKeysBecomeRepeatedChildrenInOrder) {
  EXPECT_EQ(outlineOf(R"({"a": 1, "b": 2, "a": [3, 4], "a": {"c": 5}, "a": []})"),
            "{a=1 b=2 a=3 a=4 a={c=5}}");
  EXPECT_EQ(outlineOf(R"({"a": 1, "\u0061": 2})"), "{a=1 a=2}");
}

TEST(JsonRead, AnEmptyArrayBecomesNoChild) {
  EXPECT_EQ(outlineOf(R"({"a": [], "b": 1})"), "{b=1}");
  EXPECT_EQ(outlineOf(R"({"a": {"b": []}})"), "{a=}");
}

TEST(JsonRead, AnArrayInsideAnArrayOrAsTheDocumentBecomesChildrenWithoutAName) {
  EXPECT_EQ(outlineOf(R"({"a": [[1, 2], [], [[3]]]})"), "{a={=1 =2} a= a={={=3}}}");
  EXPECT_EQ(outlineOf(R"([1, {"x": 2}, [3]])"), "{=1 ={x=2} ={=3}}");
  EXPECT_EQ(outlineOf("[]"), "");
}

TEST(JsonRead, AScalarDocumentIsTheRootsValue) {
  EXPECT_EQ(outlineOf(R"("text")"), "text");
  EXPECT_EQ(outlineOf(" -1.50 "), "-1.50");
  EXPECT_EQ(outlineOf("null"), "null");
}

TEST(JsonRead, ANumberKeepsItsText) {
  EXPECT_EQ(outlineOf(R"([1.50, -0, 1E+05, 123456789012345678901234567890, 1e400])"),
            "{=1.50 =-0 =1E+05 =123456789012345678901234567890 =1e400}");
}

TEST(JsonRead, EscapesBecomeUtf8) {
  EXPECT_EQ(outlineOf(R"(["\"\\\/\b\f\n\r\t", "\u0041\u00e9\u20AC\uD83D\uDE00"])"),
            "{=\"\\/\b\f\n\r\t =A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80}");
  EXPECT_EQ(outlineOf(R"({"a\u0000b": "c\u0000d"})"), std::string("{a\0b=c\0d}", 9));
}

TEST(JsonRead, AByteOrderMarkIsSkipped) {
  EXPECT_EQ(outlineOf("\xEF\xBB\xBF{\"a\": 1}"), "{a=1}");
}

TEST(JsonRead, AStringLongerThanAnyBufferIsReadWhole) {
  const std::string value(300000, 'v');
  const std::string name(300000, 'n');
  EXPECT_EQ(outlineOf("{\"" + name + "\": \"" + value + "\"}"), "{" + name + "=" + value + "}");
  const std::string digits(300000, '7');
  EXPECT_EQ(outlineOf("[" + digits + "]"), "{=" + digits + "}");
}

TEST(JsonRead, ReplacesTheDocumentAndReturnsThePathToTheRoot) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"b": {"x": 1}}, "c": "7"})");
  EXPECT_EQ(settings.getChildCount("c"), 1);
  settings.pathPush("a");
  settings.pathPush("b");
  loadText(settings, R"({"x": 2})");
  EXPECT_EQ(outline(settings.getTree()), "{x=2}");
  EXPECT_EQ(settings.get<int>("x"), 2);
  EXPECT_EQ(settings.getChildCount("c"), 0);
  EXPECT_EQ(settings.pathPush("p"), "p");
  EXPECT_EQ(settings.pathPop(), "");
  EXPECT_EQ(settings.pathPop(), "");
}

TEST(JsonRead, LogsNothing) {
  const LogCapture log;
  SettingsManager settings;
  EXPECT_TRUE(load(settings, R"({"a": 1})"));
  EXPECT_FALSE(load(settings, R"({"a": )"));
  EXPECT_TRUE(log.records().empty());
}

TEST(JsonRead, AFailureKeepsTreeAndPathAndSaysWhy) {
  SettingsManager settings;
  loadText(settings, R"({"a": {"b": {"x": 1}}, "name": "7"})");
  settings.pathPush("a");
  settings.pathPush("b");
  const ptree before = settings.getTree();
  for (const char* text : {"", "{", "{\"x\": 2", "{\"x\": 2}}", "[1, 2", "{\"x\": tru}"}) {
    EXPECT_FALSE(load(settings, text)) << text;
    EXPECT_FALSE(settings.getLoadError().empty()) << text;
    EXPECT_TRUE(settings.getTree() == before) << text;
    EXPECT_EQ(settings.get<int>("x"), 1) << text;
  }
  EXPECT_EQ(settings.pathPush("c"), "a.b.c");
  EXPECT_TRUE(load(settings, "{}"));
  EXPECT_EQ(settings.getLoadError(), "");
}

TEST(JsonRead, AnUnknownFormatIsNamedAndReadsNothing) {
  SettingsManager settings;
  loadText(settings, R"({"a": 1})");
  std::istringstream in("{}");
  for (const std::string format : {"", "xml", "JSON ", "jsonc"}) {
    EXPECT_FALSE(settings.loadStream(in, format));
    std::string expected = "unknown format '";
    expected.append(format).append("', only 'json' is known");
    EXPECT_EQ(settings.getLoadError(), expected);
  }
  EXPECT_EQ(in.tellg(), 0);
  EXPECT_EQ(settings.get<int>("a"), 1);
}

TEST(JsonRead, StartsWhereTheStreamStands) {
  std::istringstream in("skip {\"a\": 1}");
  in.ignore(5);
  SettingsManager settings;
  EXPECT_TRUE(settings.loadStream(in, SettingsManager::JSON));
  EXPECT_EQ(settings.get<int>("a"), 1);
}

TEST(JsonRead, AStreamThatIsBadFromTheStartIsRefused) {
  for (const auto state : {std::ios::failbit, std::ios::badbit, std::ios::failbit | std::ios::badbit}) {
    std::istringstream in(R"({"a": 1})");
    in.setstate(state);
    SettingsManager settings;
    EXPECT_FALSE(settings.loadStream(in, SettingsManager::JSON));
    EXPECT_EQ(settings.getLoadError(), "the stream cannot be read");
    EXPECT_TRUE(settings.getTree().empty());
  }
}

TEST(JsonRead, AStreamReadToItsEndHoldsNoDocument) {
  std::istringstream in("{}");
  SettingsManager settings;
  EXPECT_TRUE(settings.loadStream(in, SettingsManager::JSON));
  EXPECT_FALSE(settings.loadStream(in, SettingsManager::JSON));
  EXPECT_FALSE(settings.getLoadError().empty());
}

TEST(JsonRead, AFileThatIsMissingAndADirectoryAreRefused) {
  SettingsManager settings;
  std::ifstream missing(std::string(ORVANTIS_SOURCE_DIR) + "/no-such-file.json");
  EXPECT_FALSE(settings.loadStream(missing, SettingsManager::JSON));
  EXPECT_EQ(settings.getLoadError(), "the stream cannot be read");
  std::ifstream directory(ORVANTIS_SOURCE_DIR);
  EXPECT_FALSE(settings.loadStream(directory, SettingsManager::JSON));
  EXPECT_EQ(settings.getLoadError(), "the stream cannot be read");
}

// Gives some bytes, then fails as a broken disk does.
class BreakingBuffer : public std::streambuf {
 public:
  explicit BreakingBuffer(std::string bytes) : bytes_(std::move(bytes)) {
    setg(bytes_.data(), bytes_.data(), bytes_.data() + bytes_.size());
  }

 protected:
  int_type underflow() override { throw std::ios_base::failure("input/output error"); }

 private:
  std::string bytes_;
};

TEST(JsonRead, AStreamThatBreaksOnTheWayIsRefused) {
  for (const char* text : {"", "{\"a\": ", "{\"a\": 1}"}) {
    for (const auto mask : {std::ios::goodbit, std::ios::badbit}) {
      BreakingBuffer buffer(text);
      std::istream in(&buffer);
      in.exceptions(mask);
      SettingsManager settings;
      EXPECT_FALSE(settings.loadStream(in, SettingsManager::JSON)) << text;
      EXPECT_EQ(settings.getLoadError(), "the stream cannot be read") << text;
    }
  }
}

TEST(JsonRead, AStreamThatThrowsAtItsEndIsReadLikeAnother) {
  std::istringstream in(R"({"a": 1})");
  in.exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
  SettingsManager settings;
  EXPECT_TRUE(settings.loadStream(in, SettingsManager::JSON)) << settings.getLoadError();
  EXPECT_EQ(settings.get<int>("a"), 1);
}

// A pipe gives what has come so far, here one byte at a time.
class DribblingBuffer : public std::streambuf {
 public:
  explicit DribblingBuffer(std::string bytes) : bytes_(std::move(bytes)) {}

 protected:
  int_type underflow() override {
    if (next_ == bytes_.size()) {
      return traits_type::eof();
    }
    char* const at = &bytes_[next_++];
    setg(at, at, at + 1);
    return traits_type::to_int_type(*at);
  }

 private:
  std::string bytes_;
  std::size_t next_ = 0;
};

TEST(JsonRead, AStreamThatGivesAByteAtATimeIsReadWhole) {
  DribblingBuffer buffer("\xEF\xBB\xBF{\"a\": [1, \"\xC3\xA9\"]}");
  std::istream in(&buffer);
  SettingsManager settings;
  EXPECT_TRUE(settings.loadStream(in, SettingsManager::JSON)) << settings.getLoadError();
  EXPECT_EQ(outline(settings.getTree()), "{a=1 a=\xC3\xA9}");
}

// What a document of 1000 values needs when it has so many names that take turns.
std::size_t allocationsWith(int numNames) {
  std::string json = "[0";
  for (int i = 0; i < 1000; ++i) {
    json += ", {\"n" + std::to_string(i % numNames) + "\": 1}";
  }
  std::istringstream in(json + "]");
  SettingsManager settings;
  const testing::AllocationCounter allocations;
  EXPECT_TRUE(settings.loadStream(in, SettingsManager::JSON)) << settings.getLoadError();
  return allocations.count();
}

// Documents use few names over and over. Made anew each time, the node of a name's tenth value would need as
// much as that of its first.
TEST(JsonRead, AValueWhoseNameCameBeforeNeedsFewerAllocations) {
  EXPECT_LT(allocationsWith(10) + 1000, allocationsWith(1000));
}

// Nor are names hoarded: of many, the first are forgotten by the time they come again.
TEST(JsonRead, NamesThatCameLongBeforeAreLikeNewOnes) {
  EXPECT_EQ(allocationsWith(500), allocationsWith(1000));
}

}  // namespace
}  // namespace orvantis
