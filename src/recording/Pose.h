#pragma once

#include <array>
#include <string_view>

namespace orvantis::toolkit {

/// Where a sensor is, and how it is turned, in the frame of its site: what it measures, turned and then
/// moved, is in that frame. Turned by roll about x, then by pitch about y, then by yaw about z, all of them
/// axes of the site, counterclockwise when looked at against the axis. Points and headings move to the same
/// bits on every machine.
class Pose {
 public:
  /// No turn and no move.
  Pose() = default;

  /// @param x,y,z metres
  /// @param roll,pitch,yaw degrees; multiples of 90 turn without any rounding
  Pose(double x, double y, double z, double roll, double pitch, double yaw);

  /// "x,y,z,roll,pitch,yaw".
  /// @throws std::invalid_argument with what is allowed
  static Pose parse(std::string_view text);

  std::array<double, 3> operator()(double x, double y, double z) const noexcept {
    return {turned(0, x, y, z) + offset_[0], turned(1, x, y, z) + offset_[1],
            turned(2, x, y, z) + offset_[2]};
  }

  /// Where a heading on the sensor's plan points on that of the site, in radians. A direction that stands
  /// upright there has the heading 0.
  double heading(double heading) const noexcept;

 private:
  double turned(std::size_t row, double x, double y, double z) const noexcept {
    return turn_[row][0] * x + turn_[row][1] * y + turn_[row][2] * z;
  }

  std::array<std::array<double, 3>, 3> turn_ = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  std::array<double, 3> offset_{};
  double yaw_ = 0.0;     // radians
  bool isLevel_ = true;  // neither roll nor pitch
};

}  // namespace orvantis::toolkit
