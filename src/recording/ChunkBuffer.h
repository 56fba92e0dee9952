#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "recording/Decoders.h"

namespace orvantis::toolkit {

/// The most bytes that compressed bytes may unfold to. Recorders write chunks of about a megabyte, and one
/// message may be some tens: up to 64 MiB any ratio is read, for a frame without returns is nearly nothing
/// when compressed. Above that a ratio of 64 is allowed, far more than the coordinates of points ever give,
/// and never more than 1 GiB. So a file of a few bytes cannot fill the memory.
/// @throws nothing
std::uint64_t unfoldedLimit(std::uint64_t compressedSize);

/// A chunk of a recording as its header describes it.
struct CompressedChunk {
  std::string_view compression;  ///< "lz4", "zstd" or "bz2"
  std::span<const std::byte> bytes;
  std::uint64_t unfoldedSize = 0;  ///< as the header claims
  bool isCutOff = false;           ///< the file ends within the bytes
  std::uint64_t place = 0;         ///< where the chunk's record begins
};

/// Unfolds one chunk after the other into the same memory.
class ChunkBuffer {
 public:
  explicit ChunkBuffer(Decoders decoders) : decoders_(std::move(decoders)) {}

  /// The chunk's content, valid until the next call. Of a chunk that is cut off, as much as comes out.
  ///
  /// The claimed size is a limit only: memory grows with what comes out, and only as much is taken at first
  /// as coordinates commonly need, or the chunk before needed.
  /// @throws ReadError for a compression that is not known or not in this build, a chunk that claims or gives
  ///         too much, gives another size than it claims, or is damaged
  std::span<const std::byte> unfold(const CompressedChunk& chunk);

 private:
  Decoders decoders_;
  std::vector<std::byte> room_;
};

}  // namespace orvantis::toolkit
