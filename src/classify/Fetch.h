#pragma once

#include <cstddef>
#include <cstdint>

#include <hwy/cache_control.h>

namespace orvantis::filter::classify {

/// Prefetches bytes that will be read soon. They may lie past the end of the data.
inline void fetch(const void* from, std::size_t ahead, std::size_t size) {
  constexpr std::size_t lineSize = 64;
  const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(from) + ahead;
  for (std::size_t offset = 0; offset < size; offset += lineSize) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a pointer may not be moved past the end of its array
    hwy::Prefetch(reinterpret_cast<const unsigned char*>(first + offset));
  }
}

}  // namespace orvantis::filter::classify
