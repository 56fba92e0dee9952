#pragma once

#include <optional>
#include <string>
#include <vector>

namespace crossing {

/// Metres; x along the road, y across it away from the robot cell, z up from the ground, origin below the
/// sensor.
struct Vector {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

/// A box standing on its base, turned about its vertical axis.
struct Box {
  Vector base;              ///< the middle of the base
  double length = 0.0;      ///< along the heading
  double width = 0.0;       ///< across it
  double height = 0.0;      ///< upwards
  int heading = 0;          ///< hundredths of a degree, counterclockwise from +x
  double reflectivity = 0;  ///< 0 to 1
};

/// An upright cylinder: a person, a post.
struct Cylinder {
  Vector base;
  double radius = 0.0;
  double height = 0.0;
  double reflectivity = 0.0;
};

/// Something that moves and is tracked.
struct Object {
  int id;
  std::string kind;
  int xStart, yStart;         ///< millimetres
  int xSpeed, ySpeed;         ///< millimetres per second
  int xAcceleration;          ///< millimetres per second squared
  int length, width, height;  ///< millimetres
  int heading;                ///< hundredths of a degree
  const char* headingText;    ///< the same in radians

  /// The place of its middle in millimetres, at a number of tenths of a second.
  int x(int tenths) const { return xStart + xSpeed * tenths / 10 + xAcceleration * tenths * tenths / 200; }
  int y(int tenths) const { return yStart + ySpeed * tenths / 10; }
};

/// The people and vehicles of the recording.
const std::vector<Object>& objects();

struct Hit {
  double distance = 0.0;
  double reflectivity = 0.0;
};

/// The site at one instant.
class Scene {
 public:
  explicit Scene(int tenths);

  /// What a beam meets first. @param direction of length 1
  std::optional<Hit> cast(const Vector& from, const Vector& direction) const;

 private:
  std::vector<Box> boxes_;
  std::vector<Cylinder> cylinders_;
};

}  // namespace crossing
