#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include <CLI/CLI.hpp>

#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

#include "Command.h"
#include "Console.h"
#include "DocumentFile.h"
#include "document/DocumentJson.h"
#include "document/FieldZones.h"
#include "document/Shapes.h"
#include "text/JsonText.h"
#include "text/Number.h"
#include "text/Table.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::detection::CounterLine;
using filter::detection::Point;
using filter::detection::Rectangle;
using filter::detection::Sector;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

// Shape, area and heights of a zone, as cells.
std::vector<std::string> zoneCells(const Zone3dBase& zone) {
  const auto shape = zone.getZone2d();
  return {zone.getName(), shape ? shape->type() : "none", shape ? toFixed(coveredArea(*shape), 2) : "",
          toText(zone.getZMin(), 3), toText(zone.getZMax(), 3)};
}

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

void printOptions(const ZoneDetector& detector, const Console& console) {
  Table table({"OPTION", "VALUE"});
  table.addRow({"debounce time", std::to_string(detector.getDebounceTime().count()) + " ms"});
  table.addRow({"sensitivity", std::to_string(detector.getSensitivityFromMinPoints(detector.getMinPoints())) +
                                   ": occupied at >= " +
                                   counted(static_cast<std::uint64_t>(detector.getMinPoints()), "point")});
  table.addRow({"trigger active level", triggerLevelName(detector)});
  table.addRow({"software API command", detector.useSoftwareAPICommand() ? "used" : "not used"});
  console.out << table.text(console.colour);
}

void printFields(const ZoneDetector& detector, const Console& console) {
  Table table({"FIELD", "ZONE", "SHAPE", ">AREA m²", ">zMin m", ">zMax m"});
  for (int f = 0; f < ZoneDetector::NUM_EVAL_FIELDS; ++f) {
    const auto field = detector.getEvaluationField(f);
    if (!field) {
      continue;
    }
    std::string name = std::to_string(f) + " " + field->name;
    for (int z = 0; z < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++z) {
      if (const auto zone = detector.getZone(f, z)) {
        std::vector<std::string> cells = zoneCells(*zone);
        cells[0] = std::to_string(z) + " " + cells[0];
        table.addRow(joined({name}, cells));
        name.clear();  // only in the row of the first zone
      }
    }
  }
  console.out << table.text(console.colour);
}

void printExclusionZones(const ZoneDetector& detector, const Console& console) {
  Table table({"EXCLUSION ZONE", "SHAPE", ">AREA m²", ">zMin m", ">zMax m"});
  for (const auto& zone : detector.getExclusionZoneVector()) {
    table.addRow(zoneCells(*zone));
  }
  console.out << table.text(console.colour);
}

std::string pointText(const Point& point) {
  return "(" + toText(point.x(), 3) + ", " + toText(point.y(), 3) + ")";
}

// Four points in a row, so that 16 points fit on a terminal.
void addPoints(const std::vector<Point>& points, const std::string& name, const std::string& what,
               Table& table) {
  constexpr std::size_t inARow = 4;
  for (std::size_t i = 0; i < points.size(); i += inARow) {
    std::string text;
    for (std::size_t j = i; j < std::min(i + inARow, points.size()); ++j) {
      text += (j == i ? "" : " ") + pointText(points[j]);
    }
    table.addRow({i == 0 ? name : "", i == 0 ? what : "", text});
  }
}

void addGeometry(const std::string& name, const Zone3dBase& zone, Table& table) {
  const auto shape = zone.getZone2d();
  const std::vector<Point> ring = vertices(*shape);
  if (const auto* rectangle = dynamic_cast<const Rectangle*>(shape.get())) {
    std::vector<Point> corners;
    double rotation = 0.0;
    rectangle->getRectangle(corners, rotation);
    addPoints(corners, name, "corners", table);
    table.addRow({"", "rotation", toText(rotation, 3) + "°"});
    addPoints(ring, "", "turned", table);
  } else if (const auto* sector = dynamic_cast<const Sector*>(shape.get())) {
    double from = 0.0;
    double to = 0.0;
    double radius = 0.0;
    sector->getSector(from, to, radius);
    const auto bearing = [](double angle) {
      return toText(angle, 4) + " (" + toText(angle * 180.0 / std::numbers::pi, 1) + "°)";
    };
    table.addRow({name, "bearings", bearing(from) + " to " + bearing(to)});
    table.addRow({"", "radius", toText(radius, 3)});
  } else {
    addPoints(ring, name, "vertices", table);
  }
}

void printGeometry(const ZoneDetector& detector, const Console& console) {
  Table table({"GEOMETRY", "", "m, rad"});
  for (const FieldZone& zone : zonesOf(detector)) {
    addGeometry(std::to_string(zone.field) + "/" + std::to_string(zone.zone) + " " + zone.name(),
                *zone.volume, table);
  }
  for (const auto& zone : detector.getExclusionZoneVector()) {
    addGeometry(zone->getName(), *zone, table);
  }
  console.out << table.text(console.colour);
}

// One of eight arrows, for the direction rounded to an eighth of a turn.
std::string arrow(const Point& direction) {
  static constexpr std::array<const char*, 8> arrows = {"→", "↗", "↑", "↖", "←", "↙", "↓", "↘"};
  if (direction.x() == 0.0 && direction.y() == 0.0) {
    return "none";
  }
  const double eighths = std::atan2(direction.y(), direction.x()) / (std::numbers::pi / 4.0);
  return arrows[static_cast<std::size_t>(static_cast<int>(std::lround(eighths)) + 8) % arrows.size()];
}

// The main axes of a direction, such as "+x" or "-x +y".
std::string axes(const Point& direction) {
  constexpr double share = 0.38;  // the sine of an eighth of a half turn
  std::string text;
  if (std::abs(direction.x()) > share) {
    text += direction.x() > 0.0 ? "+x" : "-x";
  }
  if (std::abs(direction.y()) > share) {
    text += text.empty() ? "" : " ";
    text += direction.y() > 0.0 ? "+y" : "-y";
  }
  return text;
}

void printCounterLines(const Configuration& configuration, const Console& console) {
  Table table({"COUNTER LINE", "FIRST", "SECOND", "DIRECTION", "LEFT SIDE"});
  for (const auto& [name, line] : configuration.lines) {
    const auto& points = line.getPoints();
    const Point direction = directionOf(line);
    const Point left(-direction.y(), direction.x());
    const auto text = [](const CounterLine::point& p) { return pointText(Point(p.x(), p.y())); };
    table.addRow({name, text(points[0]), text(points[1]), arrow(direction) + " " + axes(direction),
                  arrow(left) + " " + axes(left)});
  }
  console.out << table.text(console.colour);
}

int show(const std::string& path, bool json, const Console& console) {
  const Configuration configuration = readConfiguration(path, console);
  if (json) {
    console.out << toJson(toObject(configuration)) << '\n';
  } else {
    printOptions(configuration.detector, console);
    console.out << '\n';
    printFields(configuration.detector, console);
    console.out << '\n';
    printExclusionZones(configuration.detector, console);
    console.out << '\n';
    printGeometry(configuration.detector, console);
    console.out << '\n';
    printCounterLines(configuration, console);
  }
  console.flush();
  return 0;
}

}  // namespace

void addShowCommand(CLI::App& program, Task& task) {
  struct Options {
    std::string document;
    bool json = false;
  };
  const auto options = std::make_shared<Options>();
  CLI::App& command = addCommand(program, {"show", "print what a zone document contains", R"(Examples:
  zone-detector show site.json
  zone-detector show --json site.json

Prints options, evaluation fields, exclusion zones and counter lines of a zone document.)"});
  command.add_option("FILE", options->document, "zone document")->required();
  command.add_flag("--json", options->json, "one JSON object");
  command.final_callback([options, &task] {
    task = [options](const Console& console) { return show(options->document, options->json, console); };
  });
}

}  // namespace orvantis::app
