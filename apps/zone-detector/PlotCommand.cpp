#include "PlotCommand.h"

#include <algorithm>
#include <filesystem>

#include "AtomicFile.h"
#include "CloudReader.h"
#include "Configuration.h"
#include "Console.h"
#include "Outline.h"
#include "SvgPlan.h"

namespace orvantis::app {
namespace {

using filter::detection::Point;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

void addZones(const ZoneDetector& detector, PlanContent& plan) {
  const auto add = [&plan](const Zone3dBase& zone, std::optional<int> field) {
    if (const auto shape = zone.getZone2d()) {
      plan.areas.push_back({zone.getName(), outline(*shape), field});
    }
  };
  for (int f = 0; f < ZoneDetector::NUM_EVAL_FIELDS; ++f) {
    if (const auto field = detector.getEvaluationField(f)) {
      plan.fields.push_back({f, field->name});
      for (const auto& zone : field->zones) {
        if (zone) {
          add(*zone, f);
        }
      }
    }
  }
  for (const auto& zone : detector.getExclusionZoneVector()) {
    add(*zone, std::nullopt);
  }
}

bool isCounted(const ZoneDetector& detector, const Eigen::Vector3d& p) {
  const auto contains = [&p](const std::shared_ptr<Zone3dBase>& zone) {
    return zone && zone->within(p.x(), p.y(), p.z());
  };
  return std::ranges::none_of(detector.getExclusionZoneVector(), contains) &&
         std::ranges::any_of(detector.getEvaluationFieldArray(), [&](const auto& field) {
           return field && std::ranges::any_of(field->zones, contains);
         });
}

void addCloud(const std::string& path, const ZoneDetector& detector, PlanContent& plan) {
  for (const Eigen::Vector3d& point : readCloud(path)) {
    if (point.allFinite()) {
      plan.dots.push_back({Point(point.x(), point.y()), isCounted(detector, point)});
    }
  }
}

}  // namespace

int plot(const PlotOptions& options, const Console& console) {
  const Configuration configuration = loadConfiguration(options.document);
  PlanContent plan;
  plan.title = std::filesystem::path(options.document).filename().string();
  addZones(configuration.detector, plan);
  for (const auto& [name, line] : configuration.lines) {
    const auto& ends = line.getPoints();
    plan.lines.push_back({name, Point(ends[0].x(), ends[0].y()), Point(ends[1].x(), ends[1].y())});
  }
  if (!options.cloud.empty()) {
    addCloud(options.cloud, configuration.detector, plan);
    plan.title += " over " + std::filesystem::path(options.cloud).filename().string();
  }
  std::string svg;
  try {
    svg = drawPlan(plan);
  } catch (const std::exception& error) {
    throw Failure(options.document + ": " + error.what());
  }
  if (options.output.empty()) {
    console.out << svg;
    console.flush();
  } else {
    writeWhole(options.output, svg);
  }
  return 0;
}

}  // namespace orvantis::app
