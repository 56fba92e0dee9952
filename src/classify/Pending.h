#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "classify/Block.h"

namespace orvantis::filter::classify {

/// Points of a block, by number.
struct PointList {
  static constexpr std::size_t padding = 64;  ///< a vector may be written past the last entry

  /// Not initialised, because a block fills what it reads. Aligned, so that it begins far from the end of a
  /// memory page: whole vectors are written to the first few entries again and again, which is slow across
  /// two pages.
  alignas(2048) std::array<std::uint32_t, Block<float>::capacity + padding> points;
  std::size_t size = 0;
};

/// The points of a block that the tables alone do not decide.
struct Pending {
  /// By point, where it is in a list: its cell, and in the lower 16 bits the bucket of its height.
  alignas(64) std::array<std::uint32_t, Block<float>::capacity> cells;
  alignas(64) std::array<std::uint32_t, Block<float>::capacity> buckets;
  PointList cell;    ///< in cells that borders cross
  PointList height;  ///< at heights near which a slab starts
};

}  // namespace orvantis::filter::classify
