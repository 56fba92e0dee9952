#include "input/Recording.h"

#include <utility>

#include "input/FrameInput.h"
#include "input/Input.h"
#include "input/ListInput.h"
#include "input/SensorFile.h"
#include "input/SensorInput.h"

namespace orvantis::toolkit {

std::unique_ptr<FrameSource> openFrames(const Recording& recording, const Configuration& configuration,
                                        const OpeningWarnings& warnings) {
  if (recording.sensors.empty()) {
    return std::make_unique<FrameInput>(filesOf(recording.clouds, recording.frames), recording.frames);
  }
  const std::vector<Sensor> sensors = readSensors(recording.sensors, recording.clouds, warnings.finding);
  for (const std::string& text : unknownSensors(configuration, sensors)) {
    warnings.warning(text);
  }
  return std::make_unique<SensorInput>(sensors, recording.frames, recording.rate, recording.window);
}

TimeLine openTimeLine(const Recording& recording, const Configuration& configuration,
                      const OpeningWarnings& warnings) {
  std::unique_ptr<FrameSource> input;
  if (recording.stamps.empty()) {
    input = openFrames(recording, configuration, warnings);
  } else {
    input = std::make_unique<ListInput>(recording.stamps, recording.frames);
  }
  std::unique_ptr<TrackReader> tracks;
  if (recording.hasTracks()) {
    tracks = std::make_unique<TrackReader>(openInput(recording.tracks), recording.tracks,
                                           recording.tracksFormat, recording.frames.pose.value_or(Pose()));
  }
  // The stamps of a list are there, and those of sensors come from their own clocks.
  const bool hasStamps = !recording.stamps.empty() || !recording.sensors.empty();
  return {std::move(input), FrameClock(hasStamps ? std::nullopt : recording.rate), std::move(tracks)};
}

}  // namespace orvantis::toolkit
