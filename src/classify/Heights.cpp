#include "classify/Heights.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

namespace orvantis::filter::classify {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

double next(double height) {
  return std::nextafter(height, infinity);
}

float roundedUp(double height) {
  const auto rounded = static_cast<float>(height);
  return static_cast<double>(rounded) < height
             ? std::nextafter(rounded, std::numeric_limits<float>::infinity())
             : rounded;
}

std::vector<double> startsOf(const std::vector<FrozenZone>& zones) {
  std::vector<double> starts;
  for (const FrozenZone& zone : zones) {
    starts.push_back(zone.zMin);
    if (zone.zMax < infinity) {
      starts.push_back(next(zone.zMax));
    }
  }
  std::ranges::sort(starts);
  const auto repeated = std::ranges::unique(starts);
  starts.erase(repeated.begin(), repeated.end());
  return starts;
}

std::uint64_t zonesAt(const std::vector<FrozenZone>& zones, double height) {
  std::uint64_t mask = 0;
  for (const FrozenZone& zone : zones) {
    if (height >= zone.zMin && height <= zone.zMax) {
      mask |= std::uint64_t{1} << zone.bit;
    }
  }
  return mask;
}

void fillBuckets(Heights& heights, std::int32_t numBuckets) {
  const std::vector<double>& starts = heights.starts;
  const auto first = std::ranges::find_if(starts, [](double start) { return std::isfinite(start); });
  const auto last =
      std::find_if(starts.rbegin(), starts.rend(), [](double start) { return std::isfinite(start); });
  if (first != starts.end()) {
    const auto lowest = static_cast<float>(*first);
    const auto highest = static_cast<float>(*last);
    const float scale = static_cast<float>(numBuckets) / (highest - lowest);
    const bool isUsable = std::isfinite(lowest) && std::isfinite(scale) && scale > 0.0F;
    heights.origin = std::isfinite(lowest) ? lowest : 0.0F;
    heights.bucketsPerMetre = isUsable ? scale : 1.0F;
  }
  heights.lastBucket = numBuckets - 1;
  std::vector<std::int32_t> count(static_cast<std::size_t>(numBuckets), 0);
  for (const double start : starts) {
    // Rounded as a height of the points is: rounding keeps the order of a start and a height.
    ++count[static_cast<std::size_t>(heights.bucket(static_cast<float>(start)))];
  }
  heights.startsPerBucket = *std::ranges::max_element(count);
  heights.startsBelow.assign(count.size(), 0);
  for (std::size_t i = 1; i < count.size(); ++i) {
    heights.startsBelow[i] = heights.startsBelow[i - 1] + count[i - 1];
  }
}

}  // namespace

std::int32_t Heights::bucket(float height) const {
  const float scaled = (height - origin) * bucketsPerMetre;
  return static_cast<std::int32_t>(std::clamp(scaled, 0.0F, static_cast<float>(lastBucket)));
}

std::size_t Heights::bytes() const {
  return startsBelow.size() * sizeof(std::int32_t) + starts.size() * sizeof(double) +
         startsAsFloat.size() * sizeof(float) + masks.size() * sizeof(std::uint64_t);
}

Heights heightsOf(const std::vector<FrozenZone>& zones) {
  Heights heights;
  heights.starts = startsOf(zones);
  for (const double start : heights.starts) {
    heights.startsAsFloat.push_back(roundedUp(start));
  }

  // A few buckets more cost less than another comparison for every point.
  constexpr std::int32_t mostBuckets = 1024;
  std::optional<Heights> best;
  for (std::int32_t numBuckets = 1; numBuckets <= mostBuckets; numBuckets *= 4) {
    Heights candidate = heights;
    fillBuckets(candidate, numBuckets);
    if (!best || candidate.startsPerBucket < best->startsPerBucket) {
      best = std::move(candidate);
    }
  }
  heights = std::move(*best);

  heights.masks.push_back(0);
  for (const double start : heights.starts) {
    heights.masks.push_back(zonesAt(zones, start));
  }
  // NaN has a bucket of its own, from which no comparison leads on, and a slab without zones.
  heights.startsBelow.push_back(static_cast<std::int32_t>(heights.starts.size()) + 1);
  heights.masks.push_back(0);
  const std::size_t numStarts = heights.starts.size();
  const std::size_t padded = numStarts + 1 + static_cast<std::size_t>(heights.startsPerBucket);
  heights.starts.resize(padded, std::numeric_limits<double>::quiet_NaN());
  heights.startsAsFloat.resize(padded, std::numeric_limits<float>::quiet_NaN());
  return heights;
}

}  // namespace orvantis::filter::classify
