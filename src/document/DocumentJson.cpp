#include "document/DocumentJson.h"

#include <utility>

#include <boost/json/array.hpp>

#include <filter/detection/Sector.h>

#include "document/Shapes.h"

namespace orvantis::toolkit {
namespace {

using boost::json::array;
using boost::json::object;
using filter::detection::CounterLine;
using filter::detection::Point;
using filter::detection::Sector;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

object toObject(const Point& point) {
  return {{"x", point.x()}, {"y", point.y()}};
}

object toObject(const Zone3dBase& zone) {
  object result{{"name", zone.getName()}};
  const auto shape = zone.getZone2d();
  if (shape) {
    result["shape"] = shape->type();
    result["area"] = coveredArea(*shape);
  } else {
    result["shape"] = nullptr;
  }
  result["zMin"] = zone.getZMin();
  result["zMax"] = zone.getZMax();
  if (const auto* sector = dynamic_cast<const Sector*>(shape.get())) {
    double minAngle = 0.0;
    double maxAngle = 0.0;
    double radius = 0.0;
    sector->getSector(minAngle, maxAngle, radius);
    result["minAngle"] = minAngle;
    result["maxAngle"] = maxAngle;
    result["radius"] = radius;
  } else if (shape) {
    array ring;
    for (const Point& vertex : vertices(*shape)) {
      ring.push_back(toObject(vertex));
    }
    result["vertices"] = std::move(ring);
  }
  return result;
}

object toObject(int index, const ZoneDetector& detector) {
  const auto field = detector.getEvaluationField(index);
  array zones;
  for (int z = 0; z < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++z) {
    if (const auto zone = detector.getZone(index, z)) {
      object entry{{"index", z}};
      for (auto& [key, value] : toObject(*zone)) {
        entry.emplace(key, value);
      }
      zones.push_back(std::move(entry));
    }
  }
  return {{"index", index}, {"name", field->name}, {"zones", std::move(zones)}};
}

object toObject(const CounterLine& line) {
  const auto& points = line.getPoints();
  const Point direction = directionOf(line);
  return {{"name", line.getName()},
          {"first", toObject(Point(points[0].x(), points[0].y()))},
          {"second", toObject(Point(points[1].x(), points[1].y()))},
          {"left", toObject(Point(-direction.y() + 0.0, direction.x()))}};
}

}  // namespace

const char* triggerLevelName(const ZoneDetector& detector) {
  return detector.getTriggerZone() == ZoneDetector::TriggerZoneValue::LOW ? "low" : "high";
}

object toObject(const Configuration& configuration) {
  const ZoneDetector& detector = configuration.detector;
  object result{{"debounceTimeMs", detector.getDebounceTime().count()},
                {"sensitivity", detector.getSensitivityFromMinPoints(detector.getMinPoints())},
                {"minPoints", detector.getMinPoints()},
                {"triggerActiveLevel", triggerLevelName(detector)},
                {"useSoftwareAPICommand", detector.useSoftwareAPICommand()}};
  array fields;
  for (int f = 0; f < ZoneDetector::NUM_EVAL_FIELDS; ++f) {
    if (detector.getEvaluationField(f)) {
      fields.push_back(toObject(f, detector));
    }
  }
  result["evaluationFields"] = std::move(fields);
  array exclusionZones;
  for (const auto& zone : detector.getExclusionZoneVector()) {
    exclusionZones.push_back(toObject(*zone));
  }
  result["exclusionZones"] = std::move(exclusionZones);
  array lines;
  for (const auto& [name, line] : configuration.lines) {
    lines.push_back(toObject(line));
  }
  result["counterLines"] = std::move(lines);
  return result;
}

}  // namespace orvantis::toolkit
