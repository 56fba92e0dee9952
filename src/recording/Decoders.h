#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace orvantis::toolkit {

/// How the unfolding of compressed bytes ended.
enum class Unfolding : std::uint8_t {
  complete,  ///< everything came out
  full,      ///< the room was too small
  cutOff,    ///< the compressed bytes end too early; the bytes that came out are right
  damaged,   ///< the decoder does not know their format, or a check sum is wrong
};

struct Unfolded {
  Unfolding ending = Unfolding::damaged;
  std::size_t size = 0;  ///< how many bytes came out; they are at the begin of the room
  std::string reason;    ///< the decoder's message about the damage
};

/// Unfolds compressed bytes into room. It does not trust what the bytes say about themselves. Between calls
/// it keeps only working memory, so one decoder is for one thread.
using Decoder = std::function<Unfolded(std::span<const std::byte> compressed, std::span<std::byte> room)>;

/// The decoders for each kind of compression in recordings. A missing decoder is empty. A host with its own
/// decoders, such as a web page, does not need the three libraries.
struct Decoders {
  Decoder lz4;    ///< the LZ4 frame format, any number of frames
  Decoder zstd;   ///< Zstandard, any number of frames
  Decoder bzip2;  ///< any number of streams
};

/// The decoders of this build, with their own working memory.
/// @throws std::bad_alloc
Decoders builtInDecoders();

}  // namespace orvantis::toolkit
