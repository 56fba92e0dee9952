#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/Settings.h"

namespace orvantis {
namespace {

using testing::loadText;
using testing::saveText;

// RFC 8259 as a recogniser of one function for each rule; nothing in it is shared with the reader. One thing
// the RFC leaves open: escapes of lone surrogates are refused.
class Recogniser {
 public:
  explicit Recogniser(std::string_view text) : text_(text) {}

  bool isDocument() {
    if (text_.substr(0, 3) == "\xEF\xBB\xBF") {
      at_ = 3;
    }
    return value(0) && at_ == text_.size();
  }

 private:
  static constexpr int maxDepth = 64;

  bool take(char c) {
    if (at_ < text_.size() && text_[at_] == c) {
      ++at_;
      return true;
    }
    return false;
  }
  bool takeAny(std::string_view set) {
    if (at_ < text_.size() && set.find(text_[at_]) != std::string_view::npos) {
      ++at_;
      return true;
    }
    return false;
  }
  bool takeWord(std::string_view word) {
    if (text_.substr(at_, word.size()) == word) {
      at_ += word.size();
      return true;
    }
    return false;
  }
  void space() {
    while (takeAny(" \t\r\n")) {
    }
  }
  bool digits() {
    if (!takeAny("0123456789")) {
      return false;
    }
    while (takeAny("0123456789")) {
    }
    return true;
  }
  bool number() {
    take('-');
    if (!take('0') && !digits()) {
      return false;
    }
    if (take('.') && !digits()) {
      return false;
    }
    if (takeAny("eE")) {
      takeAny("+-");
      return digits();
    }
    return true;
  }
  bool hex(std::uint32_t& unit) {
    unit = 0;
    for (int i = 0; i < 4; ++i) {
      static constexpr std::string_view lower = "0123456789abcdef";
      static constexpr std::string_view upper = "0123456789ABCDEF";
      if (at_ >= text_.size()) {
        return false;
      }
      std::size_t digit = lower.find(text_[at_]);
      if (digit == std::string_view::npos) {
        digit = upper.find(text_[at_]);
      }
      if (digit == std::string_view::npos) {
        return false;
      }
      unit = unit * 16 + static_cast<std::uint32_t>(digit);
      ++at_;
    }
    return true;
  }
  bool escape() {
    if (!take('u')) {
      return takeAny("\"\\/bfnrt");
    }
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    if (!hex(first) || (first >= 0xDC00 && first <= 0xDFFF)) {
      return false;
    }
    const bool isPair = first >= 0xD800 && first <= 0xDBFF;
    return !isPair || (takeWord("\\u") && hex(second) && second >= 0xDC00 && second <= 0xDFFF);
  }
  bool continuation(unsigned char from = 0x80, unsigned char to = 0xBF) {
    if (at_ < text_.size()) {
      const auto byte = static_cast<unsigned char>(text_[at_]);
      if (byte >= from && byte <= to) {
        ++at_;
        return true;
      }
    }
    return false;
  }
  bool character() {
    const auto byte = static_cast<unsigned char>(text_[at_++]);
    if (byte < 0x20) {
      return false;
    }
    if (byte < 0x80) {
      return true;
    }
    if (byte >= 0xC2 && byte <= 0xDF) {
      return continuation();
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
      const bool second = byte == 0xE0   ? continuation(0xA0, 0xBF)
                          : byte == 0xED ? continuation(0x80, 0x9F)
                                         : continuation();
      return second && continuation();
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
      const bool second = byte == 0xF0   ? continuation(0x90, 0xBF)
                          : byte == 0xF4 ? continuation(0x80, 0x8F)
                                         : continuation();
      return second && continuation() && continuation();
    }
    return false;
  }
  bool string() {
    if (!take('"')) {
      return false;
    }
    while (at_ < text_.size()) {
      if (take('"')) {
        return true;
      }
      if (!(take('\\') ? escape() : character())) {
        return false;
      }
    }
    return false;
  }
  bool members(int depth) {
    space();
    if (take('}')) {
      return true;
    }
    do {
      space();
      if (!string()) {
        return false;
      }
      space();
      if (!take(':') || !value(depth)) {
        return false;
      }
    } while (take(','));
    return take('}');
  }
  bool elements(int depth) {
    space();
    if (take(']')) {
      return true;
    }
    do {
      if (!value(depth)) {
        return false;
      }
    } while (take(','));
    return take(']');
  }
  bool bare(int depth) {
    if (at_ >= text_.size()) {
      return false;
    }
    switch (text_[at_]) {
      case '{':
        ++at_;
        return depth < maxDepth && members(depth + 1);
      case '[':
        ++at_;
        return depth < maxDepth && elements(depth + 1);
      case '"':
        return string();
      case 't':
        return takeWord("true");
      case 'f':
        return takeWord("false");
      case 'n':
        return takeWord("null");
      default:
        return number();
    }
  }
  bool value(int depth) {
    space();
    if (!bare(depth)) {
      return false;
    }
    space();
    return true;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

using Random = std::mt19937_64;

std::string randomString(Random& random) {
  static constexpr std::array pieces = {"a",
                                        "zone",
                                        "7",
                                        "1e12345678901",
                                        "-1.5",
                                        "true",
                                        "\\n",
                                        "\\\"",
                                        "\\u0041",
                                        "\\uD83D\\uDE00",
                                        "\xC3\xA9",
                                        " ",
                                        "\xE2\x82\xAC",
                                        "\xF0\x9F\x98\x80",
                                        "\\\\",
                                        "/"};
  std::string text = "\"";
  for (auto count = random() % 4; count != 0; --count) {
    text += pieces[random() % pieces.size()];
  }
  return text + '"';
}

// A valid document.
std::string randomValue(Random& random, int depth) {
  static constexpr std::array numbers = {
      "0",        "-0",           "7",           "-12",           "0.5",
      "1e5",      "-1.25E-3",     "1e999999999", "1E+2147483648", "-0e-99999999999999999999",
      "0e123456", "1e0000000001", "1.5e1234567", "123456789e123", "123456789012345678901234567890"};
  static constexpr std::array keys = {"\"a\"", "\"b\"", "\"Zone\"", "\"Point\"", "\"\"", "\"a.b\"", "\"1\""};
  static constexpr std::array spaces = {"", " ", "\n", "\t\r\n "};
  const auto space = [&random] { return std::string(spaces[random() % spaces.size()]); };
  std::string text;
  switch (random() % (depth < 6 ? 8 : 5)) {
    case 0:
      text = "true";
      break;
    case 1:
      text = "false";
      break;
    case 2:
      text = "null";
      break;
    case 3:
      text = numbers[random() % numbers.size()];
      break;
    case 4:
      text = randomString(random);
      break;
    case 5: {
      text = "[";
      for (auto count = random() % 4, i = count; i != 0; --i) {
        text += (i == count ? "" : ",") + randomValue(random, depth + 1);
      }
      text += space() + "]";
      break;
    }
    default: {
      text = "{";
      for (auto count = random() % 5, i = count; i != 0; --i) {
        text += (i == count ? "" : ",") + space() + keys[random() % keys.size()] + space() + ":" +
                randomValue(random, depth + 1);
      }
      text += space() + "}";
    }
  }
  return space() + text + space();
}

void damage(std::string& text, Random& random) {
  static constexpr std::string_view bytes =
      "{}[]:,\"\\ \n0123456789-+.eEtfnu/x\x01\x1F\x7F\x80\xBF\xC2\xE0\xED\xF0\xF4\xFF";
  const auto place = [&] { return static_cast<std::size_t>(random() % (text.size() + 1)); };
  for (auto count = 1 + random() % 2; count != 0; --count) {
    const std::size_t at = place();
    switch (random() % 4) {
      case 0:
        text.insert(at, 1, bytes[random() % bytes.size()]);
        break;
      case 1:
        text.erase(at, 1 + random() % 2);
        break;
      case 2:
        if (at < text.size()) {
          text[at] = bytes[random() % bytes.size()];
        }
        break;
      default:
        text.insert(at, text.substr(place(), random() % 5));
    }
  }
}

bool reads(const std::string& text) {
  std::istringstream in(text);
  SettingsManager settings;
  return settings.loadStream(in, SettingsManager::JSON);
}

TEST(JsonRandom, ValidDocumentsAreReadAndWrittenBackUnchanged) {
  Random random(1);
  for (int i = 0; i < 3000; ++i) {
    const std::string text = randomValue(random, 0);
    ASSERT_TRUE(Recogniser(text).isDocument()) << text;
    SettingsManager settings;
    loadText(settings, text);
    const std::string saved = saveText(settings);
    EXPECT_TRUE(Recogniser(saved).isDocument()) << saved;
    SettingsManager again;
    loadText(again, saved);
    ASSERT_EQ(saveText(again), saved) << text;
  }
}

TEST(JsonRandom, DamagedDocumentsAreReadExactlyWhenTheyAreStillJson) {
  Random random(2);
  int stillValid = 0;
  int broken = 0;
  for (int i = 0; i < 40000; ++i) {
    std::string text = randomValue(random, 3);
    damage(text, random);
    const bool expected = Recogniser(text).isDocument();
    (expected ? stillValid : broken) += 1;
    ASSERT_EQ(reads(text), expected) << '\'' << text << '\'';
  }
  EXPECT_GT(stillValid, 2000);
  EXPECT_GT(broken, 10000);
}

TEST(JsonRandom, EveryPieceOfTwoAndThreeBytesInsideAStringIsJudgedByItsUtf8) {
  static constexpr std::string_view edges =
      "\x20\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xFF";
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string text = {'"', static_cast<char>(first), static_cast<char>(second), '"'};
      ASSERT_EQ(reads(text), Recogniser(text).isDocument()) << first << ' ' << second;
    }
  }
  for (int first = 0xE0; first < 0xF8; ++first) {
    for (const char second : edges) {
      for (const char third : edges) {
        const std::string three = {'"', static_cast<char>(first), second, third, '"'};
        ASSERT_EQ(reads(three), Recogniser(three).isDocument()) << ::testing::PrintToString(three);
        for (const char fourth : {'\x20', '\x7F', '\x80', '\xBF', '\xC0'}) {
          const std::string four = {'"', static_cast<char>(first), second, third, fourth, '"'};
          ASSERT_EQ(reads(four), Recogniser(four).isDocument()) << ::testing::PrintToString(four);
        }
      }
    }
  }
}

TEST(JsonRandom, EveryPrefixOfADocumentIsRefused) {
  Random random(3);
  for (int i = 0; i < 300; ++i) {
    const std::string text = "{\"a\":" + randomValue(random, 2) + "}";
    for (std::size_t size = 0; size < text.size(); ++size) {
      ASSERT_FALSE(reads(text.substr(0, size))) << '\'' << text.substr(0, size) << '\'';
    }
  }
}

}  // namespace
}  // namespace orvantis
