#include <array>
#include <utility>

#include <boost/geometry/algorithms/correct.hpp>
#include <boost/geometry/strategies/cartesian.hpp>

#include <core/State.h>

#include "trigonometry/Trigonometry.h"

namespace orvantis::core {

State::State(PlanarPolygon footprint) : footprint_(std::move(footprint)) {
  boost::geometry::correct(footprint_);
}

State::State(double x, double y, double length, double width, double heading) : centre_(PlanarPoint(x, y)) {
  const double halfLength = length * 0.5;
  const double halfWidth = width * 0.5;
  const double cosine = trigonometry::cosine(heading);
  const double sine = trigonometry::sine(heading);
  // Front left, front right, rear right, rear left: clockwise.
  const std::array<std::pair<double, double>, 4> corners = {{{halfLength, halfWidth},
                                                             {halfLength, -halfWidth},
                                                             {-halfLength, -halfWidth},
                                                             {-halfLength, halfWidth}}};
  for (const auto& [along, across] : corners) {
    footprint_.outer().emplace_back(x + along * cosine - across * sine, y + along * sine + across * cosine);
  }
  boost::geometry::correct(footprint_);  // a negative extent turns the box inside out
}

PlanarPolygon State::getBoostPolygon() const {
  return footprint_;
}

}  // namespace orvantis::core
