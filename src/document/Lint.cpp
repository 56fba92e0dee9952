#include "document/Lint.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <locale>
#include <map>
#include <numbers>
#include <optional>
#include <set>
#include <span>
#include <sstream>
#include <string_view>
#include <utility>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dBase.h>
#include <filter/detection/ZoneDetector.h>

#include "document/EdgeCrossings.h"
#include "document/LocatedJson.h"
#include "document/Spelling.h"
#include "text/LowerCase.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;
using filter::detection::Polygon;
using filter::detection::Rectangle;
using filter::detection::Sector;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

using Keys = std::vector<std::string_view>;

// What the library reads, place by place.
const Keys documentKeys = {"$schema", "ZoneDetector", "CounterLines", "Zone3d"};
const Keys detectorKeys = {
    "$schema",
    "version",
    "debounceTimeMs",
    "sensitivity",
    "triggerActiveLevel",
    "useSoftwareAPICommand",
    "EvaluationField",
    "ExclusionZone",
};
const Keys fieldKeys = {"name", "index", "Zone"};
const Keys shapeKeys = {"Polygon", "Rectangle", "Sector"};
const Keys pointKeys = {"x", "y"};

// These are lists; any other key that stands twice is read once.
const Keys listKeys = {"EvaluationField", "ExclusionZone", "Zone", "Point", "CounterLine", "Zone3d", "lidar"};

bool contains(const Keys& keys, std::string_view key) {
  return std::ranges::find(keys, key) != keys.end();
}

std::string quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::string coordinates(const Point& point) {
  return "(" + toText(point.x(), 6) + ", " + toText(point.y(), 6) + ")";
}

// A value's text as the settings store converts it: one number in the classic locale, blanks around it.
template <typename T>
std::optional<T> convert(const std::string& text) {
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  T value{};
  in >> value;
  if (!in.eof()) {
    in >> std::ws;
  }
  return !in.fail() && in.eof() ? std::optional<T>(value) : std::nullopt;
}

bool isTruthValue(const std::string& text) {
  return text == "true" || text == "false" || text == "1" || text == "0";
}

// A node together with its path.
struct Place {
  const LocatedNode& node;
  std::string path;
};

class Linter {
 public:
  std::vector<Finding> run(const LocatedNode& root) {
    const Place document{root, ""};
    if (isObject(document, "the document")) {
      checkDocument(document);
    }
    std::ranges::stable_sort(findings_, {}, &Finding::line);
    return std::move(findings_);
  }

 private:
  enum class ZoneKind { InField, Exclusion, SensorBound };

  void checkDocument(const Place& document) {
    const LocatedNode* detector = document.node.find("ZoneDetector");
    Keys keys = documentKeys;
    if (detector == nullptr) {
      keys.insert(keys.end(), detectorKeys.begin(), detectorKeys.end());
    }
    checkKeys(document, keys);
    if (detector != nullptr) {
      const Place place = child(document, *detector);
      if (isObject(place, "ZoneDetector")) {
        checkKeys(place, detectorKeys);
        checkDetector(place);
      }
    } else {
      checkDetector(document);
    }
    if (const LocatedNode* lines = document.node.find("CounterLines")) {
      checkCounterLines(child(document, *lines));
    }
    std::map<std::string, std::size_t> names;
    for (const Place& zone : elements(document, "Zone3d")) {
      checkZone(zone, ZoneKind::SensorBound, names);
    }
  }

  void checkDetector(const Place& detector) {
    checkOptions(detector);
    const std::vector<Place> exclusions = elements(detector, "ExclusionZone");
    checkCount(exclusions, ZoneDetector::MAX_NUM_EXCLUSION_ZONES, "exclusion zones");
    std::map<std::string, std::size_t> names;
    for (const Place& zone : exclusions) {
      checkZone(zone, ZoneKind::Exclusion, names);
    }
    const std::vector<Place> fields = elements(detector, "EvaluationField");
    const bool holdsOtherThings =
        detector.node.find("CounterLines") != nullptr || detector.node.find("Zone3d") != nullptr;
    if (fields.empty() && !holdsOtherThings) {
      report(detector, "no \"EvaluationField\": nothing will be detected");
    }
    checkCount(fields, ZoneDetector::NUM_EVAL_FIELDS, "evaluation fields");
    names.clear();
    std::map<int, std::size_t> indices;
    for (const Place& field : fields) {
      if (isObject(field, "an evaluation field")) {
        checkField(field, names, indices);
      }
    }
  }

  void checkOptions(const Place& detector) {
    if (const LocatedNode* version = detector.node.find("version");
        version != nullptr && !ZoneDetector::checkVersion(version->text)) {
      report(child(detector, *version), quoted(version->text) + " is newer than " +
                                            ZoneDetector::currentAPIVersion() + ", which this program reads");
    }
    if (const auto debounce = wholeNumber(detector, "debounceTimeMs"); debounce && *debounce < 0) {
      report(child(detector, *detector.node.find("debounceTimeMs")), "a time below 0 ms");
    }
    if (const auto sensitivity = wholeNumber(detector, "sensitivity");
        sensitivity && (*sensitivity < 1 || *sensitivity > 10)) {
      report(child(detector, *detector.node.find("sensitivity")),
             std::to_string(*sensitivity) + " is outside 1..10; the most sensitive, 10, is taken instead");
    }
    if (const LocatedNode* level = detector.node.find("triggerActiveLevel");
        level != nullptr && lowerCase(level->text) != "high" && lowerCase(level->text) != "low") {
      report(child(detector, *level), quoted(level->text) + " is neither \"high\" nor \"low\"");
    }
    if (const LocatedNode* command = detector.node.find("useSoftwareAPICommand");
        command != nullptr && !isTruthValue(command->text)) {
      report(child(detector, *command), "is neither true nor false");
    }
  }

  void checkField(const Place& field, std::map<std::string, std::size_t>& names,
                  std::map<int, std::size_t>& indices) {
    checkKeys(field, fieldKeys);
    checkName(field, names);
    checkIndex(field, ZoneDetector::NUM_EVAL_FIELDS, indices);
    const std::vector<Place> zones = elements(field, "Zone");
    if (zones.empty()) {
      report(field, "no \"Zone\"; a field has 1 to 3");
    }
    checkCount(zones, ZoneDetector::NUM_ZONES_PER_EVAL_FIELD, "zones in a field");
    std::map<std::string, std::size_t> zoneNames;
    std::map<int, std::size_t> zoneIndices;
    for (const Place& zone : zones) {
      checkZone(zone, ZoneKind::InField, zoneNames);
      if (zone.node.kind == LocatedNode::Kind::Object) {
        checkIndex(zone, ZoneDetector::NUM_ZONES_PER_EVAL_FIELD, zoneIndices);
      }
    }
  }

  void checkZone(const Place& zone, ZoneKind kind, std::map<std::string, std::size_t>& names) {
    if (!isObject(zone, "a zone")) {
      return;
    }
    checkName(zone, names);
    Keys keys = {"name", "shape", "zMin", "zMax"};
    if (kind == ZoneKind::InField) {
      keys.push_back("index");
    } else if (kind == ZoneKind::SensorBound) {
      keys.insert(keys.end(), {"enabled", "id", "Sensors"});
    }
    const LocatedNode* shape = zone.node.find("shape");
    if (shape == nullptr) {
      report(zone, "no \"shape\"");
      keys.insert(keys.end(), shapeKeys.begin(), shapeKeys.end());
    } else {
      checkShape(zone, *shape, keys);
    }
    checkKeys(zone, keys);
    checkHeights(zone, kind == ZoneKind::SensorBound);
  }

  void checkShape(const Place& zone, const LocatedNode& shape, Keys& keys) {
    const std::string type = lowerCase(shape.text);
    const bool isPolygon = type == Polygon::TYPE_NAME;
    const bool isRectangle = type == Rectangle::TYPE_NAME;
    if (!isPolygon && !isRectangle && type != Sector::TYPE_NAME) {
      static constexpr std::array<std::string_view, 3> types = {"polygon", "rectangle", "sector"};
      report(child(zone, shape), quoted(shape.text) +
                                     " is no shape; there are \"polygon\", \"rectangle\" and "
                                     "\"sector\"" +
                                     meant(type, types));
      keys.insert(keys.end(), shapeKeys.begin(), shapeKeys.end());
      return;
    }
    const std::string_view key = isPolygon ? "Polygon" : isRectangle ? "Rectangle" : "Sector";
    keys.push_back(key);
    const LocatedNode* geometry = zone.node.find(key);
    if (geometry == nullptr) {
      report(zone, "no " + quoted(key) + ", which \"shape\" asks for");
      return;
    }
    const Place place = child(zone, *geometry);
    if (!isObject(place, quoted(key))) {
      return;
    }
    if (isPolygon) {
      checkPolygon(place);
    } else if (isRectangle) {
      checkRectangle(place);
    } else {
      checkSector(place);
    }
  }

  void checkPolygon(const Place& polygon) {
    checkKeys(polygon, {"Point"});
    const auto [ring, good] = points(polygon);
    if (!good) {
      return;
    }
    if (ring.size() > static_cast<std::size_t>(Polygon::MAX_NUM_POLYGON_SIDES)) {
      report(polygon, std::to_string(ring.size()) + " vertices; at most 16 are allowed");
      return;
    }
    std::set<std::pair<double, double>> distinct;
    for (const Point& point : ring) {
      distinct.emplace(point.x(), point.y());
    }
    if (distinct.size() < static_cast<std::size_t>(Polygon::MIN_NUM_POLYGON_SIDES)) {
      report(polygon,
             "different vertices: " + std::to_string(distinct.size()) + "; a region needs at least 3");
    } else if (isFlat(ring)) {
      report(polygon, "all vertices lie on one line, which is no region");
    } else {
      checkEdges(polygon, ring);
    }
  }

  void checkEdges(const Place& polygon, const std::vector<Point>& ring) {
    constexpr std::size_t shown = 3;  // the first few tell where to look
    const std::vector<EdgeCrossing> crossings = findEdgeCrossings(ring);
    const auto edge = [&ring](std::size_t from) {
      const std::size_t to = (from + 1) % ring.size();
      return std::to_string(from) + "-" + std::to_string(to) + " " + coordinates(ring[from]) + " to " +
             coordinates(ring[to]);
    };
    for (std::size_t i = 0; i < std::min(shown, crossings.size()); ++i) {
      const EdgeCrossing& crossing = crossings[i];
      report(polygon, "edge " + edge(crossing.first) + (crossing.proper ? " crosses" : " touches") +
                          " edge " + edge(crossing.second) + " at " + coordinates(crossing.at));
    }
    if (crossings.size() > shown) {
      report(polygon, counted(crossings.size() - shown, "more pair") + " of edges cross or touch");
    }
  }

  void checkRectangle(const Place& rectangle) {
    checkKeys(rectangle, {"Point", "rotation"});
    number(rectangle, "rotation", true);
    const auto [corners, good] = points(rectangle);
    const std::size_t count = rectangle.node.all("Point").size();
    if (count != 2) {
      report(rectangle, counted(count, "corner") + " under \"Point\"; a rectangle has 2, opposite ones");
    } else if (good && (corners[0].x() == corners[1].x() || corners[0].y() == corners[1].y())) {
      report(rectangle, "the two corners are not opposite ones: the rectangle is empty");
    }
  }

  void checkSector(const Place& sector) {
    checkKeys(sector, {"minAngle", "maxAngle", "radius"});
    // A saved whole disc reaches from up to pi to one turn more.
    constexpr double largestAngle = 3.0 * std::numbers::pi + 1e-9;
    for (const std::string_view key : {"minAngle", "maxAngle"}) {
      if (const auto angle = number(sector, key, true); angle && std::abs(*angle) > largestAngle) {
        report(child(sector, *sector.node.find(key)),
               toText(*angle) + " is more than a turn: angles are radians, a turn is 6.2832");
      }
    }
    if (const auto radius = number(sector, "radius", true); radius && !(*radius > 0.0)) {
      report(child(sector, *sector.node.find("radius")), "the radius " + toText(*radius) + " is not above 0");
    }
  }

  void checkHeights(const Place& zone, bool required) {
    const double zMin = number(zone, "zMin", required).value_or(Zone3dBase::DEFAULT_Z_MIN);
    const double zMax = number(zone, "zMax", required).value_or(Zone3dBase::DEFAULT_Z_MAX);
    if (zMin > zMax) {
      const LocatedNode* bound = zone.node.find("zMin");
      if (bound == nullptr) {
        bound = zone.node.find("zMax");
      }
      const auto origin = [&zone](std::string_view key) {
        return zone.node.find(key) == nullptr ? std::string(" (the default)") : std::string();
      };
      report(child(zone, *bound), "zMin " + toText(zMin) + origin("zMin") + " is above zMax " + toText(zMax) +
                                      origin("zMax") + ": the zone contains nothing");
    }
  }

  void checkCounterLines(const Place& lines) {
    if (!isObject(lines, "\"CounterLines\"")) {
      return;
    }
    checkKeys(lines, {"CounterLine"});
    std::map<std::string, std::size_t> names;
    for (const Place& line : elements(lines, "CounterLine")) {
      if (!isObject(line, "a counter line")) {
        continue;
      }
      checkKeys(line, {"name", "first", "second"});
      checkUnique(line, names, "; the later points are kept");
      const auto first = end(line, "first");
      const auto second = end(line, "second");
      if (first && second && first->x() == second->x() && first->y() == second->y()) {
        report(line, "both ends are " + coordinates(*first) + ": nothing is left or right of it");
      }
    }
  }

  std::optional<Point> end(const Place& line, std::string_view key) {
    const LocatedNode* node = line.node.find(key);
    if (node == nullptr) {
      report(line, "no " + quoted(key));
      return std::nullopt;
    }
    return point(child(line, *node));
  }

  // The vertices under "Point", and whether every one could be read.
  std::pair<std::vector<Point>, bool> points(const Place& shape) {
    std::vector<Point> ring;
    bool good = true;
    for (const Place& place : elements(shape, "Point")) {
      if (const auto vertex = point(place)) {
        ring.push_back(*vertex);
      } else {
        good = false;
      }
    }
    return {ring, good};
  }

  std::optional<Point> point(const Place& place) {
    if (!isObject(place, "a point")) {
      return std::nullopt;
    }
    checkKeys(place, pointKeys);
    const auto x = number(place, "x", true);
    const auto y = number(place, "y", true);
    return x && y ? std::optional<Point>({*x, *y}) : std::nullopt;
  }

  void checkName(const Place& place, std::map<std::string, std::size_t>& names) {
    const LocatedNode* name = place.node.find("name");
    if (name != nullptr && !ZoneDetector::validateZoneNameLength(name->text)) {
      report(child(place, *name),
             "the name has " + counted(name->text.size(), "byte") + "; 1 to 18 are allowed");
    }
    checkUnique(place, names, "");
  }

  void checkUnique(const Place& place, std::map<std::string, std::size_t>& names,
                   const std::string& consequence) {
    const LocatedNode* name = place.node.find("name");
    if (name == nullptr) {
      report(place, "no \"name\"");
      return;
    }
    const auto [earlier, isNew] = names.emplace(name->text, name->line);
    if (!isNew) {
      report(child(place, *name), quoted(name->text) + " is the name in line " +
                                      std::to_string(earlier->second) + " too" + consequence);
    }
  }

  void checkIndex(const Place& place, int slots, std::map<int, std::size_t>& indices) {
    if (place.node.find("index") == nullptr) {
      report(place, "no \"index\"");
      return;
    }
    const auto index = wholeNumber(place, "index");
    if (!index) {
      return;
    }
    const Place where = child(place, *place.node.find("index"));
    if (*index < 0 || *index >= slots) {
      report(where, "index " + std::to_string(*index) + " is outside 0.." + std::to_string(slots - 1));
      return;
    }
    const auto [earlier, isNew] = indices.emplace(*index, where.node.line);
    if (!isNew) {
      report(where, "index " + std::to_string(*index) + " is the index in line " +
                        std::to_string(earlier->second) + " too; only the last one is kept");
    }
  }

  void checkCount(const std::vector<Place>& list, int allowed, std::string_view what) {
    if (list.size() > static_cast<std::size_t>(allowed)) {
      report(list[static_cast<std::size_t>(allowed)], std::to_string(list.size()) + " " + std::string(what) +
                                                          "; at most " + std::to_string(allowed) +
                                                          " are allowed");
    }
  }

  void checkKeys(const Place& place, const Keys& known) {
    std::set<std::string_view> seen;
    for (const LocatedNode& key : place.node.children) {
      if (!contains(known, key.name)) {
        report(child(place, key), unread(place, key.name, known));
      } else if (!seen.insert(key.name).second && !contains(listKeys, key.name)) {
        report(child(place, key), "stands here again; only the first one is read");
      }
    }
  }

  static std::string unread(const Place& place, std::string_view key, const Keys& known) {
    if (const LocatedNode* shape = place.node.find("shape"); shape != nullptr && contains(shapeKeys, key)) {
      return "is not read, because \"shape\" is " + quoted(shape->text);
    }
    if (key == "CounterLines") {
      return "is not read here, but beside \"ZoneDetector\"";
    }
    return "is read by nobody" + meant(key, known);
  }

  static std::string meant(std::string_view word, std::span<const std::string_view> candidates) {
    const std::string_view candidate = nearest(word, candidates);
    return candidate.empty() ? std::string() : "; is " + quoted(candidate) + " meant?";
  }

  // The number under a key; what is missing although it is required, or no number, is reported.
  std::optional<double> number(const Place& place, std::string_view key, bool required) {
    const LocatedNode* node = place.node.find(key);
    if (node == nullptr) {
      if (required) {
        report(place, "no " + quoted(key));
      }
      return std::nullopt;
    }
    return converted<double>(child(place, *node), "is no number");
  }

  std::optional<int> wholeNumber(const Place& place, std::string_view key) {
    const LocatedNode* node = place.node.find(key);
    return node == nullptr ? std::nullopt : converted<int>(child(place, *node), "is no whole number");
  }

  template <typename T>
  std::optional<T> converted(const Place& place, const std::string& complaint) {
    const auto value =
        place.node.kind == LocatedNode::Kind::Object ? std::nullopt : convert<T>(place.node.text);
    if (!value) {
      report(place, place.node.text.empty() ? complaint : complaint + ": " + place.node.text);
    }
    return value;
  }

  bool isObject(const Place& place, const std::string& what) {
    if (place.node.kind != LocatedNode::Kind::Object) {
      report(place, what + " has to be an object");
      return false;
    }
    return true;
  }

  static Place child(const Place& parent, const LocatedNode& node) {
    std::string path = parent.path.empty() ? node.name : parent.path + "/" + node.name;
    if (contains(listKeys, node.name) || node.isElement) {
      std::size_t index = 0;
      for (const LocatedNode* sibling : parent.node.all(node.name)) {
        if (sibling == &node) {
          break;
        }
        ++index;
      }
      path += "[" + std::to_string(index) + "]";
    }
    return {node, std::move(path)};
  }

  static std::vector<Place> elements(const Place& parent, std::string_view key) {
    std::vector<Place> places;
    const std::string prefix = (parent.path.empty() ? std::string() : parent.path + "/") + std::string(key);
    for (const LocatedNode* node : parent.node.all(key)) {
      places.push_back({*node, prefix + "[" + std::to_string(places.size()) + "]"});
    }
    return places;
  }

  void report(const Place& place, std::string text) { report(place.path, place.node.line, std::move(text)); }
  void report(std::string path, std::size_t line, std::string text) {
    findings_.push_back({line, std::move(path), std::move(text)});
  }

  std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> lint(const LocatedNode& document) {
  return Linter().run(document);
}

}  // namespace orvantis::toolkit
