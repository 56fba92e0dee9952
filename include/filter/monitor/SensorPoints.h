#pragma once

#include <string>

#include <filter/classify/Points.h>

namespace orvantis::filter::monitor {

/// What one sensor saw in a frame.
struct SensorPoints {
  std::string sensor;  ///< its name, as `Zone3dTarsel::getSpecificSensors` has it
  classify::Points points;
};

}  // namespace orvantis::filter::monitor
