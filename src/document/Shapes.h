#pragma once

#include <numbers>
#include <vector>

#include <filter/detection/CounterLine.h>
#include <filter/detection/Point.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone.h>

namespace orvantis::toolkit {

// The geometry of shapes and lines, for tables and pictures.

constexpr double fullTurn = 2.0 * std::numbers::pi;

/// The part of a disc that a sector covers; angles in radians, counterclockwise.
struct Arc {
  double from;
  double opening;
  double radius;
};

Arc arcOf(const filter::detection::Sector& sector);

/// The vertices of a polygon, or the turned corners of a rectangle; empty for a sector.
std::vector<filter::detection::Point> vertices(const filter::detection::Zone& shape);

/// The area in square units, never negative. Unlike `Zone::area`, it does not have the sign of the winding,
/// and it is the covered part of the disc for every sector.
double coveredArea(const filter::detection::Zone& shape);

/// The direction of a line from its first to its second point, of length 1; (0, 0) for a line without length.
filter::detection::Point directionOf(const filter::detection::CounterLine& line);

}  // namespace orvantis::toolkit
