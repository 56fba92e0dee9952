#pragma once

#include <cstdint>
#include <string>

namespace orvantis::app {

struct Console;
struct InputFrame;
class FrameSource;

/// What a user should know about the frames that were read.
class InputWarnings {
 public:
  void add(const InputFrame& frame);

  /// Once, after the last frame: points at the origin, recordings that were cut, stamps that go back.
  void tell(const FrameSource& input, const Console& console) const;

 private:
  std::uint64_t framesAtOrigin_ = 0;  // frames in which more than 1 % of the points are at the origin
  std::string firstAtOrigin_;
};

/// 128 and the signal that ended the work; 4 when a recording could not be read to its end; else 0.
int exitCodeOf(const FrameSource& input);

}  // namespace orvantis::app
