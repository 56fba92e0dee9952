#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/ZoneDetector.h>

#include "PointTiles.h"
#include "ZoneSignature.h"

namespace orvantis::engine {

/// What a point is to a document: the lower two bits of its verdict. The others are the lowest slot of the
/// zones that hold it, and one; 0: none does.
enum class Verdict : std::uint8_t { Outside = 0, Counted = 1, Taken = 2, Excluded = 3 };

std::uint8_t verdictOf(std::uint64_t mask);

/// The counts of a frame, kept by tile: after an edit only the tiles that it can touch are counted again.
class TileCounts {
 public:
  /// The points must outlive this.
  explicit TileCounts(const PointTiles& points);

  /// @return how many tiles were counted
  /// @throws std::bad_alloc, and what the classifier throws; the next count is then one of everything
  std::size_t count(const filter::detection::ZoneDetector& detector);

  /// Of all points, as `PointClassifier::count` gives them.
  const filter::classify::ZoneCounts& counts() const { return sum_; }
  /// A bit for each slot whose zone holds as many points as the document asks for.
  std::uint32_t reached() const { return reached_; }
  /// One for each point, in the order of the tiles.
  const std::vector<std::uint8_t>& verdicts() const { return verdicts_; }

 private:
  using Numbers = std::array<std::uint32_t, 25>;  // of the slots, and of the excluded

  std::vector<std::size_t> touchedBy(const std::vector<Box>& changes) const;
  filter::detection::ZoneDetector zonesNear(const std::vector<std::size_t>& tiles,
                                            const filter::detection::ZoneDetector& detector,
                                            const ZoneSignatures& zones) const;
  void countTile(std::size_t tile, const filter::classify::PointClassifier& classifier);
  void judge(const filter::detection::ZoneDetector& detector);

  const PointTiles& points_;
  std::optional<ZoneSignatures> zones_;  // of the last count
  std::vector<Numbers> numbers_;
  filter::classify::ZoneCounts sum_;
  std::uint32_t reached_ = 0;
  std::vector<std::uint8_t> verdicts_;
  std::vector<std::uint64_t> masks_;  // of one tile
};

}  // namespace orvantis::engine
