#include <memory>
#include <new>

#include <zstd.h>

#include "recording/BuiltInDecoders.h"

namespace orvantis::toolkit {
namespace {

struct Free {
  void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
};

Unfolded unfold(ZSTD_DCtx* context, std::span<const std::byte> compressed, std::span<std::byte> room) {
  ZSTD_DCtx_reset(context, ZSTD_reset_session_only);
  ZSTD_inBuffer in{compressed.data(), compressed.size(), 0};
  ZSTD_outBuffer out{room.data(), room.size(), 0};
  while (true) {
    const std::size_t taken = in.pos;
    const std::size_t given = out.pos;
    const std::size_t hint = ZSTD_decompressStream(context, &out, &in);
    if (ZSTD_isError(hint) != 0) {
      return {Unfolding::damaged, out.pos, ZSTD_getErrorName(hint)};
    }
    if (hint == 0 && in.pos == in.size) {
      return {Unfolding::complete, out.pos, {}};
    }
    if (in.pos == taken && out.pos == given) {
      return {out.pos == out.size ? Unfolding::full : Unfolding::cutOff, out.pos, {}};
    }
  }
}

}  // namespace

Decoder zstdDecoder() {
  ZSTD_DCtx* const context = ZSTD_createDCtx();
  if (context == nullptr) {
    throw std::bad_alloc();
  }
  return [owned = std::shared_ptr<ZSTD_DCtx>(context, Free())](std::span<const std::byte> compressed,
                                                               std::span<std::byte> room) {
    return unfold(owned.get(), compressed, room);
  };
}

}  // namespace orvantis::toolkit
