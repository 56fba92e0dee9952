#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvantis::toolkit {

/// The number at an address, which may be unaligned.
template <bool isBigEndian, typename Number>
Number load(const std::byte* at) {
  std::array<std::byte, sizeof(Number)> bytes;
  std::memcpy(bytes.data(), at, sizeof(Number));
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  constexpr bool isForeign = !isBigEndian;
#else
  constexpr bool isForeign = isBigEndian;
#endif
  if constexpr (isForeign) {
    std::reverse(bytes.begin(), bytes.end());
  }
  Number number;
  std::memcpy(&number, bytes.data(), sizeof(Number));
  return number;
}

template <typename Number>
Number loadLittleEndian(const std::byte* at) {
  return load<false, Number>(at);
}

}  // namespace orvantis::toolkit
