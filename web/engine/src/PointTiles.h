#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <filter/classify/Points.h>

#include "ZoneSignature.h"

namespace orvantis::engine {

using filter::classify::Points;

/// The finite points of a frame, sorted into tiles of some hundred neighbours, each coordinate in an array of
/// its own. Immutable.
class PointTiles {
 public:
  struct Tile {
    std::size_t begin;
    std::size_t end;
    Box box;  ///< of its points
  };

  /// @param values one for each point, or none: they are sorted with the points
  /// @throws std::bad_alloc
  explicit PointTiles(const Points& points, std::span<const float> values = {});

  std::size_t size() const { return isFloat_ ? floats_.size() / 3 : doubles_.size() / 3; }
  std::uint64_t noReturns() const { return noReturns_; }
  const std::vector<Tile>& tiles() const { return tiles_; }
  /// Of all points; empty when there is none.
  const Box& box() const { return box_; }

  /// The points from begin to end.
  Points view(std::size_t begin, std::size_t end) const;
  Points all() const { return view(0, size()); }
  /// Of the points, in the same order; empty where none were given.
  const std::vector<float>& values() const { return values_; }

 private:
  template <typename Real>
  void build(const filter::classify::PointsView<Real>& points, std::span<const float> values,
             std::vector<Real>& room);

  bool isFloat_ = true;
  std::vector<float> floats_;  // all x, then all y, then all z; of either kind
  std::vector<double> doubles_;
  std::vector<float> values_;
  std::uint64_t noReturns_ = 0;
  std::vector<Tile> tiles_;
  Box box_;
};

}  // namespace orvantis::engine
