#include "IndependentReading.h"

#include <cmath>
#include <map>
#include <numbers>
#include <regex>
#include <stdexcept>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

#include "text/Number.h"

namespace orvantis::toolkit::testing {
namespace {

using boost::json::array;
using boost::json::object;
using boost::json::value;

std::string number(double x) {
  return toText(x, 9) + " ";
}

[[noreturn]] void fail(const std::string& why) {
  throw std::runtime_error(why);
}

// A list of one stands for its entry.
const value* member(const object& parent, const char* key) {
  const value* found = parent.if_contains(key);
  if (found != nullptr && found->is_array()) {
    if (found->get_array().size() != 1) {
      fail(key);
    }
    return found->get_array().data();
  }
  return found;
}

double real(const object& parent, const char* key, const double* byDefault = nullptr) {
  static const std::regex form(R"(-?\d+(\.\d+)?)");
  const value* found = member(parent, key);
  if (found == nullptr && byDefault != nullptr) {
    return *byDefault;
  }
  if (found != nullptr && found->is_number()) {
    return found->to_number<double>();
  }
  if (found != nullptr && found->is_string() && std::regex_match(found->get_string().c_str(), form)) {
    return std::stod(found->get_string().c_str());
  }
  fail(key);
}

int whole(const object& parent, const char* key, int least, int most, const double* byDefault = nullptr) {
  const value* found = member(parent, key);
  const double number = real(parent, key, byDefault);
  if ((found != nullptr && found->is_double()) || number != std::floor(number) || number < least ||
      number > most ||
      (found != nullptr && found->is_string() &&
       found->get_string().find('.') != boost::json::string::npos)) {
    fail(key);
  }
  return static_cast<int>(number);
}

std::string text(const object& parent, const char* key) {
  const value* found = member(parent, key);
  if (found == nullptr || found->is_object() || found->is_array() || found->is_null()) {
    fail(key);
  }
  if (found->is_string()) {
    return found->get_string().c_str();
  }
  return found->is_bool() ? (found->get_bool() ? "true" : "false") : toText(found->to_number<double>());
}

std::string name(const object& parent) {
  std::string result = text(parent, "name");
  if (result.empty() || result.size() > 18) {
    fail("name");
  }
  return result;
}

std::string word(const object& parent, const char* key) {
  std::string result = text(parent, key);
  for (char& c : result) {
    c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  }
  return result;
}

// The entries of a list, which may be one without its brackets.
std::vector<const object*> entries(const object& parent, const char* key, std::size_t most = 1000) {
  std::vector<const object*> result;
  const value* found = parent.if_contains(key);
  if (found == nullptr) {
    return result;
  }
  const array list = found->is_array() ? found->get_array() : array{*found};
  const value* first = found->is_array() ? found->get_array().data() : found;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (!first[i].is_object()) {
      fail(key);
    }
    result.push_back(&first[i].get_object());
  }
  if (result.size() > most) {
    fail(key);
  }
  return result;
}

const object& inner(const object& parent, const char* key) {
  const value* found = member(parent, key);
  if (found == nullptr || !found->is_object()) {
    fail(key);
  }
  return found->get_object();
}

std::string points(const object& shape, std::size_t fewest, std::size_t most) {
  std::string result;
  const auto list = entries(shape, "Point", most);
  if (list.size() < fewest) {
    fail("Point");
  }
  for (const object* point : list) {
    result += number(real(*point, "x")) + number(real(*point, "y"));
  }
  return result;
}

double normalised(double angle) {
  const double turn = 2.0 * std::numbers::pi;
  double result = std::remainder(angle, turn);
  return result >= std::numbers::pi ? result - turn : result;
}

std::string shape(const object& zone) {
  const std::string type = word(zone, "shape");
  if (type == "polygon") {
    return "polygon " + points(inner(zone, "Polygon"), 1, 16);
  }
  if (type == "rectangle") {
    const object& rectangle = inner(zone, "Rectangle");
    return "rectangle " + number(real(rectangle, "rotation")) + points(rectangle, 2, 2);
  }
  if (type == "sector") {
    const object& sector = inner(zone, "Sector");
    return "sector " + number(normalised(real(sector, "minAngle"))) +
           number(normalised(real(sector, "maxAngle"))) + number(real(sector, "radius"));
  }
  fail("shape");
}

std::string volume(const object& zone) {
  const double low = 0.0;
  const double high = 20.0;
  return name(zone) + " " + shape(zone) + number(real(zone, "zMin", &low)) +
         number(real(zone, "zMax", &high)) + "\n";
}

std::string options(const object& detector) {
  const double debounce = 0.0;
  const double sensitivity = 10.0;
  std::string level = detector.contains("triggerActiveLevel") ? word(detector, "triggerActiveLevel") : "high";
  if (level != "high" && level != "low") {
    fail("triggerActiveLevel");
  }
  const value* command = member(detector, "useSoftwareAPICommand");
  if (command != nullptr && !command->is_bool()) {
    const std::string spelt = text(detector, "useSoftwareAPICommand");
    if (spelt != "true" && spelt != "false" && spelt != "0" && spelt != "1") {
      fail("useSoftwareAPICommand");
    }
  }
  const bool isUsed = command != nullptr && (text(detector, "useSoftwareAPICommand") == "true" ||
                                             text(detector, "useSoftwareAPICommand") == "1");
  return number(whole(detector, "debounceTimeMs", -2000000000, 2000000000, &debounce)) +
         number(11 - whole(detector, "sensitivity", 1, 10, &sensitivity)) + level +
         (isUsed ? " yes\n" : " no\n");
}

std::string fields(const object& detector) {
  std::map<int, std::string> slots;
  for (const object* field : entries(detector, "EvaluationField", 8)) {
    std::map<int, std::string> zones;
    for (const object* zone : entries(*field, "Zone", 3)) {
      if (!zones.emplace(whole(*zone, "index", 0, 2), volume(*zone)).second) {
        fail("index");
      }
    }
    std::string content = name(*field) + "\n";
    for (const auto& [slot, zone] : zones) {
      content += std::to_string(slot) + " " + zone;
    }
    if (zones.empty() || !slots.emplace(whole(*field, "index", 0, 7), content).second) {
      fail("index");
    }
  }
  std::string result;
  for (const auto& [slot, content] : slots) {
    result += "field " + std::to_string(slot) + " " + content;
  }
  return result;
}

std::string shapeOf(const filter::detection::Zone3dBase& zone) {
  const auto shape = zone.getZone2d();
  std::string text = shape->type() + " ";
  std::vector<filter::detection::Point> ring;
  if (const auto* sector = dynamic_cast<const filter::detection::Sector*>(shape.get())) {
    double from = 0.0;
    double to = 0.0;
    double radius = 0.0;
    sector->getSector(from, to, radius);
    return text + number(from) + number(to) + number(radius);
  }
  if (const auto* rectangle = dynamic_cast<const filter::detection::Rectangle*>(shape.get())) {
    double rotation = 0.0;
    rectangle->getRectangle(ring, rotation);
    text += number(rotation);
  } else {
    dynamic_cast<const filter::detection::Polygon&>(*shape).getPolygon(ring);
  }
  for (const auto& point : ring) {
    text += number(point.x()) + number(point.y());
  }
  return text;
}

std::string volumeOf(const filter::detection::Zone3dBase& zone) {
  return zone.getName() + " " + shapeOf(zone) + number(zone.getZMin()) + number(zone.getZMax()) + "\n";
}

}  // namespace

std::string contentOf(const Configuration& configuration) {
  using filter::detection::ZoneDetector;
  const ZoneDetector& detector = configuration.detector;
  std::string text = number(detector.getDebounceTime().count()) + number(detector.getMinPoints()) +
                     (detector.getTriggerZone() == ZoneDetector::TriggerZoneValue::LOW ? "low" : "high") +
                     (detector.useSoftwareAPICommand() ? " yes\n" : " no\n");
  for (int f = 0; f < ZoneDetector::NUM_EVAL_FIELDS; ++f) {
    if (const auto field = detector.getEvaluationField(f)) {
      text += "field " + std::to_string(f) + " " + field->name + "\n";
      for (int z = 0; z < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++z) {
        if (const auto zone = detector.getZone(f, z)) {
          text += std::to_string(z) + " " + volumeOf(*zone);
        }
      }
    }
  }
  for (const auto& zone : detector.getExclusionZoneVector()) {
    text += "exclusion " + volumeOf(*zone);
  }
  for (const auto& [name, line] : configuration.lines) {
    text += "line " + name + " ";
    for (const auto& point : line.getPoints()) {
      text += number(point.x()) + number(point.y());
    }
    text += "\n";
  }
  return text;
}

std::string contentOf(const value& document) {
  if (!document.is_object()) {
    fail("document");
  }
  const object& root = document.get_object();
  const object none;
  const object& detector = root.contains("ZoneDetector") ? inner(root, "ZoneDetector") : none;
  std::string result = options(detector) + fields(detector);
  for (const object* zone : entries(detector, "ExclusionZone", 32)) {
    result += "exclusion " + volume(*zone);
  }
  std::map<std::string, std::string> lines;
  if (root.contains("CounterLines")) {
    for (const object* line : entries(inner(root, "CounterLines"), "CounterLine")) {
      std::string ends;
      for (const char* const key : {"first", "second"}) {
        const object& point = inner(*line, key);
        ends += number(real(point, "x")) + number(real(point, "y"));
      }
      if (!lines.emplace(text(*line, "name"), ends).second) {
        fail("name");
      }
    }
  }
  for (const auto& [lineName, ends] : lines) {
    result += "line " + lineName + " " + ends + "\n";
  }
  return result;
}

}  // namespace orvantis::toolkit::testing
