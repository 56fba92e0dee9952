#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/ZoneDetector.h>

#include "classify/Clouds.h"
#include "classify/Contestants.h"
#include "classify/ZoneIndex.h"

namespace orvantis::benchmarks {

using Masks = std::vector<std::uint64_t>;

/// One site with one cloud: what its benchmarks share, and the masks of the points from the zones' own
/// answers.
struct Setting {
  Setting(filter::detection::ZoneDetector zones, Cloud points);

  filter::detection::ZoneDetector detector;
  filter::classify::ZoneIndex index;
  Cloud cloud;
  Masks expected;
  filter::classify::ZoneCounts counts;
  Masks masks;  ///< where benchmarks write their masks
};

/// A setting that is made when its first benchmark runs, and kept.
class LazySetting {
 public:
  using Make = std::function<std::unique_ptr<Setting>()>;
  explicit LazySetting(Make make) : make_(std::move(make)) {}

  Setting& get() {
    if (!setting_) {
      setting_ = make_();
    }
    return *setting_;
  }

 private:
  Make make_;
  std::unique_ptr<Setting> setting_;
};
using SharedSetting = std::shared_ptr<LazySetting>;

/// Ends the program unless these are the masks from the zones' own answers, for the first points of a
/// setting.
void checkMasks(const std::string& name, const Setting& setting, const Masks& masks);
/// The same for counts.
void checkCounts(const std::string& name, const Setting& setting, const filter::classify::ZoneCounts& counts);

/// While it exists, only one kind of processor instructions is used; 0 means the best one.
class Target {
 public:
  explicit Target(std::int64_t target);
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;
  ~Target();

  static std::vector<std::int64_t> all();
};

}  // namespace orvantis::benchmarks
