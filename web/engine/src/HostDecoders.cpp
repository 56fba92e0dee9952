#include "HostDecoders.h"

#ifdef __EMSCRIPTEN__

#include <cstdint>

extern "C" {
// Answers with the bytes that came out, or below zero: -1 room full, -2 cut off, -3 damaged, -4 not there; of
// those the bytes that came out are `*size`.
__attribute__((import_module("host"), import_name("unfold"))) int engineUnfold(int kind, const void* bytes,
                                                                               std::size_t count, void* room,
                                                                               std::size_t roomSize,
                                                                               std::size_t* size);
}

namespace orvantis::engine {
namespace {

using toolkit::Unfolded;
using toolkit::Unfolding;

toolkit::Decoder decoderOf(int kind) {
  return [kind](std::span<const std::byte> compressed, std::span<std::byte> room) {
    std::size_t size = 0;
    const int answer =
        engineUnfold(kind, compressed.data(), compressed.size(), room.data(), room.size(), &size);
    constexpr int full = -1;
    constexpr int cutOff = -2;
    switch (answer) {
      case 0:
        return Unfolded{Unfolding::complete, size, {}};
      case full:
        return Unfolded{Unfolding::full, size, {}};
      case cutOff:
        return Unfolded{Unfolding::cutOff, size, {}};
      default:
        return Unfolded{Unfolding::damaged, size, "the compressed bytes are damaged"};
    }
  };
}

}  // namespace

toolkit::Decoders decoders() {
  return {decoderOf(0), decoderOf(1), decoderOf(2)};
}

}  // namespace orvantis::engine

#else

namespace orvantis::engine {

toolkit::Decoders decoders() {
  return toolkit::builtInDecoders();
}

}  // namespace orvantis::engine

#endif
