#include "classify/Heights.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace orvantis::filter::classify {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint64_t everyZone = ~std::uint64_t{0};

float roundedUp(double height) {
  const auto rounded = static_cast<float>(height);
  return static_cast<double>(rounded) < height
             ? std::nextafter(rounded, std::numeric_limits<float>::infinity())
             : rounded;
}

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

// The first of these starts falls into the second bucket and the last one into the last but one.
void scaleOver(Heights& heights, float first, float last) {
  const float numSteps = static_cast<float>(std::max(heights.lastBucket - 2, 1));
  const float scale = numSteps / (last - first);
  heights.bucketsPerMetre = std::isfinite(scale) && scale > 0.0F ? scale : 1.0F;
  heights.origin = first - 1.0F / heights.bucketsPerMetre;
}

// About what share of the points falls into buckets in which several slabs start: most heights are taken to
// lie where the middle half of the starts does, and some beyond either end.
float shareCrowded(const Heights& heights, const std::vector<float>& starts) {
  constexpr float shareOfEnd = 0.25F;
  int numCrowded = 0;
  int numEnds = 0;
  for (std::size_t i = 1; i < starts.size(); ++i) {
    const std::int32_t bucket = heights.bucket(starts[i]);
    if (heights.bucket(starts[i - 1]) == bucket) {
      ++(bucket == 0 || bucket == heights.lastBucket ? numEnds : numCrowded);
    }
  }
  if (numCrowded == 0) {
    return shareOfEnd * static_cast<float>(numEnds);
  }
  const std::size_t quarter = starts.size() / 4;
  const float middleHalf = starts[starts.size() - 1 - quarter] - starts[quarter];
  const float crowded = static_cast<float>(numCrowded) / heights.bucketsPerMetre;
  return std::min(crowded / middleHalf, 1.0F) + shareOfEnd * static_cast<float>(numEnds);
}

// A bound that stands for none, such as 1000 m, must not stretch the buckets: some starts at either end may
// share the first or the last one, if that keeps the others apart.
void scaleBuckets(Heights& heights, std::int32_t numBuckets) {
  constexpr std::size_t mostLeftOut = 4;
  heights.lastBucket = numBuckets - 1;
  std::vector<float> starts;
  for (const double start : heights.slabStarts) {
    const auto rounded = static_cast<float>(start);
    if (std::isfinite(rounded)) {
      starts.push_back(rounded);
    }
  }
  float least = std::numeric_limits<float>::infinity();
  float origin = 0.0F;
  float bucketsPerMetre = 1.0F;
  for (std::size_t below = 0; below <= mostLeftOut; ++below) {
    for (std::size_t above = 0; above <= mostLeftOut && below + above < starts.size(); ++above) {
      scaleOver(heights, starts[below], starts[starts.size() - 1 - above]);
      const float share = shareCrowded(heights, starts);
      if (share < least) {
        least = share;
        origin = heights.origin;
        bucketsPerMetre = heights.bucketsPerMetre;
      }
    }
  }
  heights.origin = origin;
  heights.bucketsPerMetre = bucketsPerMetre;
}

// @return the number of buckets in which several slabs start
int fillBuckets(Heights& heights, std::int32_t numBuckets) {
  scaleBuckets(heights, numBuckets);
  const auto size = static_cast<std::size_t>(numBuckets);
  std::vector<std::size_t> count(size, 0);
  for (const double start : heights.slabStarts) {
    // Rounded as a height of the points is: rounding keeps the order of a start and a height.
    ++count[static_cast<std::size_t>(heights.bucket(static_cast<float>(start)))];
  }
  heights.starts.clear();
  heights.masks.clear();
  heights.firstSlabs.clear();
  std::size_t slab = 0;
  int numCrowded = 0;
  for (const std::size_t startsHere : count) {
    const bool isCrowded = startsHere > 1;
    numCrowded += isCrowded ? 1 : 0;
    heights.starts.push_back(isCrowded ? nan : startsHere == 1 ? heights.slabStarts[slab] : infinity);
    heights.masks.push_back(isCrowded ? everyZone : heights.slabMasks[slab]);
    heights.masks.push_back(isCrowded ? everyZone : heights.slabMasks[slab + startsHere]);
    heights.firstSlabs.push_back(static_cast<std::uint16_t>(slab));
    slab += startsHere;
  }
  heights.firstSlabs.push_back(static_cast<std::uint16_t>(slab));
  heights.starts.push_back(infinity);
  heights.masks.insert(heights.masks.end(), {0, 0});
  return numCrowded;
}

}  // namespace

std::uint64_t Heights::zonesAt(double height) const {
  if (std::isnan(height)) {
    return 0;
  }
  // Slabs that start in other buckets are all below or all above.
  const auto number = static_cast<std::size_t>(bucket(static_cast<float>(height)));
  const auto first = slabStarts.begin() + firstSlabs[number];
  const auto above = std::upper_bound(first, slabStarts.begin() + firstSlabs[number + 1], height);
  return slabMasks[static_cast<std::size_t>(above - slabStarts.begin())];
}

std::int32_t Heights::bucket(float height) const {
  const float scaled = (height - origin) * bucketsPerMetre;
  return static_cast<std::int32_t>(std::clamp(scaled, 0.0F, static_cast<float>(lastBucket)) + wholeNumbers -
                                   wholeNumbers);
}

std::size_t Heights::bytes() const {
  return starts.size() * sizeof(double) + startsAsFloat.size() * sizeof(float) +
         masks.size() * sizeof(std::uint64_t) + firstSlabs.size() * sizeof(std::uint16_t) +
         slabStarts.size() * sizeof(double) + slabMasks.size() * sizeof(std::uint64_t);
}

Heights heightsOf(const std::vector<FrozenZone>& zones) {
  Heights slabs;
  makeSlabs(slabs, zones);

  // As few buckets as keep the slabs apart, or nearly so: the table shares the cache with the plan's.
  constexpr std::int32_t mostBuckets = 1024;
  Heights best = slabs;
  int fewestCrowded = fillBuckets(best, 1);
  for (std::int32_t numBuckets = 4; numBuckets <= mostBuckets && fewestCrowded > 0; numBuckets *= 4) {
    Heights candidate = slabs;
    const int numCrowded = fillBuckets(candidate, numBuckets);
    if (numCrowded * best.lastBucket < fewestCrowded * numBuckets || numCrowded == 0) {
      fewestCrowded = numCrowded;
      best = std::move(candidate);
    }
  }
  for (const double start : best.starts) {
    best.startsAsFloat.push_back(roundedUp(start));
  }
  return best;
}

}  // namespace orvantis::filter::classify
