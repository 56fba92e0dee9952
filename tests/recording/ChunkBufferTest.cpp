#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "Compressors.h"
#include "recording/ChunkBuffer.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

constexpr std::uint64_t MIB = 1024 * 1024;

CompressedChunk chunkOf(const std::string& bytes, std::uint64_t unfoldedSize,
                        const char* compression = "zstd") {
  return {compression, testing::viewOf(bytes), unfoldedSize, false, 123};
}

// "byte 123: reason", or nothing when the chunk is read.
std::string refusal(ChunkBuffer& buffer, const CompressedChunk& chunk) {
  try {
    buffer.unfold(chunk);
  } catch (const ReadError& error) {
    return toText(error.place()) + ": " + error.what();
  }
  return "";
}

// A decoder that unfolds everything to one size, and notes the room that it was given.
struct Measured {
  std::uint64_t size;
  std::vector<std::size_t> rooms;

  Decoders decoders() {
    Decoders decoders;
    decoders.zstd = [this](std::span<const std::byte>, std::span<std::byte> room) {
      rooms.push_back(room.size());
      return Unfolded{size <= room.size() ? Unfolding::complete : Unfolding::full,
                      static_cast<std::size_t>(std::min<std::uint64_t>(size, room.size())),
                      {}};
    };
    return decoders;
  }
};

TEST(UnfoldedLimit, IsAFactorBetweenTwoSizes) {
  EXPECT_EQ(unfoldedLimit(0), 64 * MIB);
  EXPECT_EQ(unfoldedLimit(MIB), 64 * MIB);
  EXPECT_EQ(unfoldedLimit(MIB + 1), 64 * MIB + 64);
  EXPECT_EQ(unfoldedLimit(16 * MIB - 1), 1024 * MIB - 64);
  EXPECT_EQ(unfoldedLimit(16 * MIB), 1024 * MIB);
  EXPECT_EQ(unfoldedLimit(UINT64_MAX), 1024 * MIB);
}

TEST(ChunkBuffer, GivesTheContentOfEachKind) {
  ChunkBuffer buffer(builtInDecoders());
  const std::string text = "some records " + std::string(5000, '.');
  EXPECT_EQ(testing::textOf(buffer.unfold(chunkOf(testing::zstdOf(text), text.size()))), text);
  EXPECT_EQ(testing::textOf(buffer.unfold(chunkOf(testing::lz4Of(text), text.size(), "lz4"))), text);
  EXPECT_EQ(testing::textOf(buffer.unfold(chunkOf(testing::bzip2Of(text), text.size(), "bz2"))), text);
  EXPECT_EQ(testing::textOf(buffer.unfold(chunkOf(testing::zstdOf(""), 0))), "");
  EXPECT_EQ(testing::textOf(buffer.unfold(chunkOf("", 0))), "");
}

TEST(ChunkBuffer, ReadsHighRatios) {
  ChunkBuffer buffer(builtInDecoders());
  const std::string zeros(20 * MIB, '\0');
  const std::string compressed = testing::zstdOf(zeros);
  EXPECT_LT(compressed.size(), zeros.size() / 5000);
  EXPECT_EQ(buffer.unfold(chunkOf(compressed, zeros.size())).size(), zeros.size());
}

TEST(ChunkBuffer, TakesMemoryForWhatComesOutAndNotForWhatIsClaimed) {
  Measured measured{2500, {}};
  ChunkBuffer buffer(measured.decoders());
  EXPECT_EQ(refusal(buffer, chunkOf(std::string(100, 'c'), 50 * MIB)),
            "byte 123: a chunk is damaged: it unfolds to 2500 bytes and claims 52428800");
  EXPECT_EQ(measured.rooms, (std::vector<std::size_t>{400, 800, 1600, 3200}));
  // The next one begins with what the last one needed, and no more than it claims, and one byte.
  measured = {3000, {}};
  EXPECT_EQ(buffer.unfold(chunkOf(std::string(100, 'c'), 3000)).size(), 3000U);
  EXPECT_EQ(measured.rooms, (std::vector<std::size_t>{3001}));
}

TEST(ChunkBuffer, RefusesMoreThanIsClaimed) {
  Measured measured{1'000'000, {}};
  ChunkBuffer buffer(measured.decoders());
  EXPECT_EQ(refusal(buffer, chunkOf(std::string(100, 'c'), 1000)),
            "byte 123: a chunk is damaged: it unfolds to more than the 1000 bytes that it may");
  EXPECT_EQ(measured.rooms, (std::vector<std::size_t>{400, 800, 1001}));
  ChunkBuffer real(builtInDecoders());
  EXPECT_EQ(refusal(real, chunkOf(testing::lz4Of(std::string(5000, 'a')), 4999, "lz4")),
            "byte 123: a chunk is damaged: it unfolds to more than the 4999 bytes that it may");
  EXPECT_EQ(refusal(real, chunkOf(testing::lz4Of(std::string(5000, 'a')), 0, "lz4")),
            "byte 123: a chunk is damaged: it unfolds to more than the 0 bytes that it may");
}

TEST(ChunkBuffer, RefusesClaimsBeyondTheLimitBeforeItUnfolds) {
  Measured measured{10, {}};
  ChunkBuffer buffer(measured.decoders());
  EXPECT_EQ(refusal(buffer, chunkOf("ten bytes.", 64 * MIB + 1)),
            "byte 123: a chunk of 10 bytes claims to unfold to 67108865; at most 67108864 are allowed");
  EXPECT_EQ(
      refusal(buffer, chunkOf("ten bytes.", UINT64_MAX)),
      "byte 123: a chunk of 10 bytes claims to unfold to 18446744073709551615; at most 67108864 are allowed");
  EXPECT_TRUE(measured.rooms.empty());
}

TEST(ChunkBuffer, GivesWhatIsThereOfAChunkThatIsCutOff) {
  std::string text(300'000, ' ');
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char>('a' + i * i % 23);
  }
  const std::string compressed = testing::lz4Of(text);
  ChunkBuffer buffer(builtInDecoders());
  CompressedChunk chunk = chunkOf(compressed, text.size(), "lz4");
  chunk.bytes = chunk.bytes.first(compressed.size() - 10);
  EXPECT_EQ(refusal(buffer, chunk), "byte 123: a chunk is damaged: its lz4 data end too early");
  chunk.isCutOff = true;
  const std::string part = testing::textOf(buffer.unfold(chunk));
  EXPECT_GE(part.size(), 65'536U);
  EXPECT_EQ(part, text.substr(0, part.size()));
  chunk.bytes = {};
  EXPECT_TRUE(buffer.unfold(chunk).empty());
  // What it claims may be right, though little of it is there.
  chunk.bytes = testing::viewOf(compressed).first(compressed.size() - 10);
  chunk.unfoldedSize = 65 * MIB;
  EXPECT_EQ(buffer.unfold(chunk).size(), part.size());
}

TEST(ChunkBuffer, MayHaveNoBytesAtAll) {
  for (const char* compression : {"lz4", "zstd", "bz2"}) {
    ChunkBuffer buffer(builtInDecoders());
    EXPECT_EQ(refusal(buffer, chunkOf("", 300, compression)),
              std::string("byte 123: a chunk is damaged: its ") + compression + " data end too early");
    EXPECT_EQ(refusal(buffer, chunkOf("", 0, compression)), "");
  }
}

TEST(ChunkBuffer, SaysWhyAChunkCannotBeRead) {
  ChunkBuffer buffer(builtInDecoders());
  EXPECT_EQ(refusal(buffer, chunkOf("x", 1, "brotli\x1b")),
            "byte 123: a chunk is compressed with \"brotli\\x1b\"; lz4, zstd and bz2 can be read");
  EXPECT_EQ(refusal(buffer, chunkOf("not compressed", 14, "lz4")),
            "byte 123: a chunk is damaged: lz4 says: ERROR_frameType_unknown");
  EXPECT_EQ(refusal(buffer, chunkOf("not compressed", 14)),
            "byte 123: a chunk is damaged: zstd says: Unknown frame descriptor");
  EXPECT_EQ(refusal(buffer, chunkOf("not compressed", 14, "bz2")),
            "byte 123: a chunk is damaged: bz2 says: not a bzip2 stream");
  ChunkBuffer without{Decoders()};
  EXPECT_EQ(refusal(without, chunkOf("x", 1, "lz4")),
            "byte 123: a chunk is compressed with lz4, which this build cannot read");
}

}  // namespace
}  // namespace orvantis::toolkit
