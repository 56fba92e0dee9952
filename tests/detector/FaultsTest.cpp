#include <cstddef>
#include <exception>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

#include "detector/DetectorText.h"
#include "support/AllocationCounter.h"
#include "support/FailingRun.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::FailingAllocation;
using orvantis::testing::loadText;
using orvantis::testing::Outcome;
using orvantis::testing::runFailing;
using orvantis::testing::saveText;
using orvantis::testing::toText;

// Every kind of entry, with names and texts too long for a string's own buffer.
constexpr auto document = R"({"ZoneDetector": {
    "debounceTimeMs": 200, "sensitivity": 8, "triggerActiveLevel": "low", "useSoftwareAPICommand": true,
    "ExclusionZone": [
      {"name": "an exclusion zone", "shape": "sector", "zMin": 1.0000000000000002,
       "Sector": {"minAngle": -0.50000000000000011, "maxAngle": 0.5, "radius": 2}},
      {"name": "gate", "shape": "rectangle",
       "Rectangle": {"rotation": 30, "Point": [{"x": 0, "y": 0}, {"x": 2, "y": 1}]}}],
    "EvaluationField": [
      {"name": "a field of zones", "index": 2, "Zone": [
        {"name": "the zone in front", "index": 1, "shape": "polygon", "zMax": 2.5000000000000004,
         "Polygon": {"Point": [{"x": 0, "y": 0}, {"x": 0, "y": 4}, {"x": 4, "y": 0}]}}]}]}})";

ZoneDetector loaded() {
  SettingsManager settings;
  loadText(settings, document);
  ZoneDetector detector;
  detector.load(settings);
  return detector;
}

TEST(DetectorOutOfMemory, LoadThrowsAndTheDetectorCanBeLoadedAgain) {
  const std::string expected = toText(loaded());
  for (std::size_t n = 0;; ++n) {
    SettingsManager settings;
    loadText(settings, document);
    ZoneDetector detector;
    const Outcome outcome = runFailing(n, [&] { detector.load(settings); });
    if (outcome != Outcome::Failed) {
      ASSERT_EQ(toText(detector), expected)
          << "allocation " << n << ": a half-read document passed for a whole one";
    }
    if (outcome == Outcome::Done) {
      EXPECT_GT(n, 20U);
      break;
    }
    SettingsManager fresh;
    loadText(fresh, document);
    detector.load(fresh);
    ASSERT_EQ(toText(detector), expected) << "allocation " << n;
  }
}

TEST(DetectorOutOfMemory, SaveThrowsAndTheDetectorIsUnchanged) {
  const ZoneDetector detector = loaded();
  const std::string expected = toText(detector);
  SettingsManager whole;
  detector.save(whole);
  for (std::size_t n = 0;; ++n) {
    SettingsManager settings;
    const Outcome outcome = runFailing(n, [&] { detector.save(settings); });
    ASSERT_EQ(toText(detector), expected) << "allocation " << n;
    if (outcome == Outcome::Done) {
      EXPECT_EQ(saveText(settings), saveText(whole));
      EXPECT_GT(n, 20U);
      break;
    }
    ASSERT_EQ(outcome, Outcome::Failed) << "allocation " << n;
    SettingsManager fresh;
    detector.save(fresh);
    ASSERT_EQ(saveText(fresh), saveText(whole)) << "allocation " << n;
  }
}

TEST(DetectorOutOfMemory, ValidateReportsAFaultOrTheShortageAndNeverPasses) {
  std::string faulty = document;
  faulty.replace(faulty.find("the zone in front"), 3, "The very first");
  const std::string fault =
      "Zone The very first zone in front in eval field a field of zones name string length is outside the "
      "limits.";
  int numParserFaults = 0;
  for (std::size_t n = 0;; ++n) {
    std::istringstream input(faulty);
    std::string what = "passed";
    bool isReached = false;
    bool isParserFault = false;
    {
      const FailingAllocation failure(n);
      try {
        ZoneDetector::validate(input);
      } catch (const std::exception& error) {
        isReached = failure.happened();
        const FailingAllocation none(std::numeric_limits<std::size_t>::max() / 2);
        what = error.what();
        isParserFault =
            dynamic_cast<const std::runtime_error*>(&error) != nullptr && what == "std::bad_alloc";
      }
    }
    if (!isReached) {
      EXPECT_EQ(what, fault);
      EXPECT_GT(n, 20U);
      EXPECT_GT(numParserFaults, 10) << "what the parser throws becomes a fault with the same text";
      break;
    }
    numParserFaults += isParserFault ? 1 : 0;
    ASSERT_TRUE(what == "std::bad_alloc" || what == fault) << "allocation " << n << ": " << what;
  }
}

TEST(DetectorOutOfMemory, AssignmentThrowsAndLeavesAWholeDetector) {
  const ZoneDetector source = loaded();
  const std::string expected = toText(source);
  for (std::size_t n = 0;; ++n) {
    ZoneDetector target;
    target.setUseSoftwareAPICommand(true);
    target.setZone(orvantis::testing::zoneNamed("old"), 0, 0);
    const Outcome outcome = runFailing(n, [&] { target = source; });
    if (outcome == Outcome::Done) {
      EXPECT_EQ(toText(target), expected);
      break;
    }
    ASSERT_EQ(outcome, Outcome::Failed) << "allocation " << n;
    ASSERT_EQ(toText(source), expected) << "allocation " << n;
    target = source;
    ASSERT_EQ(toText(target), expected) << "allocation " << n;
  }
}

TEST(DetectorOutOfMemory, ARefusedEditOfTheExclusionZonesLeavesTheList) {
  ZoneDetector detector = loaded();
  const std::string expected = toText(detector);
  const auto zone = orvantis::testing::zoneNamed("a name with 18 by.");
  for (std::size_t n = 0;; ++n) {
    const Outcome outcome = runFailing(n, [&] { detector.appendExclusionZone(zone); });
    if (outcome == Outcome::Done) {
      break;
    }
    ASSERT_EQ(outcome, Outcome::Failed) << "allocation " << n;
    ASSERT_EQ(toText(detector), expected) << "allocation " << n;
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
