#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include <bzlib.h>

#include "recording/BuiltInDecoders.h"

namespace orvantis::toolkit {
namespace {

// One stream of the library, whose destructor ends it.
class Stream {
 public:
  Stream() {
    if (BZ2_bzDecompressInit(&stream_, 0, 0) != BZ_OK) {
      throw std::bad_alloc();
    }
  }
  ~Stream() { BZ2_bzDecompressEnd(&stream_); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  // Consumes the bytes that were read from both spans, and returns the library's code.
  int step(std::span<const std::byte>& compressed, std::span<std::byte>& room) {
    constexpr std::size_t most = std::numeric_limits<unsigned>::max();
    const auto in = static_cast<unsigned>(std::min(compressed.size(), most));
    const auto out = static_cast<unsigned>(std::min(room.size(), most));
    // The library only reads through this pointer.
    stream_.next_in = const_cast<char*>(reinterpret_cast<const char*>(compressed.data()));
    stream_.avail_in = in;
    stream_.next_out = reinterpret_cast<char*>(room.data());
    stream_.avail_out = out;
    const int code = BZ2_bzDecompress(&stream_);
    compressed = compressed.subspan(in - stream_.avail_in);
    room = room.subspan(out - stream_.avail_out);
    return code;
  }

 private:
  bz_stream stream_{};
};

// Whether the stream's end was found. If not, the result says why.
bool unfoldStream(std::span<const std::byte>& compressed, std::span<std::byte>& room, Unfolded& result) {
  Stream stream;
  while (true) {
    const std::size_t in = compressed.size();
    const std::size_t out = room.size();
    const int code = stream.step(compressed, room);
    if (code == BZ_STREAM_END) {
      return true;
    }
    if (code == BZ_MEM_ERROR) {
      throw std::bad_alloc();
    }
    if (code != BZ_OK) {
      result = {Unfolding::damaged, 0,
                code == BZ_DATA_ERROR ? "wrong check sum or code" : "not a bzip2 stream"};
      return false;
    }
    if (compressed.size() == in && room.size() == out) {
      result.ending = room.empty() ? Unfolding::full : Unfolding::cutOff;
      return false;
    }
  }
}

Unfolded unfold(std::span<const std::byte> compressed, std::span<std::byte> room) {
  Unfolded result{Unfolding::complete, 0, {}};
  std::span<std::byte> left = room;
  do {
    if (!unfoldStream(compressed, left, result)) {
      break;
    }
  } while (!compressed.empty());
  result.size = room.size() - left.size();
  return result;
}

}  // namespace

Decoder bzip2Decoder() {
  return unfold;
}

}  // namespace orvantis::toolkit
