#include "recording/Pose.h"

#include <cmath>
#include <stdexcept>
#include <system_error>

#include "recording/FieldCursor.h"
#include "recording/Quoted.h"
#include "text/Number.h"
#include "trigonometry/Trigonometry.h"

namespace orvantis::toolkit {
namespace {

constexpr double radiansOfDegree = 3.14159265358979323846 / 180.0;

struct Turn {
  double sine;
  double cosine;
};

Turn turnOf(double degrees) {
  const double rest = std::remainder(degrees, 360.0);  // exact
  if (rest == 0.0) {
    return {0.0, 1.0};
  }
  if (std::fabs(rest) == 90.0) {
    return {std::copysign(1.0, rest), 0.0};
  }
  if (std::fabs(rest) == 180.0) {
    return {0.0, -1.0};
  }
  return {trigonometry::sine(rest * radiansOfDegree), trigonometry::cosine(rest * radiansOfDegree)};
}

}  // namespace

Pose::Pose(double x, double y, double z, double roll, double pitch, double yaw)
    : offset_{x, y, z},
      yaw_(std::remainder(yaw, 360.0) * radiansOfDegree),
      isLevel_(std::remainder(roll, 360.0) == 0.0 && std::remainder(pitch, 360.0) == 0.0) {
  const auto [sr, cr] = turnOf(roll);
  const auto [sp, cp] = turnOf(pitch);
  const auto [sy, cy] = turnOf(yaw);
  turn_ = {{{cy * cp, cy * sp * sr - sy * cr, cy * sp * cr + sy * sr},
            {sy * cp, sy * sp * sr + cy * cr, sy * sp * cr - cy * sr},
            {-sp, cp * sr, cp * cr}}};
}

Pose Pose::parse(std::string_view text) {
  constexpr std::size_t count = 6;
  std::array<double, count> values{};
  const std::vector<std::string_view> fields = splitRow(text, ',', count + 1);
  bool areNumbers = fields.size() == count;
  for (std::size_t i = 0; i < count && areNumbers; ++i) {
    const char* const last = fields[i].data() + fields[i].size();
    const auto [end, error] = readNumber(fields[i].data(), last, values[i]);
    areNumbers = error == std::errc() && end == last && std::isfinite(values[i]);
  }
  if (!areNumbers) {
    throw std::invalid_argument(quoted(text) +
                                " is not a pose; give x,y,z,roll,pitch,yaw: metres and degrees, six numbers");
  }
  return {values[0], values[1], values[2], values[3], values[4], values[5]};
}

double Pose::heading(double heading) const noexcept {
  if (isLevel_) {
    return heading + yaw_;  // the same box for a sensor that is only moved
  }
  const double along = trigonometry::cosine(heading);
  const double across = trigonometry::sine(heading);
  const double x = turned(0, along, across, 0.0);
  const double y = turned(1, along, across, 0.0);
  return x == 0.0 && y == 0.0 ? 0.0 : trigonometry::bearing(y, x);
}

}  // namespace orvantis::toolkit
