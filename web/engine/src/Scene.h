#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "PointTiles.h"
#include "TileCounts.h"
#include "document/Check.h"
#include "recording/FrameSource.h"
#include "recording/PointStatistics.h"

namespace orvantis::engine {

/// Points that a page shows and counts while zones are drawn.
class Scene {
 public:
  /// @param intensities one for each point, or none
  explicit Scene(const toolkit::InputFrame& frame, std::span<const float> intensities);
  explicit Scene(const Points& points, std::span<const float> intensities = {});

  /// `Scene` of types.ts without the positions, as JSON.
  std::string description() const;
  /// x, y, z of each point less the origin, in the order of the tiles.
  std::vector<float> positions() const;
  const PointTiles& points() const { return tiles_; }

  /// Counts the points by a document. @return how many tiles were counted
  std::size_t count(const filter::detection::ZoneDetector& detector) { return counts_.count(detector); }
  const TileCounts& counts() const { return counts_; }

  /// The numbers of points in equal steps of height, from the lowest to the highest.
  std::vector<std::uint32_t> heights(std::size_t bins) const;

  /// The plan of a document over the points as SVG. @throws std::runtime_error when it cannot be drawn
  std::string plan(const toolkit::Configuration& configuration, const std::string& title);

 private:
  std::array<double, 3> origin() const;

  PointTiles tiles_;
  TileCounts counts_;
  toolkit::PointStatistics statistics_;
  toolkit::DroppedPoints dropped_;
  std::vector<std::string> columns_;
};

}  // namespace orvantis::engine
