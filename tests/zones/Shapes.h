#pragma once

#include <string>
#include <utility>
#include <vector>

#include <core/Planar.h>
#include <filter/detection/Point.h>
#include <filter/detection/Polygon.h>

namespace orvantis::testing {

using Coordinates = std::vector<std::pair<double, double>>;

core::PlanarPolygon outline(const Coordinates& vertices);
/// The axis-aligned square from `low` to `high` on both axes, clockwise.
core::PlanarPolygon squareOutline(double low, double high);
std::vector<filter::detection::Point> points(const Coordinates& vertices);
Coordinates coordinates(const std::vector<filter::detection::Point>& points);
Coordinates verticesOf(const filter::detection::Polygon& polygon);

}  // namespace orvantis::testing
