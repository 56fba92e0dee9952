#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/Settings.h"

namespace orvantis {
namespace {

using testing::loadText;
using testing::saveText;

struct File {
  std::string name;
  std::string text;

  friend std::ostream& operator<<(std::ostream& out, const File& file) { return out << file.name; }
};

std::vector<File> filesOf(const std::string& group) {
  std::vector<File> files;
  const std::filesystem::path folder = std::string(ORVANTIS_SOURCE_DIR) + "/tests/data/json/" + group;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream in(entry.path(), std::ios::binary);
    files.push_back({entry.path().stem().string(), {std::istreambuf_iterator<char>(in), {}}});
  }
  std::ranges::sort(files, {}, &File::name);
  return files;
}

// Files that would be unpleasantly large in the folder.
std::vector<File> generated(const std::string& group) {
  const auto repeated = [](int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) {
      all += text;
    }
    return all;
  };
  if (group == "accept") {
    return {{"generated-array-of-100000", "[1" + repeated(99999, ",1") + "]"},
            {"generated-string-of-a-million", '"' + std::string(1000000, 's') + '"'},
            {"generated-number-of-100000-digits", std::string(100000, '9')},
            {"generated-escapes", '"' + repeated(50000, R"(\uD83D\uDE00\n)") + '"'},
            {"generated-space", std::string(300000, ' ') + "{}" + std::string(300000, '\n')},
            {"generated-repeated-keys", "{\"a\":0" + repeated(50000, ",\"a\":0") + "}"}};
  }
  return {{"generated-arrays-100000-deep", repeated(100000, "[")},
          {"generated-arrays-100000-deep-closed", repeated(100000, "[") + repeated(100000, "]")},
          {"generated-objects-100000-deep", repeated(100000, "{\"a\":")},
          {"generated-mixed-100000-deep", repeated(100000, "[{\"a\":")},
          {"generated-closing-100000", repeated(100000, "]")},
          {"generated-space-then-nothing", std::string(300000, ' ')},
          {"generated-string-not-closed", '"' + std::string(300000, 's')},
          {"generated-minus-signs", std::string(100000, '-')},
          {"generated-text-long-after", "{}" + std::string(300000, ' ') + "x"},
          {"generated-bad-utf8-late", '"' + std::string(300000, 's') + "\xFF\""}};
}

std::string readError(const std::string& text) {
  std::istringstream in(text);
  SettingsManager settings;
  return settings.loadStream(in, SettingsManager::JSON) ? "" : settings.getLoadError();
}

// The reader works in blocks; wherever a block ends, the verdict has to be the same.
void expectTheSameVerdictAtEveryBlockEnd(const File& file, bool accepted) {
  constexpr std::size_t blockSize = 16384;
  std::string text = file.text;
  if (text.size() > blockSize) {
    return;  // it has block ends of its own
  }
  std::string mark;
  if (text.starts_with("\xEF\xBB\xBF")) {
    mark = text.substr(0, 3);
    text.erase(0, 3);
  }
  for (std::size_t before = 1; before <= std::min<std::size_t>(text.size(), 24); ++before) {
    const std::string padded = mark + std::string(blockSize - mark.size() - before, ' ') + text;
    EXPECT_EQ(readError(padded).empty(), accepted) << before << " bytes before the end of a block";
  }
}

class JsonAccept : public ::testing::TestWithParam<File> {};

TEST_P(JsonAccept, IsReadAndWrittenBackUnchanged) {
  const std::string& text = GetParam().text;
  SettingsManager settings;
  loadText(settings, text);
  const std::string saved = saveText(settings);
  SettingsManager again;
  loadText(again, saved);
  EXPECT_EQ(saveText(again), saved);
  expectTheSameVerdictAtEveryBlockEnd(GetParam(), true);
}

class JsonRefuse : public ::testing::TestWithParam<File> {};

TEST_P(JsonRefuse, IsRefusedWithAPlaceAndKeepsTheDocument) {
  SettingsManager settings;
  loadText(settings, R"({"kept": {"x": 1}})");
  settings.pathPush("kept");
  std::istringstream in(GetParam().text);
  EXPECT_FALSE(settings.loadStream(in, SettingsManager::JSON));
  EXPECT_EQ(settings.getLoadError().rfind("JSON error in line ", 0), 0U) << settings.getLoadError();
  EXPECT_EQ(settings.get<int>("x"), 1);
  expectTheSameVerdictAtEveryBlockEnd(GetParam(), false);
}

class JsonEither : public ::testing::TestWithParam<File> {};

TEST_P(JsonEither, IsAnsweredTheSameEverywhereAndWrittenBackWhenRead) {
  const bool accepted = readError(GetParam().text).empty();
  expectTheSameVerdictAtEveryBlockEnd(GetParam(), accepted);
  if (accepted) {
    SettingsManager settings;
    loadText(settings, GetParam().text);
    SettingsManager again;
    loadText(again, saveText(settings));
    EXPECT_TRUE(again.getTree() == settings.getTree());
  }
}

std::string nameOf(const ::testing::TestParamInfo<File>& info) {
  std::string name = info.param.name;
  std::ranges::replace(name, '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(File, JsonAccept, ::testing::ValuesIn(filesOf("accept")), nameOf);
INSTANTIATE_TEST_SUITE_P(Generated, JsonAccept, ::testing::ValuesIn(generated("accept")), nameOf);
INSTANTIATE_TEST_SUITE_P(File, JsonRefuse, ::testing::ValuesIn(filesOf("refuse")), nameOf);
INSTANTIATE_TEST_SUITE_P(Generated, JsonRefuse, ::testing::ValuesIn(generated("refuse")), nameOf);
INSTANTIATE_TEST_SUITE_P(File, JsonEither, ::testing::ValuesIn(filesOf("either")), nameOf);

}  // namespace
}  // namespace orvantis
