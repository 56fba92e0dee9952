#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "recording/Bytes.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {

/// Takes numbers and texts from bytes one after another. Asking for more bytes than there are throws
/// ReadError, which names what the bytes are and where they begin.
class Cursor {
 public:
  /// @param place where the bytes begin in the file
  /// @param what  what the bytes are, such as "a chunk"
  Cursor(std::span<const std::byte> bytes, std::uint64_t place, const char* what, bool isBigEndian = false)
      : bytes_(bytes), place_(place), what_(what), isBigEndian_(isBigEndian) {}

  template <typename Number>
  Number take() {
    const std::byte* const at = take(sizeof(Number)).data();
    return isBigEndian_ ? load<true, Number>(at) : loadLittleEndian<Number>(at);
  }

  std::span<const std::byte> take(std::uint64_t count) {
    if (count > remaining()) {
      throw ReadError(atByte(place_), std::string(what_) + " is too short: at its byte " +
                                          std::to_string(position_) + " it needs " + counted(count, "byte") +
                                          " and has " + std::to_string(remaining()));
    }
    const auto taken = bytes_.subspan(position_, static_cast<std::size_t>(count));
    position_ += taken.size();
    return taken;
  }

  std::string_view takeText(std::uint64_t count) {
    const auto taken = take(count);
    return {reinterpret_cast<const char*>(taken.data()), taken.size()};
  }

  /// A text that follows its length in 4 bytes.
  std::string_view takeText() { return takeText(take<std::uint32_t>()); }

  /// Moves on to a multiple of `alignment`, counted from the first byte.
  void align(std::size_t alignment) { take((alignment - position_ % alignment) % alignment); }

  std::size_t position() const { return position_; }
  std::size_t remaining() const { return bytes_.size() - position_; }

 private:
  std::span<const std::byte> bytes_;
  std::uint64_t place_;
  const char* what_;
  bool isBigEndian_;
  std::size_t position_ = 0;
};

}  // namespace orvantis::toolkit
