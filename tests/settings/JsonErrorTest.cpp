#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

namespace orvantis {
namespace {

std::string errorOf(const std::string& json) {
  std::istringstream in(json);
  SettingsManager settings;
  EXPECT_FALSE(settings.loadStream(in, SettingsManager::JSON)) << json;
  return settings.getLoadError();
}

// The text of the error starts with the place: line and column of the first character that is wrong.
void expectErrorAt(int line, int column, const std::string& json, const std::string& reason = "") {
  const std::string place =
      "JSON error in line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
  const std::string error = errorOf(json);
  EXPECT_EQ(error.substr(0, place.size()), place) << json.substr(0, 200);
  EXPECT_GT(error.size(), place.size()) << "no reason is given";
  if (!reason.empty()) {
    EXPECT_EQ(error, place + reason);
  }
}

TEST(JsonError, NamesTheLineAndColumnOfTheWrongCharacter) {
  expectErrorAt(1, 1, "x");
  expectErrorAt(1, 3, "  x");
  expectErrorAt(2, 1, "\nx");
  expectErrorAt(1, 7, R"({"a": x})");
  expectErrorAt(3, 8, "{\n  \"a\": 1,\n  \"b\": }\n");
  expectErrorAt(3, 1, "[\n  1,\n]\n");
  expectErrorAt(2, 7, "{\n  \"a\" 1}");
  expectErrorAt(1, 3, "[01]");
  expectErrorAt(1, 2, "[+1]");
  expectErrorAt(1, 5, "[1, ]");
  expectErrorAt(1, 4, "[1 2]");
}

TEST(JsonError, CountsLinesByLineFeedsAndColumnsByCharacters) {
  expectErrorAt(3, 2, "\r\n\r\n x");
  expectErrorAt(1, 3, "\r\rx");
  expectErrorAt(1, 3, "\t\tx");
  expectErrorAt(1, 7, "[\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\"x]");
  expectErrorAt(1, 1, "\xEF\xBB\xBFx");
}

TEST(JsonError, ADocumentThatEndsTooEarlySaysSoAtItsEnd) {
  expectErrorAt(1, 1, "", "the document ends too early");
  expectErrorAt(3, 1, "\n\n", "the document ends too early");
  expectErrorAt(1, 7, "{\"a\": ", "the document ends too early");
  expectErrorAt(2, 3, "[\n1,", "the document ends too early");
  expectErrorAt(1, 5, "\"abc", "the document ends too early");
}

TEST(JsonError, TextAfterTheDocumentSaysSoAtThatText) {
  expectErrorAt(1, 4, "{} x", "text after the document");
  expectErrorAt(2, 1, "{}\n{}", "text after the document");
  expectErrorAt(1, 3, "[]]", "text after the document");
  expectErrorAt(1, 3, "1 2", "text after the document");
}

TEST(JsonError, NestingBeyondTheLimitSaysSo) {
  expectErrorAt(1, 65, std::string(65, '['), "nested deeper than 64 levels");
  expectErrorAt(1, 65, std::string(100000, '['), "nested deeper than 64 levels");
}

TEST(JsonError, ThePlaceIsRightAcrossTheBlocksOfALongText) {
  const std::string line(99, ' ');
  std::string text = "[\n";
  for (int i = 0; i < 3000; ++i) {
    text += line + "\n";
  }
  expectErrorAt(3002, 1, text + "x");
  expectErrorAt(3002, 4, text + "1, x");
  expectErrorAt(1, 200002, "[" + std::string(200000, ' ') + "x");
  std::string letters = "[\"";
  for (int i = 0; i < 50000; ++i) {
    letters += "\xC3\xA9";
  }
  expectErrorAt(1, 50004, letters + "\"x");
}

}  // namespace
}  // namespace orvantis
