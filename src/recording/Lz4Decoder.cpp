#include <memory>
#include <new>

#include <lz4frame.h>

#include "recording/BuiltInDecoders.h"

namespace orvantis::toolkit {
namespace {

struct Free {
  void operator()(LZ4F_dctx* context) const { LZ4F_freeDecompressionContext(context); }
};

Unfolded unfold(LZ4F_dctx* context, std::span<const std::byte> compressed, std::span<std::byte> room) {
  LZ4F_resetDecompressionContext(context);
  // Blocks may refer to earlier blocks, which stay in place in the room.
  LZ4F_decompressOptions_t options{};
  options.stableDst = 1;
  std::size_t taken = 0;
  std::size_t size = 0;
  while (true) {
    std::size_t in = compressed.size() - taken;
    std::size_t out = room.size() - size;
    const std::size_t hint =
        LZ4F_decompress(context, room.data() + size, &out, compressed.data() + taken, &in, &options);
    taken += in;
    size += out;
    if (LZ4F_isError(hint) != 0) {
      return {Unfolding::damaged, size, LZ4F_getErrorName(hint)};
    }
    if (hint == 0 && taken == compressed.size()) {
      return {Unfolding::complete, size, {}};
    }
    if (in == 0 && out == 0) {
      return {size == room.size() ? Unfolding::full : Unfolding::cutOff, size, {}};
    }
  }
}

}  // namespace

Decoder lz4Decoder() {
  LZ4F_dctx* context = nullptr;
  if (LZ4F_isError(LZ4F_createDecompressionContext(&context, LZ4F_VERSION)) != 0) {
    throw std::bad_alloc();
  }
  return [owned = std::shared_ptr<LZ4F_dctx>(context, Free())](std::span<const std::byte> compressed,
                                                               std::span<std::byte> room) {
    return unfold(owned.get(), compressed, room);
  };
}

}  // namespace orvantis::toolkit
