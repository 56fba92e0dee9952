#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include "classify/CriticalCases.h"
#include "classify/Layouts.h"
#include "classify/OnlyTarget.h"
#include "classify/Reference.h"
#include "classify/ZoneIndex.h"

namespace orvantis::testing {
namespace {

using filter::classify::PointsView;
using filter::classify::ZoneCounts;
using filter::classify::ZoneIndex;
using filter::detection::ZoneDetector;

// For the long suite this file is built with more points.
#ifndef ORVANTIS_DIFFERENTIAL_POINTS
#define ORVANTIS_DIFFERENTIAL_POINTS 1000000
#endif
constexpr std::size_t numPoints = ORVANTIS_DIFFERENTIAL_POINTS;
constexpr std::size_t pointsPerDetector = 4000;

struct Tally {
  std::size_t compared = 0;
  std::size_t different = 0;
};

class Comparison {
 public:
  explicit Comparison(double safety) : safety_(safety) {}

  Tally run(std::uint64_t seed, std::size_t size) {
    CriticalCases cases(seed);
    for (std::size_t number = 0; tally_.compared < size; ++number) {
      const int numZones = number % 16 == 0 ? 48 : 1 + static_cast<int>(number % 11);
      const ZoneDetector detector = cases.detector(numZones);
      const ZoneIndex index(detector, safety_);
      where_ = "seed " + std::to_string(seed) + ", detector " + std::to_string(number);
      compare<double>(detector, index, cases.points(detector, pointsPerDetector, false), number);
      compare<float>(detector, index, cases.points(detector, pointsPerDetector, true), number);
      if (safety_ == 1.0 && tally_.different > 10) {
        break;
      }
    }
    return tally_;
  }

 private:
  template <typename Real>
  void compare(const ZoneDetector& detector, const ZoneIndex& index, const std::vector<Point3>& points,
               std::size_t number) {
    std::vector<std::uint64_t> expected;
    for (const Point3& point : points) {
      expected.push_back(maskByZones(detector, point.x, point.y, point.z));
    }
    const std::vector<LayoutKind> layouts = everyLayout<Real>();
    for (const std::int64_t target : targets_) {
      const OnlyTarget only(target);
      // Frames of all sizes, whose last points do not fill a group.
      for (const std::size_t size : {points.size(), number * 7 % 67}) {
        const LayoutKind& kind = layouts[number++ % layouts.size()];
        // Records that are far apart take too much memory for many.
        const std::size_t most = kind.stride > 1000 ? 40 : size;
        compare<Real>(index,
                      {points.begin(), points.begin() + static_cast<std::ptrdiff_t>(std::min(size, most))},
                      expected, kind, target);
      }
    }
    tally_.compared += points.size();
  }

  template <typename Real>
  void compare(const ZoneIndex& index, const std::vector<Point3>& points,
               const std::vector<std::uint64_t>& expected, const LayoutKind& kind, std::int64_t target) {
    const Layout<Real> layout(points, kind);
    std::vector<std::uint64_t> masks(points.size(), ~std::uint64_t{0});
    index.classify(layout.view(), masks.data());
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (masks[i] != expected[i]) {
        ++tally_.different;
        report<Real>(points[i], masks[i], expected[i], kind, target);
      }
    }
    const ZoneCounts counts = index.count(layout.view(), nullptr);
    EXPECT_EQ(countsOf(points, masks), textOf(counts))
        << where_ << ", " << kind.name << ", " << hwy::TargetName(target);
    std::vector<std::uint64_t> counted(points.size(), ~std::uint64_t{0});
    EXPECT_EQ(textOf(index.count(layout.view(), counted.data())), textOf(counts));
    EXPECT_EQ(counted, masks) << where_ << ", " << kind.name << ", " << hwy::TargetName(target);
  }

  template <typename Real>
  void report(const Point3& point, std::uint64_t got, std::uint64_t expected, const LayoutKind& kind,
              std::int64_t target) const {
    if (safety_ == 1.0) {
      ADD_FAILURE() << where_ << ", " << hwy::TargetName(target) << ", " << sizeof(Real) << " bytes, "
                    << kind.name << ": point (" << std::hexfloat << point.x << ", " << point.y << ", "
                    << point.z << ") has mask " << std::hex << got << ", its zones say " << expected;
    }
  }

  static std::string textOf(const ZoneCounts& counts) {
    std::string text =
        std::to_string(counts.excluded) + " excluded, " + std::to_string(counts.noReturns) + " not finite:";
    for (const std::uint64_t inside : counts.inside) {
      text += ' ' + std::to_string(inside);
    }
    return text;
  }

  static std::string countsOf(const std::vector<Point3>& points, const std::vector<std::uint64_t>& masks) {
    ZoneCounts counts;
    for (std::size_t i = 0; i < points.size(); ++i) {
      const Point3& point = points[i];
      if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
        ++counts.noReturns;
        continue;
      }
      if (masks[i] >> 24U != 0) {
        ++counts.excluded;
        continue;
      }
      for (std::size_t zone = 0; zone < 24; ++zone) {
        counts.inside[zone] += masks[i] >> zone & 1U;
      }
    }
    return textOf(counts);
  }

  double safety_;
  std::vector<std::int64_t> targets_ = everyTarget();
  std::string where_;
  Tally tally_;
};

TEST(ClassifierDifferential, EveryMaskIsWhatTheZonesThemselvesSay) {
  const Tally tally = Comparison(1.0).run(20260101, numPoints);
  EXPECT_EQ(tally.different, 0U);
  EXPECT_GE(tally.compared, numPoints);
}

// Shows that the cases above reach the places where the margins matter.
TEST(ClassifierDifferential, WithoutSafetyMarginsMasksDiffer) {
  const Tally tally = Comparison(0.0).run(20260101, std::min<std::size_t>(numPoints, 400000));
  EXPECT_GT(tally.different, 100U);
}

}  // namespace
}  // namespace orvantis::testing
