#include "classify/Heights.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <numeric>

#include "classify/Flags.h"

namespace orvantis::filter::classify {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

std::uint64_t holding(const std::vector<FrozenZone>& zones, double height) {
  std::uint64_t mask = 0;
  for (const FrozenZone& zone : zones) {
    if (height >= zone.zMin && height <= zone.zMax) {
      mask |= std::uint64_t{1} << zone.bit;
    }
  }
  return mask;
}

void makeSlabs(Heights& heights, const std::vector<FrozenZone>& zones) {
  std::vector<double>& starts = heights.slabStarts;
  for (const FrozenZone& zone : zones) {
    starts.push_back(zone.zMin);
    if (zone.zMax < infinity) {
      starts.push_back(std::nextafter(zone.zMax, infinity));
    }
  }
  std::sort(starts.begin(), starts.end());
  starts.erase(std::unique(starts.begin(), starts.end()), starts.end());
  heights.slabMasks.push_back(0);
  for (const double start : starts) {
    heights.slabMasks.push_back(holding(zones, start));
  }
  if (!starts.empty()) {
    const bool isBounded = heights.slabMasks.back() == 0;
    heights.lowestInside = static_cast<float>(starts.front());
    heights.highestInside = static_cast<float>(isBounded ? starts.back() : infinity);
  }
}

// The buckets lie around the starts, so that a bound such as 1000 m, which means no bound, does not make them
// wide. Every folding gives right answers; this one leaves few points in buckets in which a slab starts.
Folding foldingOver(const std::vector<double>& starts) {
  constexpr double numBuckets = 4096.0;
  constexpr double narrow = 0.004;
  constexpr double mostBucketsPerMetre = 0x1p20;
  constexpr double margin = 2.0;  // buckets before the first start of a piece, and after the last one
  Folding folding;
  if (starts.empty()) {
    return folding;
  }
  std::vector<double> gaps(Folding::mostPieces, 0.0);
  for (std::size_t i = 1; i < starts.size(); ++i) {
    gaps.push_back(starts[i] - starts[i - 1]);
  }
  std::sort(gaps.begin(), gaps.end(), std::greater<>());
  // Added up from the narrowest gap on: taken from the whole length, a wide gap would take the digits of the
  // narrow ones with it, and what is left could be nothing where metres are left.
  const auto lengthWithout = [&gaps](std::size_t widest) {
    return std::accumulate(gaps.rbegin(), gaps.rend() - static_cast<std::ptrdiff_t>(widest), 0.0);
  };
  const double shortest = lengthWithout(Folding::mostPieces - 1);
  std::size_t numGaps = 0;
  double length = lengthWithout(numGaps);
  while (numGaps + 1 < Folding::mostPieces && length > narrow * numBuckets && length > 2.0 * shortest) {
    length = lengthWithout(++numGaps);
  }
  double leastGap = infinity;
  if (numGaps > 0) {
    leastGap = gaps[numGaps - 1];
  }

  const double available = numBuckets - static_cast<double>(Folding::mostPieces) * (2.0 * margin + 1.0);
  folding.stepsPerUnit = static_cast<float>(std::min(available / length, mostBucketsPerMetre));
  const double before = margin / static_cast<double>(folding.stepsPerUnit);
  folding.origin = static_cast<float>(starts.front() - before);
  double first = starts.front();
  std::size_t piece = 0;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    if (i > 0 && starts[i] - starts[i - 1] >= leastGap && piece < numGaps) {
      first = starts[i];
      folding.offsets[++piece] = static_cast<float>(first - before - static_cast<double>(folding.origin));
    }
    const double steps = (starts[i] - first) * static_cast<double>(folding.stepsPerUnit);
    folding.counts[piece] = static_cast<float>(std::ceil(steps) + 2.0 * margin);
  }
  folding.numPieces = piece + 1;
  return folding;
}

void fillBuckets(Heights& heights) {
  constexpr float ordinary = 1.0e30F;
  std::vector<float> finite;
  std::vector<double> dividing;
  std::size_t slab = 0;
  for (const double start : heights.slabStarts) {
    const auto rounded = static_cast<float>(start);
    if (std::isfinite(rounded)) {
      finite.push_back(rounded);
    }
    if (std::abs(rounded) <= ordinary) {
      dividing.push_back(start);
    }
    slab += rounded == -std::numeric_limits<float>::infinity() ? 1U : 0U;
  }
  heights.buckets = foldingOver(dividing);
  std::vector<std::uint8_t> count(static_cast<std::size_t>(heights.buckets.last()) + 1, 0);
  for (const float start : finite) {
    // Rounded in the same way as the heights of points, because rounding keeps their order.
    ++count[static_cast<std::size_t>(heights.buckets.number(start))];
  }
  heights.slabs.reserve(count.size() + 2);
  for (const std::uint8_t startsHere : count) {
    heights.slabs.push_back(static_cast<std::uint8_t>(slab | (startsHere > 0 ? Heights::openBucket : 0U)));
    slab += startsHere;
  }
  heights.slabs.push_back(Heights::noSlab);
  heights.slabs.push_back(Heights::openBucket);
}

}  // namespace

std::size_t Heights::bytes() const {
  return slabs.size() * sizeof(slabs[0]) + sizeof(masks) + slabStarts.size() * sizeof(double) +
         slabMasks.size() * sizeof(std::uint64_t);
}

Heights heightsOf(const std::vector<FrozenZone>& zones) {
  Heights heights;
  makeSlabs(heights, zones);
  fillBuckets(heights);
  for (std::size_t slab = 0; slab < heights.slabMasks.size(); ++slab) {
    const std::uint64_t held = heights.slabMasks[slab];
    heights.masks[slab] = held != 0 ? held | openCell | decidingBits : 0;
  }
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  heights.slabStarts.insert(heights.slabStarts.end(), {nan, nan});
  std::fill(heights.masks.begin() + Heights::openBucket, heights.masks.end(), ~std::uint64_t{0});
  return heights;
}

}  // namespace orvantis::filter::classify
