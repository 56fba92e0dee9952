#include "classify/Setting.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>

#include <hwy/highway.h>

namespace orvantis::benchmarks {
namespace {

using filter::classify::ZoneCounts;

constexpr unsigned numFieldZones = 24;

ZoneCounts countsOf(const Cloud& cloud, const Masks& masks) {
  ZoneCounts counts;
  for (std::size_t i = 0; i < masks.size(); ++i) {
    if (!std::isfinite(cloud.x[i]) || !std::isfinite(cloud.y[i]) || !std::isfinite(cloud.z[i])) {
      ++counts.noReturns;
    } else if (masks[i] >> numFieldZones != 0) {
      ++counts.excluded;
    } else {
      for (std::size_t zone = 0; zone < numFieldZones; ++zone) {
        counts.inside[zone] += masks[i] >> zone & 1U;
      }
    }
  }
  return counts;
}

[[noreturn]] void refuse(const std::string& name, const std::string& what) {
  std::cerr << name << " gives other " << what << " than the zones\n";
  std::exit(EXIT_FAILURE);
}

void select(std::int64_t target) {
  hwy::SetSupportedTargetsForTest(target);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

}  // namespace

Setting::Setting(filter::detection::ZoneDetector zones, Cloud points)
    : detector(std::move(zones)),
      index(detector),
      cloud(std::move(points)),
      expected(cloud.size()),
      masks(cloud.size()) {
  perZoneCalls(detector)->run(cloud, cloud.size(), expected.data());
  counts = countsOf(cloud, expected);
}

void checkMasks(const std::string& name, const Setting& setting, const Masks& masks) {
  if (!std::equal(masks.begin(), masks.end(), setting.expected.begin())) {
    refuse(name, "masks");
  }
}

void checkCounts(const std::string& name, const Setting& setting, const ZoneCounts& counts) {
  const ZoneCounts& expected = setting.counts;
  if (counts.inside != expected.inside || counts.excluded != expected.excluded ||
      counts.noReturns != expected.noReturns) {
    refuse(name, "counts");
  }
}

Target::Target(std::int64_t target) {
  select(target);
}

Target::~Target() {
  select(0);
}

std::vector<std::int64_t> Target::all() {
  std::vector<std::int64_t> targets;
  for (std::int64_t rest = hwy::SupportedTargets() & HWY_TARGETS; rest != 0; rest &= rest - 1) {
    targets.push_back(rest & -rest);
  }
  return targets;
}

}  // namespace orvantis::benchmarks
