#include "document/Schema.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include "detector/Limits.h"
#include "document/KeyTable.h"
#include "document/LocatedJson.h"
#include "text/LowerCase.h"
#include "text/Number.h"

namespace orvantis::toolkit {
namespace {

using boost::json::array;
using boost::json::object;

constexpr std::array<std::pair<ObjectKind, const char*>, 12> definitions = {{
    {ObjectKind::Detector, "detector"},
    {ObjectKind::Field, "field"},
    {ObjectKind::Zone, "zone"},
    {ObjectKind::ExclusionZone, "exclusionZone"},
    {ObjectKind::SensorZone, "sensorZone"},
    {ObjectKind::Sensors, "sensors"},
    {ObjectKind::Polygon, "polygon"},
    {ObjectKind::Rectangle, "rectangle"},
    {ObjectKind::Sector, "sector"},
    {ObjectKind::Point, "point"},
    {ObjectKind::Lines, "lines"},
    {ObjectKind::Line, "line"},
}};

std::string referenceTo(ObjectKind kind) {
  for (const auto& [object, name] : definitions) {
    if (object == kind) {
      return std::string("#/$defs/") + name;
    }
  }
  return "#";
}

// A pattern for the words in any letter case.
std::string patternOf(const std::vector<std::string_view>& words) {
  std::string pattern;
  for (const std::string_view word : words) {
    pattern += pattern.empty() ? "^(" : "|";
    for (const char c : word) {
      pattern += std::string("[") + static_cast<char>(c - 'a' + 'A') + c + "]";
    }
  }
  return pattern + ")$";
}

object textSchema(const Key& key) {
  object result{{"type", "string"}};
  if (!key.words.empty()) {
    // Editors complete the words; the pattern accepts them in any letter case.
    return {{"anyOf",
             {{{"enum", array(key.words.begin(), key.words.end())}},
              {{"type", "string"}, {"pattern", patternOf(key.words)}}}}};
  }
  if (key.isName) {
    result["minLength"] = 1;
    result["maxLength"] = orvantis::filter::detection::maxNameLength;
  }
  if (key.name == "id") {
    result["pattern"] = "^[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}$";
  }
  return result;
}

object numberSchema(const Key& key) {
  const bool isWhole = key.type == ValueType::WholeNumber;
  object number{{"type", isWhole ? "integer" : "number"}};
  if (key.least) {
    number[key.isAboveLeast ? "exclusiveMinimum" : "minimum"] = *key.least;
  }
  if (key.most) {
    number["maximum"] = *key.most;
  }
  // Numbers in quotes are allowed, because the library itself writes the numbers of counter lines in quotes.
  const char* const pattern =
      isWhole ? R"(^\s*[+-]?[0-9]+\s*$)" : R"(^\s*[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?\s*$)";
  return {{"anyOf", {number, {{"type", "string"}, {"pattern", pattern}}}}};
}

object entrySchema(const Key& key) {
  switch (key.type) {
    case ValueType::Text:
      return textSchema(key);
    case ValueType::Number:
    case ValueType::WholeNumber:
      return numberSchema(key);
    case ValueType::Truth:
      return {{"anyOf", {{{"type", "boolean"}}, {{"enum", {"true", "false", 0, 1, "0", "1"}}}}}};
    case ValueType::Object:
      break;
  }
  return {{"$ref", referenceTo(key.holds)}};
}

object listSchema(const Key& key) {
  object list{{"type", "array"}, {"items", entrySchema(key)}};
  if (key.fewest > 0) {
    list["minItems"] = key.fewest;
  }
  if (key.many) {
    list["maxItems"] = *key.many;
  }
  // A list that may have one entry may have it without brackets.
  return key.fewest > 1 ? list : object{{"anyOf", {list, entrySchema(key)}}};
}

// A text, a truth or a number, as JSON writes it.
boost::json::value valueOf(std::string_view json) {
  const LocatedNode node = std::move(*parseLocated(json).root);
  if (node.kind == LocatedNode::Kind::Text) {
    return boost::json::value(node.text);
  }
  if (json == "true" || json == "false") {
    return json == "true";
  }
  double number = 0.0;
  readNumber(json.data(), json.data() + json.size(), number);
  const bool isWhole = json.find_first_of(".eE") == std::string_view::npos;
  return isWhole ? boost::json::value(static_cast<std::int64_t>(number)) : boost::json::value(number);
}

object keySchema(const Key& key) {
  std::string description(key.description);
  if (!key.unit.empty()) {
    description += " In " + std::string(key.unit) + ".";
  }
  object result{{"description", description}};
  if (!key.byDefault.empty()) {
    result["default"] = valueOf(key.byDefault);
  }
  for (auto& [name, member] : key.isList ? listSchema(key) : entrySchema(key)) {
    result[name] = member;
  }
  return result;
}

// The object of the shape that "shape" names is required; those of other shapes are not read.
array shapeRules() {
  static constexpr std::array<std::string_view, 3> shapes = {"Polygon", "Rectangle", "Sector"};
  array rules;
  for (const std::string_view shape : shapes) {
    object others;
    for (const std::string_view other : shapes) {
      if (other != shape) {
        others[other] = false;
      }
    }
    const std::string word = lowerCase(shape);
    const object isAsked{{"properties", {{"shape", {{"type", "string"}, {"pattern", patternOf({word})}}}}},
                         {"required", array{"shape"}}};
    rules.push_back(object{{"if", isAsked}, {"then", {{"required", array{shape}}, {"properties", others}}}});
  }
  return rules;
}

object objectSchema(ObjectKind kind) {
  object properties;
  array required;
  for (const Key& key : keysOf(kind)) {
    properties[key.name] = keySchema(key);
    if (key.isRequired) {
      required.emplace_back(key.name);
    }
  }
  object result{{"type", "object"}, {"properties", std::move(properties)}};
  if (!required.empty()) {
    result["required"] = std::move(required);
  }
  if (findKey(kind, "shape") != nullptr) {
    result["allOf"] = shapeRules();
  }
  result["additionalProperties"] = false;
  return result;
}

}  // namespace

object schema() {
  object result{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                {"title", "Zone document"},
                {"description", "The zones and counter lines of one detector."}};
  for (auto& [name, member] : objectSchema(ObjectKind::Document)) {
    result[name] = member;
  }
  array tops;
  for (const char* const top : {"ZoneDetector", "CounterLines", "Zone3d"}) {
    tops.push_back(object{{"required", array{top}}});
  }
  result["anyOf"] = std::move(tops);
  object all;
  for (const auto& [kind, name] : definitions) {
    all[name] = objectSchema(kind);
  }
  result["$defs"] = std::move(all);
  return result;
}

}  // namespace orvantis::toolkit
