#include "Recording.h"

#include "Console.h"
#include "SensorFile.h"
#include "SensorInput.h"

namespace orvantis::app {

std::unique_ptr<FrameSource> openFrames(const Recording& recording, const Configuration& configuration,
                                        const Console& console) {
  if (recording.sensors.empty()) {
    return std::make_unique<FrameInput>(filesOf(recording.clouds, recording.frames), recording.frames);
  }
  const std::vector<Sensor> sensors = readSensors(recording.sensors, recording.clouds, console);
  warnOfUnknownSensors(configuration, sensors, console);
  return std::make_unique<SensorInput>(sensors, recording.frames, recording.rate, recording.window);
}

}  // namespace orvantis::app
