#include "drawing/SitePlan.h"

#include <optional>

#include "drawing/Outline.h"

namespace orvantis::toolkit {
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

}  // namespace

PlanContent planOf(const Configuration& configuration) {
  PlanContent plan;
  addZones(configuration.detector, plan);
  for (const auto& [name, line] : configuration.lines) {
    const auto& ends = line.getPoints();
    plan.lines.push_back({name, Point(ends[0].x(), ends[0].y()), Point(ends[1].x(), ends[1].y())});
  }
  return plan;
}

}  // namespace orvantis::toolkit
