#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "classify/Block.h"

namespace orvantis::filter::classify {

/// Walks over the points of a view block by block. Points are read where they lie, except for the last ones
/// and those in rare layouts, which are copied.
template <typename Real>
class Blocks {
 public:
  /// @param masks null when nobody reads the masks after their block
  Blocks(const PointsView<Real>& points, std::uint64_t* masks);

  /// Goes to the next block. @return false after the last one
  bool next();
  const Block<Real>& block() const { return block_; }
  /// How many points of the block, from its first one on, are points of the view. The others fill up a group.
  std::size_t size() const { return size_; }
  /// Hands out the masks of the block.
  void finish();

 private:
  void takeCopy();

  PointsView<Real> points_;
  std::uint64_t* masks_;
  Layout layout_ = Layout::Arrays;
  std::size_t numDirect_ = 0;  // how many points, from the first one on, are read where they lie
  std::size_t first_ = 0;
  std::size_t size_ = 0;
  Block<Real> block_{};

  // Not initialised, because a block fills what it reads.
  alignas(64) std::array<std::uint64_t, Block<Real>::capacity> ownMasks_;
  alignas(64) std::array<std::array<Real, Block<Real>::capacity>, 3> copies_;
};

}  // namespace orvantis::filter::classify
