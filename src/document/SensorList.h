#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/Finding.h"

namespace orvantis::toolkit {

/// A sensor of a site: where it is, and where its frames come from.
struct Sensor {
  std::string name;
  /// x, y, z in metres, roll, pitch, yaw in degrees; none: the points are in the frame of the zones.
  std::optional<std::array<double, 6>> pose;
  std::vector<std::string> files;  ///< as they are written; none: those that are given otherwise
  std::string topic;               ///< of recordings; empty: the only one
};

/// What there is to say about the text of a list of sensors, and what it holds.
struct CheckedSensorList {
  std::vector<Finding> findings;  ///< in the order of the text
  std::vector<Sensor> sensors;    ///< when no finding is an error
};

/// Reads a list of sensors, which may be anything: {"sensors": [{"name", "pose", "files", "topic"}]}. Safe to
/// call from several threads.
CheckedSensorList checkSensors(std::string_view text);

}  // namespace orvantis::toolkit
