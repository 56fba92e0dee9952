#pragma once

#include <numbers>
#include <vector>

#include <filter/detection/CounterLine.h>
#include <filter/detection/Point.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone.h>

namespace orvantis::toolkit {

// What shapes and lines come to, for tables and pictures.

constexpr double fullTurn = 2.0 * std::numbers::pi;

/// The part of a disc that a sector covers; angles in radians, counterclockwise.
struct Arc {
  double from;
  double opening;
  double radius;
};

Arc arcOf(const filter::detection::Sector& sector);

/// The vertices of a polygon, the turned corners of a rectangle; none for a sector.
std::vector<filter::detection::Point> vertices(const filter::detection::Zone& shape);

/// The area in square units, positive: unlike `Zone::area`, the covered part of the disc for every sector and
/// without the sign of the winding.
double coveredArea(const filter::detection::Zone& shape);

/// The direction of a line from its first to its second point, of length 1; (0, 0) for a line without length.
filter::detection::Point directionOf(const filter::detection::CounterLine& line);

}  // namespace orvantis::toolkit
