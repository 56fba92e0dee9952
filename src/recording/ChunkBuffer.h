#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "recording/Decoders.h"

namespace orvantis::toolkit {

/// The most bytes that compressed bytes may unfold to, so that a file of a few bytes cannot fill the memory.
/// Recorders write chunks of about a megabyte, and one message may have some tens of megabytes. Up to 64 MiB
/// any ratio is allowed, because a frame without returns compresses to almost nothing. Above that, a ratio of
/// 64 is allowed, which is far more than coordinates of points give, but never more than 1 GiB. Throws
/// nothing.
std::uint64_t unfoldedLimit(std::uint64_t compressedSize);

/// A chunk of a recording as its header describes it.
struct CompressedChunk {
  std::string_view compression;  ///< "lz4", "zstd" or "bz2"
  std::span<const std::byte> bytes;
  std::uint64_t unfoldedSize = 0;  ///< as the header claims
  bool isCutOff = false;           ///< whether the file ends within the bytes
  std::uint64_t place = 0;         ///< where the chunk's record begins
};

/// Unfolds one chunk after the other into the same memory.
class ChunkBuffer {
 public:
  explicit ChunkBuffer(Decoders decoders) : decoders_(std::move(decoders)) {}

  /// The chunk's content, valid until the next call. For a chunk that is cut off, the part that could be
  /// unfolded.
  ///
  /// The claimed size is only a limit. Memory begins with what coordinates commonly need, or with what the
  /// chunk before needed, and grows with the bytes that come out.
  /// @throws ReadError for a compression that is not known or not in this build, a chunk that claims or gives
  ///         too much, gives another size than it claims, or is damaged
  std::span<const std::byte> unfold(const CompressedChunk& chunk);

 private:
  Decoders decoders_;
  std::vector<std::byte> room_;
};

}  // namespace orvantis::toolkit
