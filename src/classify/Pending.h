#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "classify/Block.h"

namespace orvantis::filter::classify {

/// Points of a block with the codes of their cells.
struct PointList {
  static constexpr std::size_t padding = 64;  ///< a vector may be written past the last entry

  /// Not initialised: a block fills what it reads. Far from the end of a page of memory: the same few entries
  /// are written as a whole vector again and again, which takes long across two pages.
  alignas(2048) std::array<std::uint32_t, Block<float>::capacity + padding> entries;
  std::size_t size = 0;

  std::uint32_t point(std::size_t i) const { return entries[i] & 0xFFFFU; }
  std::uint32_t code(std::size_t i) const { return entries[i] >> 16U; }
};

/// The points of a block that the tables alone do not decide.
struct Pending {
  PointList cut;      ///< in cells that one border crosses
  PointList crossed;  ///< in cells that several borders cross
  PointList heights;  ///< at heights near which several slabs start
};

}  // namespace orvantis::filter::classify
