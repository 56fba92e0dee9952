#pragma once

#include <array>
#include <string_view>

namespace orvantis::toolkit {

/// The position and orientation of a sensor in the frame of its site. A measured point is first turned, then
/// moved. It is turned by roll about x, then by pitch about y, then by yaw about z. These are the axes of the
/// site, and turns are counterclockwise when seen against the axis. The results have the same bits on every
/// machine.
class Pose {
 public:
  /// A pose that neither turns nor moves.
  Pose() = default;

  /// @param x,y,z metres
  /// @param roll,pitch,yaw degrees; multiples of 90 turn without any rounding
  Pose(double x, double y, double z, double roll, double pitch, double yaw);

  /// Reads "x,y,z,roll,pitch,yaw".
  /// @throws std::invalid_argument that says what is allowed
  static Pose parse(std::string_view text);

  std::array<double, 3> operator()(double x, double y, double z) const noexcept {
    return {turned(0, x, y, z) + offset_[0], turned(1, x, y, z) + offset_[1],
            turned(2, x, y, z) + offset_[2]};
  }

  /// The heading on the site's plan for a heading on the sensor's plan, in radians. It is 0 for a direction
  /// that is vertical at the site.
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
