#include "classify/Borders.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <typeinfo>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

namespace orvantis::filter::classify {
namespace {

using detection::Point;
using detection::Polygon;
using detection::Sector;
using detection::Zone;

// Beyond this the safety bands would be wider than a millimetre. No map projection has such coordinates.
constexpr double largestCoordinate = 1.0e7;
// Indexing more vertices would take longer than asking the shape.
constexpr std::size_t mostVertices = 4096;
constexpr std::size_t smallestRing = 3;
constexpr double wholeDiscTolerance = 0.0001;

constexpr double turn = 2.0 * std::numbers::pi;
// One rounding step at 1.
constexpr double ulp = 0x1p-52;
// Keeps a band from vanishing when a test sets the margins to zero.
constexpr double smallestBand = 1.0e-20;
// The relative error of a curve's value in floats, for each unit of the sum of its terms' magnitudes: each
// term goes through at most eight roundings of 2^-24.
constexpr double floatError = 0x1.1p-21;

// The angle from one bearing counterclockwise to another, from 0 to less than a turn.
double turnsFrom(double from, double to) {
  const double angle = std::fmod(to - from, turn);
  return angle < 0.0 ? angle + turn : angle;
}

bool isModerate(double coordinate) {
  return std::abs(coordinate) <= largestCoordinate;
}

std::optional<Outline> outlineOfRing(const Polygon& polygon) {
  std::vector<Point> ring;
  polygon.getPolygon(ring);
  Outline outline;
  if (ring.size() < smallestRing) {
    return outline;
  }
  const bool isTame = std::all_of(ring.begin(), ring.end(), [](const Point& vertex) {
    return isModerate(vertex.x()) && isModerate(vertex.y());
  });
  if (!isTame || ring.size() > mostVertices) {
    return std::nullopt;
  }
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Point& from = ring[i];
    const Point& to = ring[i + 1 < ring.size() ? i + 1 : 0];
    outline.bounds.include(from.x(), from.y());
    if (from.x() != to.x() || from.y() != to.y()) {
      outline.pieces.push_back(
          {.kind = Border::Kind::Edge, .x1 = from.x(), .y1 = from.y(), .x2 = to.x(), .y2 = to.y()});
    }
  }
  return outline;
}

std::optional<Outline> outlineOfSector(const Sector& sector) {
  double minAngle = 0.0;
  double maxAngle = 0.0;
  double radius = 0.0;
  sector.getSector(minAngle, maxAngle, radius);
  const Point origin = sector.getOrigin();
  if (!std::isfinite(minAngle) || !std::isfinite(maxAngle) || !isModerate(radius) ||
      !isModerate(origin.x()) || !isModerate(origin.y())) {
    return std::nullopt;
  }
  const double r = std::abs(radius);
  const bool isWholeDisc = std::abs(minAngle - maxAngle) < wholeDiscTolerance;
  double opening = maxAngle - minAngle;
  if (isWholeDisc) {
    opening = turn;
  } else if (opening < 0.0) {
    opening += turn;
  }
  const auto onArc = [&](double bearing) {
    return Point(origin.x() + r * std::cos(bearing), origin.y() + r * std::sin(bearing));
  };

  Outline outline;
  outline.bounds.include(origin.x(), origin.y());
  for (const double bearing : {minAngle, maxAngle}) {
    const Point end = onArc(bearing);
    outline.bounds.include(end.x(), end.y());
    if (!isWholeDisc) {
      outline.pieces.push_back(
          {.kind = Border::Kind::Bearing, .x1 = origin.x(), .y1 = origin.y(), .x2 = end.x(), .y2 = end.y()});
    }
  }
  for (int quarter = 0; quarter < 4; ++quarter) {
    const double bearing = turn / 4.0 * quarter;
    if (turnsFrom(minAngle, bearing) <= opening) {
      outline.bounds.include(onArc(bearing).x(), onArc(bearing).y());
    }
  }
  outline.pieces.push_back({.kind = Border::Kind::Arc,
                            .x1 = origin.x(),
                            .y1 = origin.y(),
                            .radius = r,
                            .opening = opening,
                            .beginX = std::cos(minAngle),
                            .beginY = std::sin(minAngle),
                            .endX = std::cos(maxAngle),
                            .endY = std::sin(maxAngle)});
  return outline;
}

}  // namespace

std::optional<Outline> outlineOf(const Zone& shape) {
  const std::type_info& type = typeid(shape);
  if (type == typeid(Polygon) || type == typeid(detection::Rectangle)) {
    return outlineOfRing(static_cast<const Polygon&>(shape));
  }
  if (type == typeid(Sector)) {
    return outlineOfSector(static_cast<const Sector&>(shape));
  }
  return std::nullopt;
}

namespace {

// When coordinate differences are at most `reach`, a computed side determinant above this has the true sign
// and does not count as zero.
double surelyNotZero(double reach) {
  return ulp * (std::max(1.0, reach) + 16.0 * reach * reach);
}

// A point may lie a little outside its cell, and a cell needs only to touch the border to have a curve.
constexpr double cellsBeyond = 2.0;

}  // namespace

Margins::Margins(const Bounds& zone, const Patch& patch, double scale)
    : patch_(patch),
      firstColumn_(patch.column(zone.minX - patch.slack)),
      lastColumn_(patch.column(zone.maxX + patch.slack)),
      firstRow_(patch.row(zone.minY - patch.slack)),
      lastRow_(patch.row(zone.maxY + patch.slack)),
      centreX_(static_cast<float>(0.5 * (zone.minX + zone.maxX))),
      centreY_(static_cast<float>(0.5 * (zone.minY + zone.maxY))),
      farthestX_(0.5 * (zone.maxX - zone.minX) + cellsBeyond * patch.cell +
                 std::abs(static_cast<double>(centreX_) - 0.5 * (zone.minX + zone.maxX))),
      farthestY_(0.5 * (zone.maxY - zone.minY) + cellsBeyond * patch.cell +
                 std::abs(static_cast<double>(centreY_) - 0.5 * (zone.minY + zone.maxY))),
      scale_(scale),
      slack_(scale * patch.slack),
      reach_(2.0 * (zone.longSide() + cellsBeyond * patch.cell)),
      determinant_(surelyNotZero(reach_)),
      tolerance_(ulp * std::max(1.0, zone.largestCoordinate() + reach_)) {
  // A point in a decided cell is at least half the slack above or below the edge. Points that are looked up
  // at the rim of the patch may be as far away as Lattice::farthest; the determinant grows with that
  // distance.
  const double far = Lattice::farthest;
  steepWidth_ =
      scale * std::max(2.0 * determinant_ / (0.5 * patch.slack), 2.0 * surelyNotZero(far + reach_) / far);
}

Curve Margins::curveOf(const Border& border) const {
  const double x = border.x1 - static_cast<double>(centreX_);
  const double y = border.y1 - static_cast<double>(centreY_);
  if (border.kind == Border::Kind::Arc) {
    const double square = border.radius * border.radius;
    return scaled(1.0, -2.0 * x, -2.0 * y, x * x + y * y - square, 64.0 * ulp * square);
  }
  const double dx = border.x2 - border.x1;
  const double dy = border.y2 - border.y1;
  const double length = std::hypot(dx, dy);
  double band = 64.0 * ulp * reach_ + 8.0 * tolerance_;
  if (border.kind == Border::Kind::Edge) {
    band += 2.0 * determinant_ / length;
  }
  return scaled(0.0, -dy / length, dx / length, (dy * x - dx * y) / length, band);
}

// The curve with these coefficients, scaled so that values between -1 and 1 cover the band and the error of
// floats.
Curve Margins::scaled(double q, double a, double b, double c, double band) const {
  const double u = farthestX_;
  const double v = farthestY_;
  const double terms = q * (u * u + v * v) + std::abs(a) * u + std::abs(b) * v + std::abs(c);
  const double scale = 1.0 / (scale_ * (band + floatError * terms) + smallestBand);
  return {static_cast<float>(q * scale),
          static_cast<float>(a * scale),
          static_cast<float>(b * scale),
          static_cast<float>(c * scale),
          centreX_,
          centreY_};
}

bool Margins::isSteep(const Border& border) const {
  if (border.kind != Border::Kind::Edge) {
    return false;
  }
  const double width = std::abs(border.x2 - border.x1);
  // When the ends are as close as this in x, a point between them counts as equal to both, and the edge as
  // upright.
  const double upright = ulp * std::max(1.0, std::min(std::abs(border.x1), std::abs(border.x2)));
  return width > upright && width < steepWidth_;
}

void Margins::cover(const Border& border, std::vector<Span>& spans) const {
  if (border.kind == Border::Kind::Arc) {
    coverArc(border, spans);
  } else {
    coverSegment(border, spans);
  }
}

void Margins::coverSegment(const Border& segment, std::vector<Span>& spans) const {
  const auto [left, right] = std::minmax(segment.x1, segment.x2);
  const auto [bottom, top] = std::minmax(segment.y1, segment.y2);
  const bool everyRow = isSteep(segment);
  // A narrow segment is taken whole in each column, because its slope would amplify rounding.
  const bool isNarrow = right - left < patch_.cell / 16.0;
  const double slope = (segment.y2 - segment.y1) / (segment.x2 - segment.x1);
  const int lastColumn = patch_.column(right + slack_);
  for (int column = patch_.column(left - slack_); column <= lastColumn; ++column) {
    if (everyRow) {
      spans.push_back({column, 0, patch_.rows - 1});
      continue;
    }
    double low = bottom;
    double high = top;
    if (!isNarrow) {
      const double columnLeft = patch_.x0 + column * patch_.cell;
      const double from = std::clamp(columnLeft - slack_, left, right);
      const double to = std::clamp(columnLeft + patch_.cell + slack_, left, right);
      const double yFrom = segment.y1 + (from - segment.x1) * slope;
      const double yTo = segment.y1 + (to - segment.x1) * slope;
      low = std::clamp(std::min(yFrom, yTo), bottom, top);
      high = std::clamp(std::max(yFrom, yTo), bottom, top);
    }
    spans.push_back({column, patch_.row(low - slack_), patch_.row(high + slack_)});
  }
}

void Margins::coverArc(const Border& arc, std::vector<Span>& spans) const {
  const double r = arc.radius;
  const int firstColumn = std::max(patch_.column(arc.x1 - r - slack_), firstColumn_);
  const int lastColumn = std::min(patch_.column(arc.x1 + r + slack_), lastColumn_);
  for (int column = firstColumn; column <= lastColumn; ++column) {
    const double from = patch_.x0 + column * patch_.cell - slack_ - arc.x1;
    const double to = from + patch_.cell + 2.0 * slack_;
    const bool spansCentre = from <= 0.0 && to >= 0.0;
    const double nearest = spansCentre ? 0.0 : std::min({std::abs(from), std::abs(to), r});
    const double farthest = std::min(std::max(std::abs(from), std::abs(to)), r);
    const double high = std::sqrt(r * r - nearest * nearest);
    const double low = std::sqrt(r * r - farthest * farthest);
    coverArcRows(arc, column, arc.y1 - high - slack_, arc.y1 - low + slack_, spans);
    coverArcRows(arc, column, arc.y1 + low - slack_, arc.y1 + high + slack_, spans);
  }
}

// Among the cells that the circle passes through between two heights, takes those that the arc touches or
// almost touches.
void Margins::coverArcRows(const Border& arc, int column, double low, double high,
                           std::vector<Span>& spans) const {
  const int lastRow = std::min(patch_.row(high), lastRow_);
  // Cells as near as this to the arc's ends are taken too.
  const double reach = 2.0 * (patch_.cell + slack_);
  bool isInRun = false;
  for (int row = std::max(patch_.row(low), firstRow_); row <= lastRow; ++row) {
    const double dx = patch_.x0 + (column + 0.5) * patch_.cell - arc.x1;
    const double dy = patch_.y0 + (row + 0.5) * patch_.cell - arc.y1;
    const bool isAfterBegin = arc.beginX * dy - arc.beginY * dx >= -reach;
    const bool isBeforeEnd = dx * arc.endY - dy * arc.endX >= -reach;
    const bool isCovered = arc.opening <= 0.5 * turn ? isAfterBegin && isBeforeEnd
                           : arc.opening < turn      ? isAfterBegin || isBeforeEnd
                                                     : true;
    if (isCovered && isInRun) {
      spans.back().last = row;
    } else if (isCovered) {
      spans.push_back({column, row, row});
    }
    isInRun = isCovered;
  }
}

}  // namespace orvantis::filter::classify
