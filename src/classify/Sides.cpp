#include "classify/Sides.h"

#include <cmath>

#include <filter/detection/Point.h>

namespace orvantis::filter::classify {
namespace {

float valueOf(const Curve& curve, double x, double y) {
  return curve(static_cast<float>(x - static_cast<double>(curve.x)),
               static_cast<float>(y - static_cast<double>(curve.y)));
}

}  // namespace

unsigned sideOf(const Curve& curve, double x, double y) {
  const float value = valueOf(curve, x, y);
  return value > 1.0F ? Sides::positive : value < -1.0F ? Sides::negative : 0U;
}

void askSides(const detection::Zone& shape, const Box& box, const Curve& curve, Sides& sides) {
  for (const double x : {box.minX, box.maxX}) {
    for (const double y : {box.minY, box.maxY}) {
      const unsigned side = sideOf(curve, x, y);
      if ((side & ~sides.known) != 0) {
        sides.tell(side, shape.within(detection::Point(x, y)));
      }
    }
  }
}

unsigned combinationOf(const std::array<const Curve*, 2>& curves, double x, double y) {
  const float first = valueOf(*curves[0], x, y);
  const float second = valueOf(*curves[1], x, y);
  const bool isClear = std::abs(first) > 1.0F && std::abs(second) > 1.0F;
  return isClear ? 1U << ((first > 0.0F ? 1U : 0U) | (second > 0.0F ? 2U : 0U)) : 0U;
}

void askSides(const detection::Zone& shape, const Box& box, const std::array<const Curve*, 2>& curves,
              Sides& sides) {
  constexpr int steps = 4;
  for (int i = 0; i <= steps; ++i) {
    for (int j = 0; j <= steps; ++j) {
      const double x = box.minX + i * (box.maxX - box.minX) / steps;
      const double y = box.minY + j * (box.maxY - box.minY) / steps;
      const unsigned combination = combinationOf(curves, x, y);
      if ((combination & ~sides.known) != 0) {
        sides.tell(combination, shape.within(detection::Point(x, y)));
      }
    }
  }
}

}  // namespace orvantis::filter::classify
