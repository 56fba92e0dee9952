#include "Content.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dTarsel.h>

#include "Helper.h"
#include "text/Text.h"
#include "zones/ShapeCopy.h"

namespace orvantis::python {

using namespace filter::detection;  // NOLINT(google-build-using-namespace)
using ZonePointer = std::shared_ptr<Zone3dBase>;
using FieldPointer = std::shared_ptr<ZoneDetector::EvaluationField>;

namespace {

bool same(const Point& a, const Point& b) {
  return python::same(a.x(), b.x()) && python::same(a.y(), b.y());
}

bool same(const CounterLine::point& a, const CounterLine::point& b) {
  return python::same(a.x(), b.x()) && python::same(a.y(), b.y());
}

bool samePoints(const std::vector<Point>& a, const std::vector<Point>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const Point& p, const Point& q) { return same(p, q); });
}

bool sameSector(const Sector& a, const Sector& b) {
  std::array<double, 3> first{};
  std::array<double, 3> second{};
  a.getSector(first[0], first[1], first[2]);
  b.getSector(second[0], second[1], second[2]);
  return std::equal(first.begin(), first.end(), second.begin(), python::same) &&
         same(a.getOrigin(), b.getOrigin());
}

bool sameRectangle(const Rectangle& a, const Rectangle& b) {
  std::vector<Point> first;
  std::vector<Point> second;
  double turned = 0.0;
  double otherTurned = 0.0;
  a.getRectangle(first, turned);
  b.getRectangle(second, otherTurned);
  return samePoints(first, second) && python::same(turned, otherTurned);
}

bool sameIdentity(const Zone3dTarsel& a, const Zone3dTarsel& b) {
  return a.getId() == b.getId() && a.enabled() == b.enabled() &&
         a.getSpecificSensors() == b.getSpecificSensors();
}

// A zone of the same content that shares nothing with the first.
ZonePointer clone(const ZonePointer& zone) {
  if (!zone) {
    return nullptr;
  }
  const auto* bound = dynamic_cast<const Zone3dTarsel*>(zone.get());
  ZonePointer copy =
      bound != nullptr ? std::make_shared<Zone3dTarsel>(*bound) : std::make_shared<Zone3dBase>(*zone);
  if (const auto shape = zone->getZone2d()) {
    copy->setZone2d(std::const_pointer_cast<Zone>(exactCopy(*shape)));
  }
  return copy;
}

// The library's edits refuse names and append only. Placeholders are put in first and replaced from the last
// one on, so that the first zone of a placeholder's name is always that placeholder.
void replaceExclusionZones(ZoneDetector& detector, const std::vector<ZonePointer>& zones) {
  while (!detector.getExclusionZoneVector().empty()) {
    detector.eraseExclusionZone(detector.getExclusionZoneVector().front()->getName());
  }
  for (std::size_t i = 0; i < zones.size(); ++i) {
    detector.appendExclusionZone(std::make_shared<Zone3dBase>(std::make_shared<Polygon>(std::to_string(i))));
  }
  for (std::size_t i = zones.size(); i-- > 0;) {
    const bool isNameless = zones[i]->getName().empty();
    if (isNameless) {
      zones[i]->setName("-");
    }
    detector.updateExclusionZone(std::to_string(i), zones[i]);
    if (isNameless) {
      zones[i]->setName("");
    }
  }
}

void checkName(const std::vector<ZonePointer>& zones, std::size_t newOne) {
  const std::string name = zones[newOne]->getName();
  const std::string shown = "exclusion zone \"" + toolkit::printable(name) + "\"";
  if (!ZoneDetector::validateZoneNameLength(name)) {
    throw std::invalid_argument(shown + ": its name has " + std::to_string(name.size()) +
                                " bytes; 1 to 18 are allowed");
  }
  for (std::size_t i = 0; i < zones.size(); ++i) {
    if (i != newOne && zones[i]->getName() == name) {
      throw std::invalid_argument(shown + ": there is one of that name already");
    }
  }
}

}  // namespace

bool sameShape(const Zone* a, const Zone* b) {
  if (a == b) {
    return true;
  }
  if (a == nullptr || b == nullptr || typeid(*a) != typeid(*b) || a->name() != b->name()) {
    return false;
  }
  if (const auto* sector = dynamic_cast<const Sector*>(a)) {
    return sameSector(*sector, static_cast<const Sector&>(*b));
  }
  if (const auto* rectangle = dynamic_cast<const Rectangle*>(a)) {
    return sameRectangle(*rectangle, static_cast<const Rectangle&>(*b));
  }
  std::vector<Point> first;
  std::vector<Point> second;
  static_cast<const Polygon&>(*a).getPolygon(first);
  static_cast<const Polygon&>(*b).getPolygon(second);
  return samePoints(first, second);
}

bool sameZone(const Zone3dBase* a, const Zone3dBase* b) {
  if (a == b) {
    return true;
  }
  if (a == nullptr || b == nullptr || typeid(*a) != typeid(*b)) {
    return false;
  }
  if (const auto* bound = dynamic_cast<const Zone3dTarsel*>(a)) {
    if (!sameIdentity(*bound, static_cast<const Zone3dTarsel&>(*b))) {
      return false;
    }
  }
  return python::same(a->getZMin(), b->getZMin()) && python::same(a->getZMax(), b->getZMax()) &&
         sameShape(a->getZone2d().get(), b->getZone2d().get());
}

bool sameField(const ZoneDetector::EvaluationField* a, const ZoneDetector::EvaluationField* b) {
  if (a == b) {
    return true;
  }
  if (a == nullptr || b == nullptr || a->name != b->name) {
    return false;
  }
  return std::equal(a->zones.begin(), a->zones.end(), b->zones.begin(),
                    [](const auto& p, const auto& q) { return sameZone(p.get(), q.get()); });
}

bool sameLine(const CounterLine& a, const CounterLine& b) {
  const auto& first = a.getPoints();
  const auto& second = b.getPoints();
  return a.getName() == b.getName() && std::equal(first.begin(), first.end(), second.begin(), second.end(),
                                                  [](const auto& p, const auto& q) { return same(p, q); });
}

bool sameContent(const toolkit::Configuration& a, const toolkit::Configuration& b) {
  const ZoneDetector& p = a.detector;
  const ZoneDetector& q = b.detector;
  const auto& fields = p.getEvaluationFieldArray();
  const auto& zones = p.getExclusionZoneVector();
  const auto& others = q.getExclusionZoneVector();
  return p.getDebounceTime() == q.getDebounceTime() && p.getMinPoints() == q.getMinPoints() &&
         p.getTriggerZone() == q.getTriggerZone() && p.useSoftwareAPICommand() == q.useSoftwareAPICommand() &&
         p.getEvaluationFieldIndex() == q.getEvaluationFieldIndex() &&
         std::equal(fields.begin(), fields.end(), q.getEvaluationFieldArray().begin(),
                    [](const auto& f, const auto& g) { return sameField(f.get(), g.get()); }) &&
         std::equal(zones.begin(), zones.end(), others.begin(), others.end(),
                    [](const auto& f, const auto& g) { return sameZone(f.get(), g.get()); }) &&
         std::equal(a.lines.begin(), a.lines.end(), b.lines.begin(), b.lines.end(),
                    [](const auto& f, const auto& g) {
                      return f.first == g.first && sameLine(f.second, g.second);
                    }) &&
         std::equal(a.sensorZones.begin(), a.sensorZones.end(), b.sensorZones.begin(), b.sensorZones.end(),
                    [](const auto& f, const auto& g) { return sameZone(f.get(), g.get()); });
}

toolkit::Configuration snapshotOf(const toolkit::Configuration& configuration) {
  toolkit::Configuration copy = configuration;
  auto& fields = copy.detector.getEvaluationFieldArray();
  for (FieldPointer& field : fields) {
    if (field) {
      field = std::make_shared<ZoneDetector::EvaluationField>(*field);
      std::transform(field->zones.begin(), field->zones.end(), field->zones.begin(), clone);
    }
  }
  std::vector<ZonePointer> zones = copy.detector.getExclusionZoneVector();
  std::transform(zones.begin(), zones.end(), zones.begin(), clone);
  replaceExclusionZones(copy.detector, zones);
  for (auto& zone : copy.sensorZones) {
    zone = std::static_pointer_cast<Zone3dTarsel>(clone(zone));
  }
  return copy;
}

void setExclusionZones(ZoneDetector& detector, const std::vector<ZonePointer>& zones,
                       std::optional<std::size_t> newOne) {
  const auto limit = static_cast<std::size_t>(ZoneDetector::MAX_NUM_EXCLUSION_ZONES);
  if (zones.size() > limit) {
    throw std::invalid_argument("there are " + std::to_string(zones.size()) + " exclusion zones; at most " +
                                std::to_string(limit) + " are allowed");
  }
  if (newOne) {
    checkName(zones, *newOne);
  }
  replaceExclusionZones(detector, zones);
}

}  // namespace orvantis::python
