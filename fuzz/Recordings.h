#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "Check.h"
#include "Frames.h"
#include "files/ByteSource.h"
#include "recording/ReadError.h"
#include "recording/RecordingReader.h"

namespace orvantis::fuzz {

/// Gives every range in its own memory of exactly that size, so that a sanitizer finds reads beyond it, and
/// reads after it has become invalid.
class StrictSource final : public toolkit::ByteSource {
 public:
  explicit StrictSource(std::span<const std::byte> bytes) : memory_(bytes) {}

  std::optional<std::uint64_t> size() const override { return memory_.size(); }
  std::span<const std::byte> bytes(std::uint64_t offset, std::uint64_t count) override {
    const auto range = memory_.bytes(offset, count);
    copy_ = std::make_unique<std::byte[]>(range.size());
    std::copy(range.begin(), range.end(), copy_.get());
    return {copy_.get(), range.size()};
  }

 private:
  toolkit::MemorySource memory_;
  std::unique_ptr<std::byte[]> copy_;
};

/// The decoders, which also note the most bytes that came out of one chunk.
class NotingDecoders {
 public:
  toolkit::Decoders decoders() {
    toolkit::Decoders decoders = toolkit::builtInDecoders();
    for (toolkit::Decoder* decoder : {&decoders.lz4, &decoders.zstd, &decoders.bzip2}) {
      *decoder = [this, inner = *decoder](std::span<const std::byte> compressed, std::span<std::byte> room) {
        const toolkit::Unfolded unfolded = inner(compressed, room);
        most_ = std::max(most_, unfolded.size);
        return unfolded;
      };
    }
    return decoders;
  }
  std::size_t most() const { return most_; }

 private:
  std::size_t most_ = 0;
};

inline void checkReason(const std::string& reason) {
  ORVANTIS_FUZZ_CHECK(!reason.empty());
  ORVANTIS_FUZZ_CHECK(
      std::none_of(reason.begin(), reason.end(), [](unsigned char c) { return c < 0x20U || c == 0x7FU; }));
}

/// How many clouds and points the bytes have, and the fault with a place inside of the bytes.
struct RecordingOutcome {
  std::size_t clouds = 0;
  std::size_t points = 0;
  std::string fault;

  bool operator==(const RecordingOutcome&) const = default;
};

inline RecordingOutcome readAll(toolkit::ByteSource& source, const toolkit::RecordingOptions& options,
                                std::uint64_t size, bool isWhole) {
  RecordingOutcome outcome;
  const auto note = [&](std::uint64_t byte, const std::string& reason) {
    checkReason(reason);
    // For a file that is compressed as a whole, the place is in the unfolded bytes.
    ORVANTIS_FUZZ_CHECK(byte <= size || !isWhole);
    outcome.fault = std::to_string(byte) + reason;
  };
  try {
    toolkit::RecordingReader reader(source, options);
    while (const auto cloud = reader.next()) {
      ++outcome.clouds;
      outcome.points += pointsOf(cloud->points).size();
      ORVANTIS_FUZZ_CHECK(cloud->place < size || !isWhole);
      ORVANTIS_FUZZ_CHECK(sizeOf(cloud->points) == std::uint64_t{cloud->height} * cloud->width);
    }
    if (reader.damage()) {
      ORVANTIS_FUZZ_CHECK(outcome.clouds != 0);
      note(reader.damage()->byte, reader.damage()->reason);
    }
  } catch (const toolkit::ReadError& error) {
    note(error.place().byte, error.what());
  }
  return outcome;
}

/// Any bytes must give clouds or a refusal. Reading may use memory for four times the bytes, for a few times
/// the content of the largest chunk, and for the names of topics.
inline void checkRecording(std::span<const std::byte> bytes) {
  constexpr std::size_t names = std::size_t{34} * 1024 * 1024;
  const bool isWhole = bytes.empty() || bytes[0] != std::byte{0x28};
  NotingDecoders decoders;
  toolkit::RecordingOptions options;
  options.decoders = decoders.decoders();
  StrictSource source(bytes);
  forgetPeak();
  const RecordingOutcome outcome = readAll(source, options, bytes.size(), isWhole);
  if (isWhole) {
    ORVANTIS_FUZZ_CHECK(peakOfMemory() <= 8 * bytes.size() + 40 * decoders.most() + names);
  }
  toolkit::MemorySource memory(bytes);
  ORVANTIS_FUZZ_CHECK(readAll(memory, options, bytes.size(), isWhole) == outcome);
  try {
    const toolkit::RecordingContents contents = readContents(source, options.decoders);
    checkReason(listOf(contents.topics) + ".");
  } catch (const toolkit::ReadError& error) {
    checkReason(error.what());
  }
}

}  // namespace orvantis::fuzz
