#include "recording/Lzf.h"

#include <cstring>

namespace orvantis::toolkit {
namespace {

constexpr std::size_t longestRun = 32;
constexpr std::size_t word = 8;

// Copies bytes that were written `distance` bytes before. The source may overlap the destination, and then
// repeats. `room` is the rest of the output.
void repeat(std::byte* to, std::size_t distance, std::size_t size, std::size_t room) {
  if (room < size + word) {  // too near the end to write whole words
    for (std::size_t i = 0; i < size; ++i) {
      to[i] = *(to + i - distance);
    }
    return;
  }
  std::size_t done = 0;
  std::size_t period = distance;
  if (distance < word) {
    // Writes a short pattern byte by byte until a multiple of its length is at least a word.
    period = distance * ((word + distance - 1) / distance);
    for (; done < period; ++done) {
      to[done] = *(to + done - distance);
    }
  }
  for (; done < size; done += word) {
    std::memcpy(to + done, to + done - period, word);
  }
}

}  // namespace

std::optional<std::size_t> decompressLzf(std::span<const std::byte> in, std::span<std::byte> out) noexcept {
  const std::byte* at = in.data();
  const std::byte* const inEnd = at + in.size();
  std::byte* to = out.data();
  std::byte* const outEnd = to + out.size();
  while (at != inEnd) {
    const std::byte* const begin = at;
    const auto control = std::to_integer<std::size_t>(*at++);
    const auto room = static_cast<std::size_t>(outEnd - to);
    const auto left = static_cast<std::size_t>(inEnd - at);
    if (control < longestRun) {
      const std::size_t size = control + 1;
      if (size > left || size > room) {
        return static_cast<std::size_t>(begin - in.data());
      }
      // Copies a fixed size, which takes two instructions. The next run overwrites the excess.
      std::memcpy(to, at, left >= longestRun && room >= longestRun ? longestRun : size);
      at += size;
      to += size;
      continue;
    }
    std::size_t size = (control >> 5U) + 2;
    const bool isLong = size == 9;
    if (left < (isLong ? 2U : 1U)) {
      return static_cast<std::size_t>(begin - in.data());
    }
    if (isLong) {
      size += std::to_integer<std::size_t>(*at++);
    }
    const std::size_t distance = ((control & 0x1FU) << 8U) + std::to_integer<std::size_t>(*at++) + 1;
    if (distance > static_cast<std::size_t>(to - out.data()) || size > room) {
      return static_cast<std::size_t>(begin - in.data());
    }
    repeat(to, distance, size, room);
    to += size;
  }
  return to == outEnd ? std::nullopt : std::optional(in.size());
}

}  // namespace orvantis::toolkit
