#include "Scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "Trigonometry.h"

namespace crossing {
namespace {

constexpr double none = std::numeric_limits<double>::infinity();
constexpr double groundReflectivity = 0.12;

const std::vector<Box> standingBoxes = {
    {{10.0, 17.2, 0.0}, 44.0, 1.0, 7.5, 0, 0.35},     // the house across the road
    {{11.0, 14.3, 0.0}, 10.0, 1.3, 1.1, 0, 0.50},     // the hedge before it
    {{0.2, -1.4, 0.0}, 2.2, 0.8, 0.9, -4000, 0.70},   // the robot: base
    {{0.7, -1.8, 0.9}, 1.3, 0.35, 0.5, -4000, 0.70},  // and arm
    {{-7.0, -3.0, 0.0}, 0.1, 9.0, 2.0, 0, 0.30},      // the fence of its cell
    {{-1.5, -8.2, 0.0}, 11.0, 0.1, 2.0, 0, 0.30},     //
};

const std::vector<Cylinder> standingCylinders = {
    {{13.3, 3.4, 0.0}, 0.12, 6.0, 0.60},  // lamp post
    {{-3.0, 2.4, 0.0}, 0.08, 1.0, 0.60},  // bollards between cell and road
    {{0.0, 2.8, 0.0}, 0.08, 1.0, 0.60},
    {{3.0, 2.4, 0.0}, 0.08, 1.0, 0.60},
};

double castOnGround(const Vector& from, const Vector& direction) {
  return direction.z < 0.0 ? -from.z / direction.z : none;
}

// Between the entry into the last and the exit out of the first of three slabs, in the frame of the box.
double castOnBox(const Box& box, const Vector& from, const Vector& direction) {
  const double c = cosine(box.heading);
  const double s = sine(box.heading);
  const double dx = from.x - box.base.x;
  const double dy = from.y - box.base.y;
  const std::array<double, 3> start = {c * dx + s * dy, c * dy - s * dx, from.z - box.base.z};
  const std::array<double, 3> step = {c * direction.x + s * direction.y, c * direction.y - s * direction.x,
                                      direction.z};
  const std::array<std::pair<double, double>, 3> slabs = {std::pair(-0.5 * box.length, 0.5 * box.length),
                                                          std::pair(-0.5 * box.width, 0.5 * box.width),
                                                          std::pair(0.0, box.height)};
  double enter = 0.0;
  double leave = none;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const auto [low, high] = slabs[axis];
    if (step[axis] == 0.0) {
      if (start[axis] < low || start[axis] > high) {
        return none;
      }
      continue;
    }
    const double a = (low - start[axis]) / step[axis];
    const double b = (high - start[axis]) / step[axis];
    enter = std::max(enter, std::min(a, b));
    leave = std::min(leave, std::max(a, b));
  }
  return enter > 0.0 && enter <= leave ? enter : none;
}

double castOnCylinder(const Cylinder& cylinder, const Vector& from, const Vector& direction) {
  const double dx = from.x - cylinder.base.x;
  const double dy = from.y - cylinder.base.y;
  const double a = direction.x * direction.x + direction.y * direction.y;
  const double b = dx * direction.x + dy * direction.y;
  const double c = dx * dx + dy * dy - cylinder.radius * cylinder.radius;
  const double root = b * b - a * c;
  if (a == 0.0 || root < 0.0) {
    return none;
  }
  const double side = (-b - std::sqrt(root)) / a;
  const double top = cylinder.base.z + cylinder.height;
  const double height = from.z + side * direction.z;
  if (side > 0.0 && height >= cylinder.base.z && height <= top) {
    return side;
  }
  const double lid = direction.z < 0.0 ? (top - from.z) / direction.z : none;
  const double leave = (-b + std::sqrt(root)) / a;
  return lid > 0.0 && lid > side && lid < leave ? lid : none;
}

Vector baseOf(const Object& object, int tenths) {
  return {object.x(tenths) / 1000.0, object.y(tenths) / 1000.0, 0.0};
}

}  // namespace

const std::vector<Object>& objects() {
  static const std::vector<Object> all = {
      // Two cross the road against each other, one waits, one starts to cross.
      {1, "pedestrian", 10600, 6200, 0, 1400, 0, 500, 500, 1780, 9000, "1.571"},
      {2, "pedestrian", 12000, 8700, 0, -1300, 0, 500, 500, 1650, -9000, "-1.571"},
      {3, "pedestrian", 8600, 1800, 0, 0, 0, 500, 500, 1820, 9000, "1.571"},
      {4, "pedestrian", 11200, 3000, 0, 1250, 0, 500, 500, 1200, 9000, "1.571"},
      // A technician comes through the gate of the cell, an operator walks up to the robot.
      {5, "pedestrian", 6490, -4320, -960, -720, 0, 500, 500, 1750, 21690, "-2.498"},
      {6, "pedestrian", 2600, -3900, -550, 850, 0, 500, 500, 1700, 12300, "2.147"},
      // A car stops for them; a cyclist is past the crossing.
      {7, "car", 24000, 9200, -7000, 0, 3500, 4400, 1800, 1500, 18000, "3.142"},
      {8, "cyclist", 14600, 5700, 5000, 0, 0, 1800, 500, 1750, 0, "0.000"},
  };
  return all;
}

Scene::Scene(int tenths) : boxes_(standingBoxes), cylinders_(standingCylinders) {
  for (const Object& object : objects()) {
    const Vector base = baseOf(object, tenths);
    const double height = object.height / 1000.0;
    if (object.kind == "pedestrian") {
      cylinders_.push_back({base, 0.24, height, 0.40});
    } else if (object.kind == "car") {
      // The body, and above it the cabin.
      boxes_.push_back({base, 4.4, 1.8, 0.9, object.heading, 0.80});
      boxes_.push_back({{base.x + 0.3, base.y, 0.9}, 2.4, 1.6, height - 0.9, object.heading, 0.20});
    } else {
      boxes_.push_back({base, 1.8, 0.12, 1.0, object.heading, 0.50});
      cylinders_.push_back({{base.x - 0.1, base.y, 0.8}, 0.22, height - 0.8, 0.40});
    }
  }
}

std::optional<Hit> Scene::cast(const Vector& from, const Vector& direction) const {
  constexpr double range = 60.0;
  Hit hit{castOnGround(from, direction), groundReflectivity};
  for (const Box& box : boxes_) {
    if (const double distance = castOnBox(box, from, direction); distance < hit.distance) {
      hit = {distance, box.reflectivity};
    }
  }
  for (const Cylinder& cylinder : cylinders_) {
    if (const double distance = castOnCylinder(cylinder, from, direction); distance < hit.distance) {
      hit = {distance, cylinder.reflectivity};
    }
  }
  return hit.distance <= range ? std::optional<Hit>(hit) : std::nullopt;
}

}  // namespace crossing
