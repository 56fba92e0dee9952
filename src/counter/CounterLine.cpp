#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include <boost/geometry/io/dsv/write.hpp>

#include <core/State.h>
#include <filter/detection/CounterLine.h>

#include "counter/EndPoints.h"
#include "planar/Region.h"

namespace orvantis::filter::detection {
namespace {

void checkSize(const std::vector<core::PlanarPoint>& points) {
  if (points.size() != static_cast<std::size_t>(CounterLine::POINTS_VECTOR_SIZE)) {
    throw std::runtime_error("CounterLine points size is:" + std::to_string(points.size()) +
                             " must be:" + std::to_string(CounterLine::POINTS_VECTOR_SIZE));
  }
}

}  // namespace

const int CounterLine::POINTS_VECTOR_SIZE;

CounterLine::CounterLine() : points_(POINTS_VECTOR_SIZE, point(0.0, 0.0)) {}

CounterLine::CounterLine(const std::string& name, const point& first, const point& second,
                         const point* reference, CounterLineDirectionType given_direction)
    : name_(name), points_{first, second} {
  order(reference, given_direction);
}

CounterLine::CounterLine(const std::string& name, const std::vector<point>& points, const point* reference,
                         CounterLineDirectionType given_direction)
    : name_(name), points_(points) {
  checkSize(points_);
  order(reference, given_direction);
}

CounterLine::~CounterLine() = default;

void CounterLine::setPoints(const std::vector<point>& points) {
  checkSize(points);
  points_ = points;
}

CounterLineDirectionType CounterLine::direction(const point& p) const {
  const auto [first, second] = endPoints(points_);
  const double cross =
      (second.x() - first.x()) * (p.y() - first.y()) - (second.y() - first.y()) * (p.x() - first.x());
  // Both the rounding to single precision and its epsilon decide which points count as on the line; hosts
  // rely on these.
  const auto rounded = static_cast<float>(cross);
  int sign = 0;
  auto side = CounterLineDirectionType::ON;
  if (!(std::abs(rounded) <= std::numeric_limits<float>::epsilon())) {
    sign = rounded > 0.0F ? 1 : -1;  // NaN is not above 0, so it gives RIGHT
    side = sign > 0 ? CounterLineDirectionType::LEFT : CounterLineDirectionType::RIGHT;
  }
  logger_.traceStream().write("direction::'", name_, "':", p.x(), ":", p.y(), "::::", first.x(), ":",
                              first.y(), ":", second.x(), ":", second.y(), ":--:", sign,
                              ":==:", static_cast<std::int32_t>(side), "**", rounded);
  return side;
}

CounterLineDirectionType CounterLine::direction(const Eigen::Matrix<float, 2, 1>& p) const {
  return direction(point(static_cast<double>(p.x()), static_cast<double>(p.y())));
}

bool CounterLine::intersects(const polygon& area) const {
  const auto [first, second] = endPoints(points_);
  const bool isIntersected = !points_.empty() && planar::segmentIntersects(first, second, area);
  logger_.traceStream().write("intersects:segment:'", name_, "':", first.x(), ":", first.y(), ":", second.x(),
                              ":", second.y());
  logger_.traceStream().write("intersects:polygon:'", name_, "':", boost::geometry::dsv(area));
  logger_.traceStream().write("intersects:isIntersected:'", name_, "':", isIntersected);
  return isIntersected;
}

bool CounterLine::within(const polygon& area) const {
  const auto [first, second] = endPoints(points_);
  const bool firstWithin = !points_.empty() && planar::contains(area, first);
  const bool secondWithin = !points_.empty() && planar::contains(area, second);
  const bool isWithin = firstWithin && secondWithin;
  logger_.traceStream().write("within:segment:'", name_, "':", first.x(), ":", first.y(), ":", second.x(),
                              ":", second.y());
  logger_.traceStream().write("within:polygon:'", name_, "':", boost::geometry::dsv(area));
  logger_.traceStream().write("within:isWithin:'", name_, "':", isWithin, "=", firstWithin, ":",
                              secondWithin);
  return isWithin;
}

bool CounterLine::intersects(const core::State& state) const {
  const polygon footprint = state.getBoostPolygon();
  return intersects(footprint);
}

bool CounterLine::within(const core::State& state) const {
  const polygon footprint = state.getBoostPolygon();
  return within(footprint);
}

void CounterLine::order(const point* reference, CounterLineDirectionType given_direction) {
  if (reference == nullptr) {
    return;
  }
  if (given_direction == CounterLineDirectionType::ON) {
    throw std::runtime_error("CounterLine given_direction cannot be ON, it must be LEFT or RIGHT");
  }
  if (direction(*reference) != given_direction) {
    std::swap(points_[0], points_[1]);
  }
}

}  // namespace orvantis::filter::detection
