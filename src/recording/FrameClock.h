#pragma once

#include <cstdint>
#include <optional>

#include <filter/monitor/Stamp.h>

namespace orvantis::toolkit {

struct InputFrame;

/// Gives the frames of one source their stamps. Frames of recordings have their own stamps; single frames get
/// stamps from their number and the rate.
class FrameClock {
 public:
  /// @param rate of single frames in Hz; empty: 10
  explicit FrameClock(std::optional<double> rate) : rate_(rate) {}

  /// The stamp of the next frame.
  /// @throws Failure when the frame is of another kind than those before, or a rate is given for a recording
  filter::monitor::Stamp stampOf(const InputFrame& frame);

 private:
  std::optional<double> rate_;
  std::uint64_t numSingle_ = 0;
  std::uint64_t numRecorded_ = 0;
};

}  // namespace orvantis::toolkit
