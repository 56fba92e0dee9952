#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace orvantis::testing {

/// Numbers and texts as files hold them, put together in a string. Independent of what reads them.
template <typename Number>
std::string bytesOf(Number number, bool isBigEndian = false) {
  std::string bytes(sizeof(Number), '\0');
  std::memcpy(bytes.data(), &number, sizeof(Number));  // the tests run on little-endian machines
  return isBigEndian ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
}

inline std::string withLength(std::string_view text) {
  return bytesOf(static_cast<std::uint32_t>(text.size())).append(text);
}

inline std::span<const std::byte> viewOf(std::string_view text) {
  return std::as_bytes(std::span(text));
}

inline std::string textOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace orvantis::testing
