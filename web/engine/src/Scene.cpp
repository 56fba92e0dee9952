#include "Scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <variant>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "drawing/SitePlan.h"
#include "session/Coordinates.h"
#include "text/JsonText.h"

namespace orvantis::engine {
namespace {

using boost::json::array;
using boost::json::object;
using toolkit::Coordinates;

template <typename Use>
void forEach(const Points& points, Use use) {
  std::visit(
      [&](const auto& view) {
        for (std::size_t i = 0; i < view.size; ++i) {
          use(i, toolkit::coordinatesOf(view, i));
        }
      },
      points);
}

}  // namespace

Scene::Scene(const Points& points, std::span<const float> intensities)
    : tiles_(points, intensities), counts_(tiles_) {
  statistics_.add(points);
}

Scene::Scene(const toolkit::InputFrame& frame, std::span<const float> intensities)
    : Scene(frame.points, intensities) {
  dropped_ = frame.dropped;
  for (const toolkit::Column& column : frame.columns) {
    columns_.push_back(column.name);
  }
}

// Near the middle of the points: far from zero a float steps by centimetres.
std::array<double, 3> Scene::origin() const {
  const Box& box = tiles_.box();
  if (box.isEmpty()) {
    return {0.0, 0.0, 0.0};
  }
  constexpr double near = 1000.0;
  const auto middle = [](double least, double most) {
    return std::max(std::fabs(least), std::fabs(most)) < near ? 0.0 : std::round(least / 2.0 + most / 2.0);
  };
  return {middle(box.xMin, box.xMax), middle(box.yMin, box.yMax), middle(box.zMin, box.zMax)};
}

std::string Scene::description() const {
  object result{{"points", tiles_.size() + tiles_.noReturns()},
                {"noReturns", tiles_.noReturns()},
                {"atOrigin", statistics_.atOrigin()},
                {"dropped", dropped_.atOrigin + dropped_.tooNear + dropped_.tooFar},
                {"droppedAtOrigin", dropped_.atOrigin},
                {"droppedTooNear", dropped_.tooNear},
                {"droppedTooFar", dropped_.tooFar},
                {"hasIntensities", !tiles_.values().empty()},
                {"extents", nullptr},
                {"ground", nullptr}};
  const auto at = origin();
  result["origin"] = array{at[0], at[1], at[2]};
  if (const auto& extents = statistics_.extents()) {
    array list;
    for (const toolkit::Extent& extent : *extents) {
      list.push_back(object{{"least", extent.least}, {"greatest", extent.greatest}});
    }
    result["extents"] = std::move(list);
  }
  if (const auto ground = statistics_.ground()) {
    result["ground"] = *ground;
  }
  array columns;
  for (const std::string& column : columns_) {
    columns.emplace_back(column);
  }
  result["columns"] = std::move(columns);
  return toolkit::toJson(result);
}

std::vector<float> Scene::positions() const {
  const auto at = origin();
  std::vector<float> positions;
  positions.reserve(3 * tiles_.size());
  forEach(tiles_.all(), [&](std::size_t, const Coordinates& p) {
    positions.push_back(static_cast<float>(p.x - at[0]));
    positions.push_back(static_cast<float>(p.y - at[1]));
    positions.push_back(static_cast<float>(p.z - at[2]));
  });
  return positions;
}

std::vector<std::uint32_t> Scene::heights(std::size_t bins) const {
  std::vector<std::uint32_t> numbers(bins);
  const Box& box = tiles_.box();
  const double step = (box.zMax - box.zMin) / static_cast<double>(bins);
  forEach(tiles_.all(), [&](std::size_t, const Coordinates& p) {
    const double bin = step > 0.0 ? (p.z - box.zMin) / step : 0.0;
    ++numbers[std::min(static_cast<std::size_t>(bin), bins - 1)];
  });
  return numbers;
}

std::string Scene::plan(const toolkit::Configuration& configuration, const std::string& title) {
  toolkit::PlanContent plan = toolkit::planOf(configuration);
  plan.title = title;
  counts_.count(configuration.detector);
  const std::vector<std::uint8_t>& verdicts = counts_.verdicts();
  forEach(tiles_.all(), [&](std::size_t i, const Coordinates& p) {
    const bool isCounted = (verdicts[i] & 3U) == static_cast<unsigned>(Verdict::Counted);
    plan.dots.push_back({filter::detection::Point(p.x, p.y), isCounted, p.z});
  });
  return toolkit::drawPlan(plan);
}

}  // namespace orvantis::engine
