#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

#include "detector/DetectorText.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::loadText;
using orvantis::testing::saveText;
using orvantis::testing::toText;

// Makes detectors that a document can hold: every shape and option, names of any bytes, numbers of any size.
class RandomDetectors {
 public:
  explicit RandomDetectors(std::uint64_t seed) : random_(seed) {}

  ZoneDetector next() {
    ZoneDetector detector;
    detector.setDebounceTime(ZoneDetector::Milliseconds(below(2) == 0 ? below(1000) : -below(2000000000)));
    detector.setMinPoints(1 + below(10));
    detector.setTriggerZone(static_cast<ZoneDetector::TriggerZoneValue>(below(2)));
    detector.setUseSoftwareAPICommand(below(2) == 0);
    for (int i = below(33); i > 0; --i) {
      detector.appendExclusionZone(zone());
    }
    for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
      if (below(2) == 0) {
        continue;
      }
      detector.setZone(zone(), field, below(3));
      if (below(2) == 0) {
        detector.setZone(zone(), field, below(3));
      }
      detector.getEvaluationField(field)->name = name();
    }
    return detector;
  }

 private:
  int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random_); }

  double number() {
    static const std::vector<double> special = {
        0.0,   -0.0,    0.1,     1.0 / 3.0, 5e-324, -2.2250738585072014e-308,
        1e308, -1e-300, 1234567, 1e15,      1e16,   123456789012345680.0};
    switch (below(3)) {
      case 0:
        return special[static_cast<std::size_t>(below(static_cast<int>(special.size())))];
      case 1:
        return below(201) - 100;
      default:
        return std::uniform_real_distribution<double>(-100.0, 100.0)(random_);
    }
  }

  std::string name() {
    static const std::vector<std::string> special = {"7", "1e5",  "true",         "null", "\"", "\\", "a.b",
                                                     " ", "\t\n", "\u00e9\u20ac", "{}",   "[]", "-0", "name"};
    if (below(3) == 0) {
      return special[static_cast<std::size_t>(below(static_cast<int>(special.size())))];
    }
    std::string name(static_cast<std::size_t>(1 + below(18)), ' ');
    for (char& c : name) {
      c = static_cast<char>(1 + below(127));
    }
    return name;
  }

  std::shared_ptr<Zone> shape() {
    switch (below(3)) {
      case 0: {
        std::vector<Point> points;
        for (int i = below(17); i > 0; --i) {
          points.emplace_back(number(), number());
        }
        return std::make_shared<Polygon>(name(), points);
      }
      case 1: {
        const std::vector<Point> corners = {{number(), number()}, {number(), number()}};
        return std::make_shared<Rectangle>(name(), corners, number());
      }
      default: {
        std::uniform_real_distribution<double> angles(-10.0, 10.0);
        const double minAngle = angles(random_);
        const double maxAngle = below(4) == 0 ? minAngle + 6.283185307179586 : angles(random_);
        return std::make_shared<Sector>(name(), minAngle, maxAngle, number());
      }
    }
  }

  std::shared_ptr<Zone3dBase> zone() { return std::make_shared<Zone3dBase>(shape(), number(), number()); }

  std::mt19937_64 random_;
};

std::string document(const ZoneDetector& detector) {
  SettingsManager settings;
  detector.save(settings);
  return saveText(settings);
}

ZoneDetector loaded(const std::string& json) {
  SettingsManager settings;
  loadText(settings, json);
  ZoneDetector detector;
  detector.load(settings);
  return detector;
}

TEST(DetectorRoundTrip, ADetectorSurvivesItsDocumentToTheLastBit) {
  RandomDetectors detectors(20240917);
  for (int round = 0; round < 100; ++round) {
    const ZoneDetector detector = detectors.next();
    const std::string json = document(detector);
    SCOPED_TRACE("round " + std::to_string(round) + ":\n" + json);
    std::istringstream input(json);
    ASSERT_NO_THROW(ZoneDetector::validate(input));

    const ZoneDetector second = loaded(json);
    ASSERT_EQ(toText(second), toText(detector));
    const ZoneDetector third = loaded(document(second));
    ASSERT_EQ(toText(third), toText(detector));
  }
}

TEST(DetectorRoundTrip, AssignmentKeepsEverythingThatADocumentKeeps) {
  RandomDetectors detectors(918273);
  for (int round = 0; round < 50; ++round) {
    const ZoneDetector detector = detectors.next();
    SCOPED_TRACE("round " + std::to_string(round) + ":\n" + document(detector));
    ZoneDetector target;
    target.setUseSoftwareAPICommand(detector.useSoftwareAPICommand());
    target = detector;
    ASSERT_EQ(toText(target), toText(detector));
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
