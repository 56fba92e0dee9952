#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "document/SensorList.h"
#include "input/FrameInput.h"
#include "recording/FrameClock.h"

namespace orvantis::toolkit {

/// The frames of several sensors, taken together: the earliest frame that is left, and the next frame of each
/// other sensor if it is at most a window later. The points of these frames follow one another.
class SensorInput : public FrameSource {
 public:
  /// @param sensors with the files of each
  /// @param options for all sensors; the pose and the topics are replaced by those of each sensor
  /// @param rate of single frames in Hz; empty: 10
  SensorInput(const std::vector<Sensor>& sensors, const FrameOptions& options, std::optional<double> rate,
              filter::monitor::Duration window);

  /// The stamp is that of the earliest frame.
  std::optional<InputFrame> next() override;

  std::uint64_t bytes() const override;
  std::optional<std::size_t> frameCount() const override { return std::nullopt; }
  std::uint64_t numLate() const override { return numLate_; }
  std::vector<std::string> warnings() const override;
  bool isDamaged() const override;

 private:
  struct Stream {
    Stream(const Sensor& sensor, const FrameOptions& options, std::optional<double> rate);

    std::string name;
    FrameInput input;
    FrameClock clock;
    std::optional<InputFrame> coming;  // its next frame, with its stamp
    std::optional<bool> hasStamps;     // whether its frames have stamps
    std::optional<filter::monitor::Stamp> last;
    std::uint64_t numMissed = 0;  // how many frames are without one of this sensor
  };

  void fetch(Stream& stream);
  void checkKinds(const Stream& stream) const;
  void join(InputFrame& frame);

  std::vector<std::unique_ptr<Stream>> streams_;
  std::uint64_t window_;
  std::uint64_t numFrames_ = 0;
  std::uint64_t numLate_ = 0;
  std::vector<float> floats_;  // the points of a frame
  std::vector<double> doubles_;
};

}  // namespace orvantis::toolkit
