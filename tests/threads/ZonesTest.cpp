#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "AtOnce.h"
#include "Site.h"

namespace orvantis::testing {
namespace {

using namespace filter::detection;

Zone3dBase::polygon boxAt(double x, double y) {
  Zone3dBase::polygon box;
  box.outer() = {{x, y}, {x, y + 1.5}, {x + 1.5, y + 1.5}, {x + 1.5, y}};
  return box;
}

// Every const call of a zone and of its shape, as one text.
std::string answersOf(const Zone3dBase& zone) {
  const std::shared_ptr<Zone> shape = zone.getZone2d();
  std::ostringstream text;
  text << zone.getName() << shape->name() << shape->type() << shape->area() << zone.getHeight();
  for (int i = -6; i <= 6; ++i) {
    for (int j = -6; j <= 6; ++j) {
      const Zone3dBase::polygon box = boxAt(i, j);
      text << shape->within(Point(i, j)) << shape->within(box) << shape->intersects(box)
           << shape->overlaps(box) << zone.within(i, j, 1.0) << zone.within(box, 0.5F, 1.5F)
           << zone.intersects(box, 1.0F, 3.0F) << zone.overlaps(box, 0.0F, 1.0F);
    }
  }
  SettingsManager settings;
  shape->save(settings);
  shape->makeCopy()->save(settings);
  settings.saveStream(text, SettingsManager::JSON);
  return text.str();
}

TEST(ZonesAtOnce, EveryShapeAnswersManyThreads) {
  const auto zones = zonesOfEveryShape();
  std::vector<std::string> expected;
  for (const auto& zone : zones) {
    expected.push_back(answersOf(*zone));
  }
  atOnce(4, [&](int) {
    for (int round = 0; round < 3; ++round) {
      for (std::size_t i = 0; i < zones.size(); ++i) {
        EXPECT_EQ(answersOf(*zones[i]), expected[i]);
      }
    }
  });
}

std::string documentOf(const ZoneDetector& detector) {
  SettingsManager settings;
  detector.save(settings);
  std::ostringstream text;
  settings.saveStream(text, SettingsManager::JSON);
  return text.str();
}

TEST(ZonesAtOnce, ADetectorIsCopiedAndSavedByManyThreads) {
  const ZoneDetector detector = detectorOfEveryShape();
  const std::string expected = documentOf(detector);
  ASSERT_NE(expected.find("Pillar"), std::string::npos);
  atOnce(4, [&](int thread) {
    for (int round = 0; round < 10; ++round) {
      ZoneDetector copy;
      copy = detector;  // clones the zones
      EXPECT_EQ(documentOf(copy), expected);
      copy.getZone(0, 0)->setZMax(10.0 + thread);
      EXPECT_NE(documentOf(copy), expected);
      EXPECT_EQ(documentOf(detector), expected);
    }
  });
}

}  // namespace
}  // namespace orvantis::testing
