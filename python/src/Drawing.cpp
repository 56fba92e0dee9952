#include <optional>
#include <string>

#include "Arrays.h"
#include "Content.h"
#include "Helper.h"
#include "Log.h"
#include "Site.h"
#include "Text.h"
#include "drawing/SitePlan.h"
#include "session/ScanDots.h"

namespace orvantis::python {
namespace {

using toolkit::PlanContent;

std::string drawn(const toolkit::Configuration& configuration, const filter::classify::Points* points,
                  const std::string& title) {
  PlanContent plan = toolkit::planOf(configuration);
  plan.title = title;
  if (points != nullptr) {
    toolkit::addScan(configuration.detector, *points, plan);
  }
  return toolkit::drawPlan(plan);
}

py::str toSvg(const Site& site, const py::object& given, const std::string& title) {
  const toolkit::Configuration snapshot = snapshotOf(*site.configuration);
  std::optional<GivenPoints> points;
  if (!given.is_none()) {
    points = pointsOf(given);
  }
  std::string svg;
  {
    const Unlocked released;
    svg = drawn(snapshot, points ? &points->view : nullptr, title);
  }
  return textOf(svg);
}

}  // namespace

void bindDrawing(py::module_& module) {
  module.def("to_svg", &toSvg, Logged());
}

}  // namespace orvantis::python
