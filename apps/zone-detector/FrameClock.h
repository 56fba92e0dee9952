#pragma once

#include <cstdint>
#include <optional>

#include <filter/monitor/Stamp.h>

namespace orvantis::app {

struct InputFrame;

/// Gives the frames of one source their stamps: those of recordings have some of their own, single frames get
/// one by their number.
class FrameClock {
 public:
  /// @param rate of single frames in Hz; none: 10
  explicit FrameClock(std::optional<double> rate) : rate_(rate) {}

  /// The stamp of the next frame.
  /// @throws Failure when the frame is of another kind than those before, or a rate is given for a recording
  filter::monitor::Stamp stampOf(const InputFrame& frame);

 private:
  std::optional<double> rate_;
  std::uint64_t numSingle_ = 0;
  std::uint64_t numRecorded_ = 0;
};

}  // namespace orvantis::app
