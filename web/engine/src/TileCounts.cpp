#include "TileCounts.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace orvantis::engine {
namespace {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;

constexpr std::size_t numSlots = 24;

}  // namespace

std::uint8_t verdictOf(std::uint64_t mask) {
  constexpr std::uint64_t fieldZones = (std::uint64_t{1} << numSlots) - 1;
  const std::uint64_t zones = mask & fieldZones;
  const bool isExcluded = mask > fieldZones;
  if (zones == 0) {
    return static_cast<std::uint8_t>(isExcluded ? Verdict::Excluded : Verdict::Outside);
  }
  unsigned slot = 0;
  while ((zones >> slot & 1U) == 0) {
    ++slot;
  }
  const auto verdict = static_cast<unsigned>(isExcluded ? Verdict::Taken : Verdict::Counted);
  return static_cast<std::uint8_t>((slot + 1) << 2U | verdict);
}

TileCounts::TileCounts(const PointTiles& points) : points_(points), numbers_(points.tiles().size()) {
  verdicts_.resize(points.size());
  sum_.noReturns = points.noReturns();
}

void TileCounts::countTile(std::size_t tile, const PointClassifier& classifier) {
  const PointTiles::Tile& range = points_.tiles()[tile];
  masks_.resize(range.end - range.begin);
  const ZoneCounts counted =
      std::visit([&](const auto& view) { return classifier.count(view, masks_.data()); },
                 points_.view(range.begin, range.end));
  Numbers& numbers = numbers_[tile];
  for (std::size_t slot = 0; slot < numSlots; ++slot) {
    sum_.inside[slot] += counted.inside[slot] - numbers[slot];
    numbers[slot] = static_cast<std::uint32_t>(counted.inside[slot]);
  }
  sum_.excluded += counted.excluded - numbers[numSlots];
  numbers[numSlots] = static_cast<std::uint32_t>(counted.excluded);
  std::transform(masks_.begin(), masks_.end(), verdicts_.begin() + static_cast<std::ptrdiff_t>(range.begin),
                 verdictOf);
}

std::size_t TileCounts::count(const filter::detection::ZoneDetector& detector) {
  const std::optional<ZoneSignatures> before = std::exchange(zones_, std::nullopt);
  ZoneSignatures zones(detector);
  const std::vector<Box> changes = before ? zones.changesFrom(*before) : std::vector<Box>();
  std::size_t counted = 0;
  if (!before || !changes.empty()) {
    const PointClassifier classifier(detector);
    const auto isTouched = [&](const PointTiles::Tile& tile) {
      return !before || std::any_of(changes.begin(), changes.end(),
                                    [&](const Box& box) { return !box.isEmpty() && box.touches(tile.box); });
    };
    for (std::size_t tile = 0; tile < numbers_.size(); ++tile) {
      if (isTouched(points_.tiles()[tile])) {
        countTile(tile, classifier);
        ++counted;
      }
    }
  }
  zones_ = std::move(zones);
  return counted;
}

}  // namespace orvantis::engine
