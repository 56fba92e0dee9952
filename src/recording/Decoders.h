#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace orvantis::toolkit {

/// How unfolding ended.
enum class Unfolding : std::uint8_t {
  complete,  ///< everything came out
  full,      ///< the room was not enough
  cutOff,    ///< the compressed bytes end too early: what came out is right as far as it goes
  damaged,   ///< they are not what the decoder knows, or a check sum is wrong
};

struct Unfolded {
  Unfolding ending = Unfolding::damaged;
  std::size_t size = 0;  ///< bytes that came out; they stand at the begin of the room
  std::string reason;    ///< the decoder's words for damage
};

/// Unfolds compressed bytes into room. It neither trusts what the bytes say about themselves nor keeps
/// anything between calls but working memory, so one decoder is for one thread.
using Decoder = std::function<Unfolded(std::span<const std::byte> compressed, std::span<std::byte> room)>;

/// What unfolds each kind of compression that recordings know; an empty one is not there. A host that brings
/// its own, such as a page, needs none of the three libraries.
struct Decoders {
  Decoder lz4;    ///< the LZ4 frame format, any number of frames
  Decoder zstd;   ///< Zstandard, any number of frames
  Decoder bzip2;  ///< any number of streams
};

/// The decoders that this build has, with working memory of their own.
/// @throws std::bad_alloc
Decoders builtInDecoders();

}  // namespace orvantis::toolkit
