#include "detector/DetectorText.h"

#include <cmath>
#include <cstddef>
#include <sstream>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

namespace orvantis::testing {

using filter::detection::Point;
using filter::detection::Polygon;
using filter::detection::Rectangle;
using filter::detection::Sector;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

namespace {

void write(std::ostream& out, const std::vector<Point>& points) {
  for (const Point& point : points) {
    out << " (" << point.x() << ", " << point.y() << ')';
  }
}

void write(std::ostream& out, const Sector& sector) {
  double minAngle = 0.0;
  double maxAngle = 0.0;
  double radius = 0.0;
  sector.getSector(minAngle, maxAngle, radius);
  out << " from " << minAngle;
  // The document writes a whole disc with an opening of 2 pi, which costs the second angle its last bits.
  if (std::abs(minAngle - maxAngle) < 0.0001) {
    out << " all round";
  } else {
    out << " to " << maxAngle;
  }
  out << " radius " << radius;
}

void write(std::ostream& out, const filter::detection::Zone& shape) {
  out << shape.type() << " '" << shape.name() << '\'';
  std::vector<Point> points;
  if (const auto* const sector = dynamic_cast<const Sector*>(&shape)) {
    write(out, *sector);
  } else if (const auto* const rectangle = dynamic_cast<const Rectangle*>(&shape)) {
    double rotation = 0.0;
    rectangle->getRectangle(points, rotation);
    write(out, points);
    out << " turned " << rotation;
  } else if (const auto* const polygon = dynamic_cast<const Polygon*>(&shape)) {
    polygon->getPolygon(points);
    write(out, points);
  }
}

}  // namespace

std::shared_ptr<Zone3dBase> zoneNamed(const std::string& name) {
  const std::vector<Point> square = {{0.0, 0.0}, {0.0, 1.0}, {1.0, 1.0}, {1.0, 0.0}};
  return std::make_shared<Zone3dBase>(std::make_shared<Polygon>(name, square));
}

std::vector<std::shared_ptr<Zone3dBase>> zonesNamed(const std::string& prefix, int first, int count) {
  std::vector<std::shared_ptr<Zone3dBase>> zones;
  for (int i = first; i < first + count; ++i) {
    zones.push_back(zoneNamed(prefix + std::to_string(i)));
  }
  return zones;
}

std::vector<std::string> namesOf(const std::vector<std::shared_ptr<Zone3dBase>>& zones) {
  std::vector<std::string> names;
  for (const auto& zone : zones) {
    names.push_back(zone->getName());
  }
  return names;
}

std::string toText(const Zone3dBase& zone) {
  std::ostringstream out;
  out << std::hexfloat;
  if (const auto shape = zone.getZone2d()) {
    write(out, *shape);
  } else {
    out << "no shape";
  }
  out << ", heights " << zone.getZMin() << " to " << zone.getZMax();
  return out.str();
}

std::string toText(const ZoneDetector& detector) {
  std::ostringstream out;
  out << "version " << detector.getVersion() << "\ndebounce " << detector.getDebounceTime().count()
      << "\nminimum points " << detector.getMinPoints() << "\ntrigger "
      << static_cast<int>(detector.getTriggerZone()) << "\nsoftware command "
      << detector.useSoftwareAPICommand() << '\n';
  for (const auto& zone : detector.getExclusionZoneVector()) {
    out << "exclusion zone: " << toText(*zone) << '\n';
  }
  for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
    const auto evaluationField = detector.getEvaluationField(field);
    if (!evaluationField) {
      continue;
    }
    out << "field " << field << " '" << evaluationField->name << "'\n";
    for (std::size_t zone = 0; zone < evaluationField->zones.size(); ++zone) {
      if (const auto& zone3d = evaluationField->zones.at(zone)) {
        out << "  zone " << zone << ": " << toText(*zone3d) << '\n';
      }
    }
  }
  return out.str();
}

}  // namespace orvantis::testing
