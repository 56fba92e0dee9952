#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/Sector.h>

#include "AtOnce.h"
#include "Site.h"

namespace orvantis::testing {
namespace {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;
using namespace filter::detection;

std::vector<std::uint64_t> masksOf(const PointClassifier& classifier) {
  const auto points = gridOfPoints();
  std::vector<std::uint64_t> masks(points.size());
  classifier.classify(viewOf(points), masks.data());
  return masks;
}

TEST(ClassifierAtOnce, ManyThreadsShareAFrame) {
  constexpr int threads = 4;
  const PointClassifier classifier(detectorOfEveryShape());
  const std::vector<std::uint64_t> expected = masksOf(classifier);
  const ZoneCounts whole = classifier.count(viewOf(gridOfPoints()));
  const auto points = gridOfPoints();
  for (int round = 0; round < 20; ++round) {
    std::vector<std::uint64_t> masks(points.size());
    std::vector<ZoneCounts> counts(threads);
    atOnce(threads, [&](int thread) {
      const std::size_t first = points.size() * static_cast<std::size_t>(thread) / threads;
      const std::size_t last = points.size() * static_cast<std::size_t>(thread + 1) / threads;
      counts[static_cast<std::size_t>(thread)] =
          classifier.count(viewOf(points, first, last - first), masks.data() + first);
    });
    EXPECT_EQ(masks, expected);
    ZoneCounts sum;
    for (const ZoneCounts& part : counts) {
      for (std::size_t bit = 0; bit < sum.inside.size(); ++bit) {
        sum.inside[bit] += part.inside[bit];
      }
      sum.excluded += part.excluded;
    }
    EXPECT_EQ(sum.inside, whole.inside);
    EXPECT_EQ(sum.excluded, whole.excluded);
  }
}

TEST(ClassifierAtOnce, CopiesComeAndGoOnManyThreads) {
  std::optional<PointClassifier> original(detectorOfEveryShape());
  const std::vector<std::uint64_t> expected = masksOf(*original);
  std::vector<PointClassifier> copies(4, *original);
  original.reset();  // the last of the copies to go frees what they share
  atOnce(4, [&](int thread) {
    PointClassifier copy = copies[static_cast<std::size_t>(thread)];
    for (int round = 0; round < 10; ++round) {
      const PointClassifier another = copy;
      EXPECT_EQ(masksOf(another), expected);
      copy = another;
    }
  });
}

TEST(ClassifierAtOnce, TheDetectorMayBeEditedMeanwhile) {
  ZoneDetector detector = detectorOfEveryShape();
  const PointClassifier classifier(detector);
  const std::vector<std::uint64_t> expected = masksOf(classifier);
  atOnce(3, [&](int thread) {
    for (int round = 0; round < 20; ++round) {
      if (thread != 0) {
        EXPECT_EQ(masksOf(classifier), expected);
        continue;
      }
      const std::shared_ptr<Zone3dBase> zone = detector.getZone(0, 0);
      zone->setZMax(round);
      zone->setName("changed");
      zone->setZone2d(std::make_shared<Sector>("other", 0.0, 1.0, round));
      detector.setMinPoints(round);
    }
  });
}

}  // namespace
}  // namespace orvantis::testing
