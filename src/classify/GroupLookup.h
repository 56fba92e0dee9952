#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "classify/LookupTables.h"

namespace orvantis::filter::classify {

/// Two neighbouring numbers that are read at once, because reading takes most of the time here.
struct Pair {
  explicit Pair(const std::uint32_t* from) { std::memcpy(&both, from, sizeof(both)); }

  static constexpr bool isLowFirst = std::endian::native == std::endian::little;
  std::uint32_t first() const { return static_cast<std::uint32_t>(isLowFirst ? both : both >> 32U); }
  std::uint32_t second() const { return static_cast<std::uint32_t>(isLowFirst ? both >> 32U : both); }

  std::uint64_t both;
};

/// Looks up the masks of a group of points.
class GroupLookup {
 public:
  explicit GroupLookup(const LookupTables& tables)
      : codes_(tables.codes),
        palette_(tables.palette),
        slabs_(tables.slabs),
        heightMasks_(tables.heightMasks) {}

  // Unrolled for all points of a group: a loop counter would take as much time as the look-up.
  template <std::size_t... pairs>
  void operator()(const std::uint32_t* cells, const std::uint32_t* heights, std::uint64_t* out,
                  std::index_sequence<pairs...>) const {
    (lookUpPair(cells + 2 * pairs, heights + 2 * pairs, out + 2 * pairs), ...);
  }

 private:
  void lookUpPair(const std::uint32_t* cells, const std::uint32_t* heights, std::uint64_t* out) const {
    const Pair cell(cells);
    const Pair height(heights);
    out[0] = maskOf(cell.first(), height.first());
    out[1] = maskOf(cell.second(), height.second());
  }
  std::uint64_t maskOf(std::uint32_t cell, std::uint32_t height) const {
    return palette_[codes_[cell]] & heightMasks_[slabs_[height & 0xFFFFU]];
  }

  const std::uint16_t* codes_;
  const std::uint64_t* palette_;
  const std::uint8_t* slabs_;
  const std::uint64_t* heightMasks_;
};

}  // namespace orvantis::filter::classify
