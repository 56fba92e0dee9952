#include "recording/FrameSource.h"

#include "files/Failure.h"

namespace orvantis::toolkit {

std::vector<filter::monitor::SensorPoints> pointsBySensor(const InputFrame& frame) {
  std::vector<filter::monitor::SensorPoints> sensors;
  for (const SensorFrame& sensor : frame.sensors) {
    sensors.push_back({sensor.sensor, sensor.points});
  }
  return sensors;
}

void giveStamp(InputFrame& frame, filter::monitor::Stamp stamp) {
  if (frame.stamp) {
    throw Failure(frame.file,
                  "is a recording, whose frames have stamps of their own; a list is of single frames");
  }
  frame.stamp = stamp;
}

}  // namespace orvantis::toolkit
