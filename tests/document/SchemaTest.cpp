#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "document/KeyTable.h"
#include "document/Schema.h"
#include "text/PrettyJson.h"

// The installed schema is what the table of keys gives. After a wanted change, run the test once with
// UPDATE_GOLDEN=1 and look at what changed.

namespace orvantis::toolkit {
namespace {

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(Schema, TheInstalledOneIsMadeFromTheTableOfKeys) {
  const std::string path = ORVANTIS_SOURCE_DIR "/share/zone-detector.schema.json";
  const std::string text = toPrettyJson(schema());
  if (std::getenv("UPDATE_GOLDEN") != nullptr) {
    std::ofstream(path, std::ios::binary) << text;
    GTEST_SKIP() << "wrote " << path;
  }
  EXPECT_EQ(readAll(path), text);
}

TEST(Schema, EveryKeyIsDescribedHereAndInTheDocumentation) {
  const std::string page = readAll(ORVANTIS_SOURCE_DIR "/docs/document.md");
  for (int kind = 0; kind <= static_cast<int>(ObjectKind::Line); ++kind) {
    for (const Key& key : keysOf(static_cast<ObjectKind>(kind))) {
      EXPECT_FALSE(key.description.empty()) << key.name;
      EXPECT_NE(page.find(std::string(key.name)), std::string::npos) << key.name;
    }
  }
}

}  // namespace
}  // namespace orvantis::toolkit
