// Compares the batch classifier with the zones: every bit is the zone's own answer, for any numbers.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/ZoneDetector.h>

#include "Bytes.h"
#include "Check.h"

using namespace orvantis::filter::classify;
using namespace orvantis::filter::detection;
using orvantis::fuzz::Bytes;

namespace {

// Mostly small numbers, of which many are equal; sometimes any number.
double takeNumber(Bytes& bytes) {
  const auto kind = bytes.take<std::uint8_t>();
  if (kind >= 0xF0U) {
    return bytes.take<double>();
  }
  return (kind - 100) * 0.25 + (kind % 4 == 3 ? bytes.take<std::int8_t>() * 1e-7 : 0.0);
}

Point takePoint(Bytes& bytes) {
  const double x = takeNumber(bytes);
  return {x, takeNumber(bytes)};
}

std::shared_ptr<Zone> takeShape(Bytes& bytes) {
  const auto kind = bytes.take<std::uint8_t>();
  if (kind % 3 == 0) {
    std::vector<Point> ring;
    for (unsigned i = kind / 3 % 9; i != 0; --i) {
      ring.push_back(takePoint(bytes));
    }
    return std::make_shared<Polygon>("polygon", ring);
  }
  const Point first = takePoint(bytes);
  const Point second = takePoint(bytes);
  const double last = takeNumber(bytes);
  if (kind % 3 == 1) {
    return std::make_shared<Rectangle>("rectangle", std::vector<Point>{first, second}, last * 15.0);
  }
  return std::make_shared<Sector>("sector", first.x(), first.y(), last, second);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  ZoneDetector detector;
  const int numZones = bytes.take<std::uint8_t>() % 5;
  for (int zone = 0; zone < numZones; ++zone) {
    const std::shared_ptr<Zone> shape = takeShape(bytes);
    const double zMin = takeNumber(bytes);
    detector.setZone(std::make_shared<Zone3dBase>(shape, zMin, takeNumber(bytes)), zone, zone % 3);
  }

  std::vector<double> points;
  while (!bytes.isEmpty() && points.size() < 3000) {
    points.push_back(takeNumber(bytes));
  }
  points.resize(points.size() / 3 * 3);
  const std::size_t numPoints = points.size() / 3;
  std::vector<std::uint64_t> masks(numPoints);
  const PointClassifier classifier(detector);
  classifier.classify(PointsView<double>::interleaved(points.data(), 3 * sizeof(double), numPoints),
                      masks.data());

  for (std::size_t i = 0; i < numPoints; ++i) {
    std::uint64_t expected = 0;
    for (int zone = 0; zone < numZones; ++zone) {
      if (detector.getZone(zone, zone % 3)->within(points[3 * i], points[3 * i + 1], points[3 * i + 2])) {
        expected |= std::uint64_t{1} << PointClassifier::zoneBit(zone, zone % 3);
      }
    }
    ORVANTIS_FUZZ_CHECK(masks[i] == expected);
  }
  return 0;
}
