#include "session/HeightWatch.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>

#include "points/UsualStride.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointClassifier;
using filter::classify::PointsView;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

// Tells which outlines hold a point, at whatever height a point may be.
PointClassifier outlinesOf(const std::vector<FieldZone>& zones) {
  constexpr double sky = 1e9;  // without an end, the classifier would have to look at each point twice
  ZoneDetector detector;
  for (const FieldZone& zone : zones) {
    if (const auto shape = zone.volume->getZone2d()) {
      detector.setZone(std::make_shared<Zone3dBase>(shape, -sky, sky), zone.field, zone.zone);
    }
  }
  return PointClassifier(detector);
}

bool isBetween(double z, const FieldZone& zone) {
  return z >= zone.volume->getZMin() && z <= zone.volume->getZMax();
}

// Whether the height of any of the points is from one value to another.
template <typename Real>
bool isAnyBetween(const PointsView<Real>& points, std::size_t begin, std::size_t size, Real low, Real high) {
  return withUsualStride<Real>(points.stride, [&](auto stride) {
    const auto* const at = static_cast<const unsigned char*>(points.z) + begin * stride;
    std::uint32_t isAny = 0;
    for (std::size_t i = 0; i < size; ++i) {
      Real z{};
      std::memcpy(&z, at + i * stride, sizeof(z));
      isAny |= (z >= low ? 1U : 0U) & (z <= high ? 1U : 0U);
    }
    return isAny != 0;
  });
}

// Every so many points, so that a frame of any size takes no longer than a small one.
template <typename Real>
PointsView<Real> sampleOf(PointsView<Real> points) {
  constexpr std::size_t most = 2048;
  const std::size_t step = std::max<std::size_t>(1, points.size / most);
  points.stride *= step;
  points.size /= step;
  return points;
}

}  // namespace

HeightWatch::HeightWatch(const std::vector<FieldZone>& zones) : outlines_(outlinesOf(zones)) {
  for (const FieldZone& zone : zones) {
    zones_.emplace_back().zone = zone;
    unseen_.push_back(zones_.size() - 1);
    byBit_.at(static_cast<std::size_t>(PointClassifier::zoneBit(zone.field, zone.zone))) = zones_.size() - 1;
  }
}

// Points are taken in blocks, without a jump for each: mostly either all zones have been seen after the first
// one, or no point is near the heights of those that were not.
template <typename Real>
void HeightWatch::lookAt(const PointsView<Real>& points) {
  constexpr std::size_t blockSize = 1024;
  for (std::size_t begin = 0; begin < points.size && !unseen_.empty(); begin += blockSize) {
    const std::size_t end = std::min(points.size, begin + blockSize);
    const auto [low, high] = heightsOfUnseen();
    const Real least = std::nextafter(static_cast<Real>(low), -std::numeric_limits<Real>::infinity());
    const Real most = std::nextafter(static_cast<Real>(high), std::numeric_limits<Real>::infinity());
    const bool isAnyNear = isAnyBetween(points, begin, end - begin, least, most);
    for (std::size_t i = begin; i < end && isAnyNear; ++i) {
      const Coordinates p = coordinatesOf(points, i);
      if (p.z >= low && p.z <= high && p.isFinite()) {
        note(p.z);
      }
    }
  }
}

// What no zone is left for was seen.
void HeightWatch::note(double z) {
  const auto isSeen = [&](std::size_t zone) {
    zones_[zone].isSeen = isBetween(z, zones_[zone].zone);
    return zones_[zone].isSeen;
  };
  unseen_.erase(std::remove_if(unseen_.begin(), unseen_.end(), isSeen), unseen_.end());
}

std::pair<double, double> HeightWatch::heightsOfUnseen() const {
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  for (const std::size_t zone : unseen_) {
    low = std::min(low, zones_[zone].zone.volume->getZMin());
    high = std::max(high, zones_[zone].zone.volume->getZMax());
  }
  return {low, high};
}

template <typename Real>
void HeightWatch::addSample(const PointsView<Real>& points) {
  masks_.resize(points.size);
  outlines_.classify(points, masks_.data());
  for (std::size_t i = 0; i < points.size; ++i) {
    const Coordinates p = coordinatesOf(points, i);
    if (!p.isFinite()) {
      continue;
    }
    for (std::uint64_t mask = masks_[i]; mask != 0; mask &= mask - 1) {
      ZoneHeights& heights = zones_[byBit_[static_cast<std::size_t>(std::countr_zero(mask))]];
      ++heights.inside;
      if (isBetween(p.z, heights.zone)) {
        ++heights.between;
      } else {
        heights.lowest = std::min(heights.lowest, p.z);
        heights.highest = std::max(heights.highest, p.z);
      }
    }
  }
}

void HeightWatch::look(const Points& points) {
  std::visit([this](const auto& view) { lookAt(view); }, points);
}

void HeightWatch::sample(const Points& points) {
  std::visit([this](const auto& view) { addSample(sampleOf(view)); }, points);
}

}  // namespace orvantis::toolkit
