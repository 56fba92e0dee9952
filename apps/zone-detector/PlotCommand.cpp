#include "PlotCommand.h"

#include <algorithm>
#include <filesystem>

#include "AtomicFile.h"
#include "CloudReader.h"
#include "Configuration.h"
#include "Console.h"
#include "SitePlan.h"

namespace orvantis::app {
namespace {

using filter::detection::Point;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

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
  PlanContent plan = planOf(configuration);
  plan.title = std::filesystem::path(options.document).filename().string();
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
