#include "document/KeyTable.h"

#include <algorithm>
#include <array>
#include <numbers>

#include <filter/detection/Polygon.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::toolkit {
namespace {

using filter::detection::Polygon;
using filter::detection::ZoneDetector;

using enum ValueType;
using Keys = std::vector<Key>;

// A saved whole disc has angles up to pi plus one turn.
constexpr double largestAngle = 3.0 * std::numbers::pi + 1e-9;
constexpr std::string_view angleHint = "angles are radians, a turn is 6.2832";

Key schemaKey() {
  return {.name = "$schema",
          .type = Text,
          .description = "Where the JSON Schema of this document is, for editors.",
          .isLabel = true};
}

Key nameKey(std::string_view description) {
  return {.name = "name",
          .type = Text,
          .description = description,
          .isRequired = true,
          .isName = true,
          .isLabel = true};
}

Key indexKey(std::string_view description, int slots) {
  return {.name = "index",
          .type = WholeNumber,
          .description = description,
          .isRequired = true,
          .least = 0,
          .most = slots - 1,
          .isLabel = true};
}

// The shape of a zone and its heights, with these defaults. Heights with an empty default are required.
Keys shapeKeys(std::string_view zMin, std::string_view zMax) {
  return {
      {.name = "shape",
       .type = Text,
       .description = "Which shape the zone has on the plan. The object of that name holds its geometry.",
       .isRequired = true,
       .words = {"polygon", "rectangle", "sector"}},
      {.name = "Polygon",
       .type = Object,
       .description = "The geometry of a polygon.",
       .holds = ObjectKind::Polygon},
      {.name = "Rectangle",
       .type = Object,
       .description = "The geometry of a rectangle.",
       .holds = ObjectKind::Rectangle},
      {.name = "Sector",
       .type = Object,
       .description = "The geometry of a sector.",
       .holds = ObjectKind::Sector},
      {.name = "zMin",
       .type = Number,
       .description = "Lower height; a point at it is inside.",
       .isRequired = zMin.empty(),
       .unit = "m",
       .byDefault = zMin},
      {.name = "zMax",
       .type = Number,
       .description = "Upper height; a point at it is inside.",
       .isRequired = zMax.empty(),
       .unit = "m",
       .byDefault = zMax},
  };
}

Keys together(Keys first, const Keys& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Keys documentKeys() {
  return {schemaKey(),
          {.name = "ZoneDetector",
           .type = Object,
           .description = "Options, evaluation fields and exclusion zones of the detector.",
           .holds = ObjectKind::Detector},
          {.name = "CounterLines",
           .type = Object,
           .description = "The lines that tracked objects are counted on.",
           .holds = ObjectKind::Lines},
          {.name = "Zone3d",
           .type = Object,
           .description = "Zones that are bound to sensors, for hosts that ask for them.",
           .isList = true,
           .plural = "zones",
           .holds = ObjectKind::SensorZone}};
}

Keys detectorKeys() {
  return {
      schemaKey(),
      {.name = "version",
       .type = Text,
       .description = "The API version that the document was written for. Loading does not read it.",
       .isLabel = true},
      {.name = "debounceTimeMs",
       .type = WholeNumber,
       .description = "How long a zone has to be occupied, or clear, before its state changes; 0: at once.",
       .unit = "ms",
       .byDefault = "0",
       .least = 0,
       .outside = FindingKind::UnlikelyValue},
      {.name = "sensitivity",
       .type = WholeNumber,
       .description = "A zone is occupied from 11 - sensitivity points on: 10 is one point, 1 is ten.",
       .byDefault = "10",
       .least = 1,
       .most = 10,
       .hint = "loading takes 10, the most sensitive, instead"},
      {.name = "triggerActiveLevel",
       .type = Text,
       .description = "The level that an occupied zone drives its output to.",
       .byDefault = "\"high\"",
       .words = {"high", "low"}},
      {.name = "useSoftwareAPICommand",
       .type = Truth,
       .description = "For the host; the library stores it.",
       .byDefault = "false"},
      {.name = "EvaluationField",
       .type = Object,
       .description = "Sets of zones that are evaluated together. A host has one active field at a time.",
       .isList = true,
       .many = ZoneDetector::NUM_EVAL_FIELDS,
       .plural = "evaluation fields",
       .holds = ObjectKind::Field},
      {.name = "ExclusionZone",
       .type = Object,
       .description = "Zones inside which no point counts.",
       .isList = true,
       .many = ZoneDetector::MAX_NUM_EXCLUSION_ZONES,
       .plural = "exclusion zones",
       .holds = ObjectKind::ExclusionZone}};
}

Keys fieldKeys() {
  return {nameKey("The field's name, in bytes of UTF-8."),
          indexKey("The field's slot; no two fields share one.", ZoneDetector::NUM_EVAL_FIELDS),
          {.name = "Zone",
           .type = Object,
           .description = "The zones of the field.",
           .isRequired = true,
           .isList = true,
           .fewest = 1,
           .many = ZoneDetector::NUM_ZONES_PER_EVAL_FIELD,
           .plural = "zones",
           .holds = ObjectKind::Zone}};
}

Keys zoneKeys() {
  return together({nameKey("The zone's name, in bytes of UTF-8."),
                   indexKey("The zone's slot in its field; no two zones share one.",
                            ZoneDetector::NUM_ZONES_PER_EVAL_FIELD)},
                  shapeKeys("0", "20"));
}

Keys exclusionZoneKeys() {
  return together({nameKey("The zone's name, in bytes of UTF-8.")}, shapeKeys("0", "20"));
}

Keys sensorZoneKeys() {
  return together(
      {nameKey("The zone's name, in bytes of UTF-8."),
       {.name = "id",
        .type = Text,
        .description = "The zone's UUID; the nil UUID asks for a fresh one each time it is loaded.",
        .isRequired = true,
        .isLabel = true},
       {.name = "enabled", .type = Truth, .description = "Whether the zone is in use.", .byDefault = "true"},
       {.name = "Sensors",
        .type = Object,
        .description = "The sensors that the zone is bound to; without it, all sensors.",
        .holds = ObjectKind::Sensors}},
      shapeKeys("", ""));
}

Keys polygonKeys() {
  return {{.name = "Point",
           .type = Object,
           .description = "The vertices in order, in either direction. The last one is joined to the first.",
           .isRequired = true,
           .isList = true,
           .fewest = Polygon::MIN_NUM_POLYGON_SIDES,
           .many = Polygon::MAX_NUM_POLYGON_SIDES,
           .plural = "vertices",
           .holds = ObjectKind::Point}};
}

Keys rectangleKeys() {
  return {{.name = "rotation",
           .type = Number,
           .description = "The turn about the rectangle's centre, counterclockwise.",
           .isRequired = true,
           .unit = "degrees"},
          {.name = "Point",
           .type = Object,
           .description = "Two opposite corners of the rectangle before it is turned.",
           .isRequired = true,
           .isList = true,
           .fewest = 2,
           .many = 2,
           .plural = "corners",
           .holds = ObjectKind::Point}};
}

Key angleKey(std::string_view name, std::string_view description) {
  return {.name = name,
          .type = Number,
          .description = description,
          .isRequired = true,
          .unit = "radians",
          .least = -largestAngle,
          .most = largestAngle,
          .outside = FindingKind::UnlikelyValue,
          .hint = angleHint};
}

Keys sectorKeys() {
  return {angleKey("minAngle", "The bearing at which the sector begins, from +x (0) towards +y (pi/2)."),
          angleKey("maxAngle", "The bearing at which it ends, counterclockwise from minAngle."),
          {.name = "radius",
           .type = Number,
           .description = "The radius of the disc around the origin that the sector is cut from.",
           .isRequired = true,
           .unit = "m",
           .least = 0,
           .isAboveLeast = true,
           .outside = FindingKind::UnlikelyValue}};
}

Keys pointKeys() {
  return {{.name = "x", .type = Number, .description = "Forward.", .isRequired = true, .unit = "m"},
          {.name = "y", .type = Number, .description = "To the left.", .isRequired = true, .unit = "m"}};
}

Keys linesKeys() {
  return {{.name = "CounterLine",
           .type = Object,
           .description = "The counter lines.",
           .isList = true,
           .plural = "counter lines",
           .holds = ObjectKind::Line}};
}

Keys lineKeys() {
  const auto end = [](std::string_view name, std::string_view description) {
    return Key{.name = name,
               .type = Object,
               .description = description,
               .isRequired = true,
               .holds = ObjectKind::Point};
  };
  return {{.name = "name",
           .type = Text,
           .description = "The line's name; no two lines share one.",
           .isRequired = true,
           .isLabel = true},
          end("first", "Where the line begins. From first to second, the left side is on the left."),
          end("second", "Where the line ends.")};
}

Keys sensorsKeys() {
  return {{.name = "lidar",
           .type = Text,
           .description = "The names of the sensors.",
           .isList = true,
           .plural = "names"}};
}

Keys sensorListKeys() {
  return {{.name = "sensors",
           .type = Object,
           .description = "The sensors of a site.",
           .isRequired = true,
           .isList = true,
           .fewest = 1,
           .many = 64,
           .plural = "sensors",
           .holds = ObjectKind::Sensor}};
}

Keys sensorKeys() {
  return {
      {.name = "name",
       .type = Text,
       .description = "The sensor's name in the zones that are bound to it.",
       .isRequired = true},
      {.name = "pose",
       .type = Object,
       .description =
           "Where the sensor is in the frame of the zones; without it, its points are in that frame.",
       .holds = ObjectKind::Pose},
      {.name = "files",
       .type = Text,
       .description = "Its frames and recordings, or folders of them; without it, those of the command line.",
       .isList = true,
       .plural = "files and folders"},
      {.name = "topic", .type = Text, .description = "The topic of its point clouds in recordings."}};
}

Keys poseKeys() {
  const auto number = [](std::string_view name, std::string_view description, std::string_view unit) {
    return Key{.name = name, .type = Number, .description = description, .isRequired = true, .unit = unit};
  };
  return {number("x", "Where it is.", "m"),
          number("y", "Where it is.", "m"),
          number("z", "Where it is.", "m"),
          number("roll", "Its turn about x, which comes first.", "degrees"),
          number("pitch", "Its turn about y.", "degrees"),
          number("yaw", "Its turn about z.", "degrees")};
}

}  // namespace

const std::vector<Key>& keysOf(ObjectKind object) {
  static const std::array<Keys, 16> tables = {
      documentKeys(), detectorKeys(),   fieldKeys(),     zoneKeys(),   exclusionZoneKeys(), sensorZoneKeys(),
      sensorsKeys(),  polygonKeys(),    rectangleKeys(), sectorKeys(), pointKeys(),         linesKeys(),
      lineKeys(),     sensorListKeys(), sensorKeys(),    poseKeys(),
  };
  return tables.at(static_cast<std::size_t>(object));
}

const Key* findKey(ObjectKind object, std::string_view name) {
  const auto& keys = keysOf(object);
  const auto key =
      std::find_if(keys.begin(), keys.end(), [name](const Key& candidate) { return candidate.name == name; });
  return key == keys.end() ? nullptr : &*key;
}

}  // namespace orvantis::toolkit
