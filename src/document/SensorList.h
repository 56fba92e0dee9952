#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/Finding.h"

namespace orvantis::toolkit {

/// A sensor of a site: its pose, and where its frames come from.
struct Sensor {
  std::string name;
  /// x, y, z in metres, roll, pitch, yaw in degrees; empty: the points are in the frame of the zones.
  std::optional<std::array<double, 6>> pose;
  std::vector<std::string> files;  ///< as they are written; empty: those that are given elsewhere
  std::string topic;               ///< of its point clouds in recordings; empty: the only topic
};

/// The findings about the text of a list of sensors, and its content.
struct CheckedSensorList {
  std::vector<Finding> findings;  ///< in the order of the text
  std::vector<Sensor> sensors;    ///< empty when a finding is an error
};

/// Reads a list of sensors: {"sensors": [{"name", "pose", "files", "topic"}]}. The text may be anything. Safe
/// to call from several threads.
CheckedSensorList checkSensors(std::string_view text);

}  // namespace orvantis::toolkit
