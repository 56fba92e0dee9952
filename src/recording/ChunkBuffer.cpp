#include "recording/ChunkBuffer.h"

#include <algorithm>
#include <string>

#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

constexpr std::size_t leastRoom = 64;  // above 0, so that doubling makes it grow
constexpr std::uint64_t MIB = 1U << 20U;

const Decoder& decoderFor(const Decoders& decoders, const CompressedChunk& chunk) {
  const Decoder* decoder = nullptr;
  if (chunk.compression == "lz4") {
    decoder = &decoders.lz4;
  } else if (chunk.compression == "zstd") {
    decoder = &decoders.zstd;
  } else if (chunk.compression == "bz2") {
    decoder = &decoders.bzip2;
  } else {
    throw ReadError(atByte(chunk.place), "a chunk is compressed with \"" + printable(chunk.compression) +
                                             "\"; lz4, zstd and bz2 can be read");
  }
  if (!*decoder) {
    throw ReadError(atByte(chunk.place), "a chunk is compressed with " + std::string(chunk.compression) +
                                             ", which this build cannot read");
  }
  return *decoder;
}

// The most bytes that a chunk may unfold to. A chunk that is cut off gives fewer than it claims.
std::uint64_t mostFrom(const CompressedChunk& chunk) {
  const std::uint64_t limit = unfoldedLimit(chunk.bytes.size());
  if (chunk.unfoldedSize > limit && !chunk.isCutOff) {
    throw ReadError(atByte(chunk.place), "a chunk of " + std::to_string(chunk.bytes.size()) +
                                             " bytes claims to unfold to " +
                                             std::to_string(chunk.unfoldedSize) + "; at most " +
                                             std::to_string(limit) + " are allowed");
  }
  return std::min(chunk.unfoldedSize, limit);
}

void check(const Unfolded& unfolded, const CompressedChunk& chunk, std::uint64_t most) {
  const auto fail = [&](const std::string& reason) {
    throw ReadError(atByte(chunk.place), "a chunk is damaged: " + reason);
  };
  if (unfolded.ending == Unfolding::damaged) {
    fail(std::string(chunk.compression) + " says: " + printable(unfolded.reason));
  }
  if (unfolded.ending == Unfolding::full || unfolded.size > most) {
    fail("it unfolds to more than the " + std::to_string(most) + " bytes that it may");
  }
  if (chunk.isCutOff) {
    return;
  }
  if (unfolded.ending == Unfolding::cutOff) {
    fail("its " + std::string(chunk.compression) + " data end too early");
  }
  if (unfolded.size < chunk.unfoldedSize) {
    fail("it unfolds to " + std::to_string(unfolded.size) + " bytes and claims " +
         std::to_string(chunk.unfoldedSize));
  }
}

}  // namespace

std::uint64_t unfoldedLimit(std::uint64_t compressedSize) {
  constexpr std::uint64_t ratio = 64;
  constexpr std::uint64_t most = 1024 * MIB;
  return std::clamp(std::min(compressedSize, most) * ratio, 64 * MIB, most);
}

std::span<const std::byte> ChunkBuffer::unfold(const CompressedChunk& chunk) {
  const Decoder& decoder = decoderFor(decoders_, chunk);
  const auto most = static_cast<std::size_t>(mostFrom(chunk));
  if (chunk.bytes.empty() && (most == 0 || chunk.isCutOff)) {
    return {};
  }
  // One byte more than allowed, so that a chunk that is too large differs from one that fits exactly.
  std::size_t size = std::min(most + 1, std::max({room_.size(), 4 * chunk.bytes.size(), leastRoom}));
  while (true) {
    if (room_.size() < size) {
      room_.clear();  // so that its old content is not copied
      room_.resize(size);
    }
    const Unfolded unfolded = decoder(chunk.bytes, std::span(room_).first(size));
    if (unfolded.ending == Unfolding::full && size <= most) {
      size = std::min(most + 1, 2 * size);
      continue;
    }
    check(unfolded, chunk, most);
    return std::span<const std::byte>(room_).first(unfolded.size);
  }
}

}  // namespace orvantis::toolkit
