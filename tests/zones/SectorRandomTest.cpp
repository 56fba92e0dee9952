#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include <filter/detection/Sector.h>

namespace orvantis::filter::detection {
namespace {

constexpr long double pi = std::numbers::pi_v<long double>;

// Turns from one bearing to another, from 0 to 2 pi.
long double turn(long double from, long double to) {
  const long double difference = std::fmod(to - from, 2 * pi);
  return difference < 0 ? difference + 2 * pi : difference;
}

struct Judgement {
  bool isInside;
  long double distanceFromBorder;
};

// By turning from the first bearing to the point's, where the library compares angles.
Judgement judge(double minAngle, double maxAngle, double radius, double originX, double originY, double x,
                double y) {
  const long double dx = static_cast<long double>(x) - originX;
  const long double dy = static_cast<long double>(y) - originY;
  const long double distance = std::hypot(dx, dy);
  const long double opening = turn(minAngle, maxAngle);
  const long double toPoint = turn(minAngle, std::atan2(dy, dx));
  const long double angularRoom = std::min({std::abs(opening - toPoint), toPoint, 2 * pi - toPoint});
  return {distance <= radius && toPoint <= opening,
          std::min(std::abs(distance - radius), angularRoom * distance)};
}

TEST(SectorRandom, ContainsWhatALongerArithmeticSaysAwayFromTheBorder) {
  std::mt19937_64 engine(46);
  std::uniform_real_distribution<double> angle(-9, 9);
  std::uniform_real_distribution<double> radius(1, 30);
  std::uniform_real_distribution<double> coordinate(-40, 40);
  int numInside = 0;
  int numWrapping = 0;
  for (int i = 0; i < 50000; ++i) {
    const double minAngle = angle(engine);
    const double maxAngle = angle(engine);
    const double r = radius(engine);
    const double originX = coordinate(engine);
    const double originY = coordinate(engine);
    const double x = originX + coordinate(engine) / 2;
    const double y = originY + coordinate(engine) / 2;
    const Judgement expected = judge(minAngle, maxAngle, r, originX, originY, x, y);
    const long double opening = turn(minAngle, maxAngle);
    if (expected.distanceFromBorder < 1e-9L || std::min(opening, 2 * pi - opening) < 0.0002L) {
      continue;
    }
    const Sector sector("s", minAngle, maxAngle, r, Point(originX, originY));
    ASSERT_EQ(sector.within(Point(x, y)), expected.isInside)
        << x << " " << y << " in " << minAngle << " to " << maxAngle << " of " << r << " about " << originX
        << " " << originY;
    double low = 0;
    double high = 0;
    double ignored = 0;
    sector.getSector(low, high, ignored);
    numInside += expected.isInside ? 1 : 0;
    numWrapping += expected.isInside && low > high ? 1 : 0;
  }
  EXPECT_GT(numInside, 5000);
  EXPECT_GT(numWrapping, 2000);
}

}  // namespace
}  // namespace orvantis::filter::detection
