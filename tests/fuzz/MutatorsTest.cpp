// Changed inputs keep their form: walked here in another way than where they are changed.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include "mutators/Mutators.h"

namespace {

using orvantis::fuzz::Chance;
using orvantis::fuzz::Content;
using Mutate = bool (*)(Content&, Chance&);

Content contentOf(std::string_view text) {
  return {text.begin(), text.end()};
}
std::string textOf(const Content& content) {
  return {content.begin(), content.end()};
}

std::vector<Content> seedsOf(const std::string& program) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry :
       std::filesystem::directory_iterator(ORVANTIS_SOURCE_DIR "/fuzz/seeds/" + program)) {
    paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<Content> seeds;
  for (const auto& path : paths) {
    std::ifstream in(path, std::ios::binary);
    seeds.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  return seeds;
}

constexpr unsigned numTries = 500;

// Calls `check` for many contents that were made from one. @return how many there are without repetition
template <typename Check>
std::size_t forEachChange(Mutate mutate, const Content& from, const Check& check) {
  std::set<Content> all;
  for (unsigned seed = 1; seed <= numTries; ++seed) {
    Content content = from;
    Chance chance(seed);
    SCOPED_TRACE("seed " + std::to_string(seed));
    EXPECT_TRUE(mutate(content, chance));
    check(content);
    all.insert(content);
    Content again = from;
    Chance same(seed);
    mutate(again, same);
    EXPECT_EQ(content, again);
  }
  return all.size();
}

void expectUntouched(Mutate mutate, std::string_view text) {
  for (unsigned seed = 1; seed < 20; ++seed) {
    Content content = contentOf(text);
    Chance chance(seed);
    EXPECT_FALSE(mutate(content, chance)) << text;
    EXPECT_EQ(textOf(content), text);
  }
}

template <typename Number>
Number at(const Content& content, std::size_t offset) {
  Number number{};
  std::memcpy(&number, content.data() + offset, sizeof(number));
  return number;
}

Content partOf(const Content& content, std::size_t begin, std::size_t size) {
  return {content.begin() + static_cast<std::ptrdiff_t>(begin),
          content.begin() + static_cast<std::ptrdiff_t>(begin + size)};
}

// Parts with a size in them, one after the other, and what is left behind the last whole one.
struct Walk {
  std::vector<Content> parts;
  std::size_t behind;
};

// @param sizeAt where in a part its size stands, which counts what follows
template <typename Size>
Walk walk(const Content& content, std::size_t begin, std::size_t sizeAt) {
  Walk result{{}, content.size() - begin};
  const std::size_t head = sizeAt + sizeof(Size);
  while (result.behind >= head && at<Size>(content, begin + sizeAt) <= result.behind - head) {
    const std::size_t size = head + static_cast<std::size_t>(at<Size>(content, begin + sizeAt));
    result.parts.push_back(partOf(content, begin, size));
    begin += size;
    result.behind -= size;
  }
  return result;
}
Walk walkMcap(const Content& content) {
  return walk<std::uint64_t>(content, 8, 1);
}
Walk walkBag(const Content& content) {
  return walk<std::uint32_t>(content, 13, 0);
}

bool has(const std::vector<Content>& parts, const Content& part) {
  return std::find(parts.begin(), parts.end(), part) != parts.end();
}

TEST(Mutators, KeepJson) {
  std::size_t numDocuments = 0;
  for (const std::string program : {"validate", "document", "sensors", "counter_lines"}) {
    for (const Content& seed : seedsOf(program)) {
      boost::json::error_code error;
      boost::json::parse(textOf(seed), error);
      if (error) {
        continue;
      }
      ++numDocuments;
      const std::size_t different =
          forEachChange(orvantis::fuzz::mutateJson, seed, [](const Content& content) {
            boost::json::error_code fault;
            boost::json::parse(textOf(content), fault);
            EXPECT_TRUE(!fault || fault == boost::json::error::exponent_overflow)
                << fault.message() << textOf(content);
          });
      EXPECT_GT(different, seed.size() < 100 ? 10U : 50U) << textOf(seed);
    }
  }
  EXPECT_GT(numDocuments, 10U);
  for (const char* text : {"", "{", "{\"a\":1", "[1,]", "{\"a\" 1}", "[1 2]", "\"a", "1 2", "{a:1}"}) {
    expectUntouched(orvantis::fuzz::mutateJson, text);
  }
  expectUntouched(orvantis::fuzz::mutateJson, std::string(100000, '['));
}

TEST(Mutators, RemoveRepeatAndReplaceItemsOfJson) {
  std::set<std::string> made;
  forEachChange(orvantis::fuzz::mutateJson, contentOf(R"( {"a": [1, "x,\"]"], "b":2} )"),
                [&](const Content& content) { made.insert(textOf(content)); });
  for (const char* text :
       {R"( {"b":2} )", R"( {"a": [1, "x,\"]"]} )", R"( {"a": ["x,\"]"], "b":2} )", R"( {"a": [1], "b":2} )",
        R"( {"a": [1,1, "x,\"]"], "b":2} )", R"( {"a": [1, "x,\"]"], "b":2,"b":2} )", R"( {"a": 2, "b":2} )",
        R"( {"a": [1, "x,\"]"], "b":[1, "x,\"]"]} )", R"( 1e309 )", R"( {"a": [1, "nan"], "b":2} )"}) {
    EXPECT_TRUE(made.count(text)) << text;
  }
}

TEST(Mutators, ChangeLinesAndFieldsOfText) {
  std::set<std::string> made;
  const std::string tail("\x01\x00\xFF 7 8\n", 8);
  forEachChange(orvantis::fuzz::mutateLines, contentOf("a b\n1 2\nhalf" + tail), [&](const Content& content) {
    made.insert(textOf(content));
    EXPECT_TRUE(textOf(content).ends_with("half" + tail)) << textOf(content);
  });
  for (const char* head : {"1 2\n", "a b\n", "1 2\na b\n", "a b\na b\n1 2\n", "a b\n2 2\n", "a b\n 2\n",
                           "a b\nnan 2\n", "a 1e309\n1 2\n"}) {
    EXPECT_TRUE(made.count(std::string(head) + "half" + tail)) << head;
  }
  expectUntouched(orvantis::fuzz::mutateLines, "");
  expectUntouched(orvantis::fuzz::mutateLines, "\x80 1 2\n");
}

TEST(Mutators, ChangeTheDocumentOrTheTracksOfASession) {
  std::set<std::string> documents;
  std::set<std::string> tracks;
  forEachChange(orvantis::fuzz::mutateSession, contentOf(std::string("[1]\0a b\n", 8)),
                [&](const Content& content) {
                  const std::string text = textOf(content);
                  const std::size_t middle = text.find('\0');
                  ASSERT_NE(middle, std::string::npos);
                  documents.insert(text.substr(0, middle));
                  tracks.insert(text.substr(middle + 1));
                  EXPECT_TRUE(text.substr(0, middle) == "[1]" || text.substr(middle + 1) == "a b\n");
                });
  EXPECT_TRUE(documents.count("[1,1]") && documents.count("[]"));
  EXPECT_TRUE(tracks.count("a b\na b\n") && tracks.count("b b\n"));
  expectUntouched(orvantis::fuzz::mutateSession, "[1]");
}

TEST(Mutators, KeepTheRecordsOfMcap) {
  std::size_t numFiles = 0;
  std::size_t numChangedChunks = 0;
  for (const Content& seed : seedsOf("mcap")) {
    if (seed[0] != 0x89) {
      continue;  // compressed as a whole
    }
    ++numFiles;
    const Walk before = walkMcap(seed);
    EXPECT_EQ(before.behind, 8U);
    const auto check = [&](const Content& content) {
      const Walk after = walkMcap(content);
      EXPECT_EQ(after.behind, 8U);
      for (const Content& record : after.parts) {
        constexpr std::uint8_t chunk = 6;
        if (record[0] == chunk && !has(before.parts, record) && record.size() >= 49 &&
            at<std::uint32_t>(record, 37) == 0) {
          ++numChangedChunks;
          EXPECT_EQ(at<std::uint64_t>(record, 25), record.size() - 49);
          EXPECT_EQ(at<std::uint32_t>(record, 33), 0U);
          EXPECT_EQ(at<std::uint64_t>(record, 41), record.size() - 49);
        }
      }
    };
    EXPECT_GT(forEachChange(orvantis::fuzz::mutateMcap, seed, check), 300U);
  }
  EXPECT_GT(numFiles, 10U);
  EXPECT_GT(numChangedChunks, 100U);
  expectUntouched(orvantis::fuzz::mutateMcap, "\x89MCAP0\r\n");
  expectUntouched(orvantis::fuzz::mutateMcap, "\x89MCAP0\r\n\x01\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
}

TEST(Mutators, KeepThePartsOfBags) {
  std::size_t numChangedChunks = 0;
  for (const Content& seed : seedsOf("bag")) {
    const Walk before = walkBag(seed);
    const auto check = [&](const Content& content) {
      EXPECT_TRUE(textOf(content).starts_with("#ROSBAG V2.0\n"));
      const Walk after = walkBag(content);
      EXPECT_EQ(after.behind, before.behind);
      for (std::size_t i = 0; i + 1 < after.parts.size(); i += 2) {
        const Content& header = after.parts[i];
        EXPECT_EQ(walk<std::uint32_t>(header, 4, 0).behind, 0U);
        const std::size_t size = textOf(header).find("size=");
        if (textOf(header).find("compression=none") != std::string::npos &&
            !has(before.parts, after.parts[i + 1]) && size + 9 <= header.size()) {
          ++numChangedChunks;
          EXPECT_EQ(at<std::uint32_t>(header, size + 5), after.parts[i + 1].size() - 4);
        }
      }
    };
    EXPECT_GT(forEachChange(orvantis::fuzz::mutateBag, seed, check), 200U);
  }
  EXPECT_GT(numChangedChunks, 50U);
  expectUntouched(orvantis::fuzz::mutateBag, "#ROSBAG V2.0\n");
  expectUntouched(orvantis::fuzz::mutateBag, "#ROSBAG V2.0\n\x01\x02\x03");
}

TEST(Mutators, ChangeOneNumberOfLas) {
  // Where each number of the header begins, and the byte behind it.
  constexpr std::size_t numbers[][2] = {
      {25, 26},   {94, 96},   {96, 100},  {100, 104}, {104, 105}, {105, 107}, {107, 111}, {131, 139},
      {139, 147}, {147, 155}, {155, 163}, {163, 171}, {171, 179}, {235, 243}, {243, 247}, {247, 255}};
  std::size_t numFiles = 0;
  for (const Content& seed : seedsOf("las")) {
    const std::size_t firstPoint = at<std::uint32_t>(seed, 96);
    if (firstPoint + 4 > seed.size()) {
      continue;
    }
    ++numFiles;
    const auto check = [&](const Content& content) {
      ASSERT_EQ(content.size(), seed.size());
      const auto first = static_cast<std::size_t>(
          std::mismatch(content.begin(), content.end(), seed.begin()).first - content.begin());
      const auto last =
          content.size() -
          static_cast<std::size_t>(std::mismatch(content.rbegin(), content.rend(), seed.rbegin()).first -
                                   content.rbegin());
      const auto isIn = [&](const auto& number) { return number[0] <= first && last <= number[1]; };
      EXPECT_TRUE(content == seed || std::any_of(std::begin(numbers), std::end(numbers), isIn) ||
                  (first >= firstPoint && last - first <= 4))
          << first << ' ' << last;
    };
    EXPECT_GT(forEachChange(orvantis::fuzz::mutateLas, seed, check), 60U);
  }
  EXPECT_EQ(numFiles, 10U);
  expectUntouched(orvantis::fuzz::mutateLas, std::string(226, 'a'));
}

TEST(Mutators, KeepWholeFloats) {
  for (const Content& seed : seedsOf("records")) {
    if (seed.size() < 5) {
      continue;
    }
    EXPECT_GT(forEachChange(orvantis::fuzz::mutateFloats, seed,
                            [&](const Content& content) {
                              EXPECT_EQ(content.size() % 4, seed.size() % 4);
                              EXPECT_EQ(content[0], seed[0]);
                            }),
              20U);
  }
  expectUntouched(orvantis::fuzz::mutateFloats, "abcd");
}

}  // namespace
