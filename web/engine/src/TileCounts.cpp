#include "TileCounts.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <variant>

#include "zones/ShapeCopy.h"

namespace orvantis::engine {
namespace {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;
using filter::detection::Zone;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

constexpr std::size_t numSlots = 24;

std::shared_ptr<Zone3dBase> zoneOf(const ZoneDetector& detector, std::size_t slot) {
  return detector.getZone(static_cast<int>(slot / 3), static_cast<int>(slot % 3));
}

// A document may have a name twice, and a list that is put together may not.
std::shared_ptr<Zone3dBase> copyNamed(const Zone3dBase& zone, const std::string& name) {
  const auto shape = std::const_pointer_cast<Zone>(filter::detection::exactCopy(*zone.getZone2d()));
  const auto copy = std::make_shared<Zone3dBase>(shape, zone.getZMin(), zone.getZMax());
  copy->setName(name);
  return copy;
}

}  // namespace

std::uint8_t verdictOf(std::uint64_t mask) {
  constexpr std::uint64_t fieldZones = (std::uint64_t{1} << numSlots) - 1;
  const std::uint64_t zones = mask & fieldZones;
  const bool isExcluded = mask > fieldZones;
  if (zones == 0) {
    return static_cast<std::uint8_t>(isExcluded ? Verdict::Excluded : Verdict::Outside);
  }
  const auto slot = static_cast<unsigned>(std::countr_zero(zones));
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

std::vector<std::size_t> TileCounts::touchedBy(const std::vector<Box>& changes) const {
  std::vector<std::size_t> touched;
  for (std::size_t tile = 0; tile < numbers_.size(); ++tile) {
    const Box& box = points_.tiles()[tile].box;
    if (std::any_of(changes.begin(), changes.end(), [&](const Box& change) { return change.touches(box); })) {
      touched.push_back(tile);
    }
  }
  return touched;
}

// The tables of a classifier cost more than a few tiles, so they are made of those zones alone that can hold
// a point of these tiles: to these points the others are as good as not there.
ZoneDetector TileCounts::zonesNear(const std::vector<std::size_t>& tiles, const ZoneDetector& detector,
                                   const ZoneSignatures& zones) const {
  const auto isNear = [&](std::size_t zone) {
    const Box& box = zones.boxOf(zone);
    return std::any_of(tiles.begin(), tiles.end(),
                       [&](std::size_t tile) { return box.touches(points_.tiles()[tile].box); });
  };
  ZoneDetector::EvaluationFieldArray fields;
  for (std::size_t slot = 0; slot < numSlots; ++slot) {
    if (isNear(slot)) {
      auto& field = fields[slot / 3];
      field = field ? field : std::make_shared<ZoneDetector::EvaluationField>();
      field->zones[slot % 3] = zoneOf(detector, slot);
    }
  }
  ZoneDetector near(fields);
  const auto& exclusions = detector.getExclusionZoneVector();
  for (std::size_t k = 0; k < exclusions.size(); ++k) {
    if (isNear(numSlots + k)) {
      near.appendExclusionZone(copyNamed(*exclusions[k], std::to_string(k)));
    }
  }
  return near;
}

void TileCounts::judge(const ZoneDetector& detector) {
  reached_ = 0;
  for (std::size_t slot = 0; slot < numSlots; ++slot) {
    const bool isReached = zoneOf(detector, slot) != nullptr &&
                           sum_.inside[slot] >= static_cast<std::uint64_t>(detector.getMinPoints());
    reached_ |= (isReached ? std::uint32_t{1} : 0) << slot;
  }
}

std::size_t TileCounts::count(const ZoneDetector& detector) {
  const std::optional<ZoneSignatures> before = std::exchange(zones_, std::nullopt);
  ZoneSignatures zones(detector);
  std::vector<std::size_t> tiles;
  if (before) {
    tiles = touchedBy(zones.changesFrom(*before));
  } else {
    tiles.resize(numbers_.size());
    std::iota(tiles.begin(), tiles.end(), std::size_t{0});
  }
  if (!tiles.empty()) {
    const PointClassifier classifier(zonesNear(tiles, detector, zones));
    for (const std::size_t tile : tiles) {
      countTile(tile, classifier);
    }
  }
  judge(detector);
  zones_ = std::move(zones);
  return tiles.size();
}

}  // namespace orvantis::engine
