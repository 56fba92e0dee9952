#include "recording/ZstdSource.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include <zstd.h>

#include "recording/ChunkBuffer.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

constexpr std::size_t step = 1U << 17U;

}  // namespace

class ZstdSource::Stream {
 public:
  Stream() : context_(ZSTD_createDCtx()) {
    if (context_ == nullptr) {
      throw std::bad_alloc();
    }
  }
  ~Stream() { ZSTD_freeDCtx(context_); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  // Consumes compressed bytes, and returns the number of bytes that came out.
  std::size_t unfold(std::span<const std::byte> compressed, std::span<std::byte> room, std::uint64_t& taken,
                     std::uint64_t place) {
    ZSTD_inBuffer in{compressed.data(), compressed.size(), 0};
    ZSTD_outBuffer out{room.data(), room.size(), 0};
    const std::size_t hint = ZSTD_decompressStream(context_, &out, &in);
    if (ZSTD_isError(hint) != 0) {
      throw ReadError(atByte(place), "the compressed file is damaged at its byte " + std::to_string(taken) +
                                         "; zstd says: " + ZSTD_getErrorName(hint));
    }
    taken += in.pos;
    if (in.pos != 0 || out.pos != 0) {
      isFrameOver_ = hint == 0;
    }
    return out.pos;
  }

  bool isFrameOver() const { return isFrameOver_; }

 private:
  ZSTD_DCtx* context_;
  bool isFrameOver_ = false;
};

ZstdSource::ZstdSource(ByteSource& compressed)
    : compressed_(compressed), stream_(std::make_unique<Stream>()) {}
ZstdSource::~ZstdSource() = default;

std::span<const std::byte> ZstdSource::bytes(std::uint64_t offset, std::uint64_t count) {
  while (true) {
    const std::uint64_t dropped = std::min<std::uint64_t>(offset - begin_, end_ - first_);
    begin_ += dropped;
    first_ += static_cast<std::size_t>(dropped);
    const std::size_t held = begin_ == offset ? end_ - first_ : 0;
    if (held >= count || !grow()) {
      if (held == 0 && count != 0 && !stream_->isFrameOver()) {
        throw ReadError(atByte(offset),
                        "the compressed file is cut off at its byte " + std::to_string(taken_));
      }
      return std::span<const std::byte>(buffer_).subspan(
          first_, static_cast<std::size_t>(std::min<std::uint64_t>(count, held)));
    }
  }
}

bool ZstdSource::grow() {
  if (first_ == end_) {
    first_ = 0;
    end_ = 0;
  }
  if (buffer_.size() - end_ < step && first_ != 0) {
    std::memmove(buffer_.data(), buffer_.data() + first_, end_ - first_);
    end_ -= first_;
    first_ = 0;
  }
  if (buffer_.size() - end_ < step) {
    const std::uint64_t limit = unfoldedLimit(compressed_.size().value_or(0));
    if (end_ >= limit) {
      throw ReadError(atByte(begin_), "a record is longer than the " + std::to_string(limit) +
                                          " bytes that are allowed in a file compressed as a whole");
    }
    buffer_.resize(std::max(2 * buffer_.size(), 4 * step));
  }
  const std::span<std::byte> room = std::span(buffer_).subspan(end_);
  while (true) {
    const auto in = compressed_.bytes(taken_, step);
    const std::uint64_t before = taken_;
    const std::size_t out = stream_->unfold(in, room, taken_, begin_ + (end_ - first_));
    end_ += out;
    if (out != 0) {
      return true;
    }
    if (taken_ == before) {
      return false;
    }
  }
}

}  // namespace orvantis::toolkit
