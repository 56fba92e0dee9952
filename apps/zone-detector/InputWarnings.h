#pragma once

#include <cstdint>
#include <string>

namespace orvantis::app {

struct Console;
struct InputFrame;
class FrameSource;

/// Collects what the user should know about the frames that were read.
class InputWarnings {
 public:
  void add(const InputFrame& frame);
  /// @param atOrigin how many of its points are at the origin
  void add(const InputFrame& frame, std::uint64_t atOrigin);

  /// Prints the warnings about points at the origin, recordings that are cut off, and stamps that go back.
  /// Call it once, after the last frame.
  void tell(const FrameSource& input, const Console& console) const;

 private:
  std::uint64_t framesAtOrigin_ = 0;  // frames in which more than 1 % of the points are at the origin
  std::string firstAtOrigin_;
};

/// 128 plus the signal that ended the work; 4 when a recording could not be read to its end; else 0.
int exitCodeOf(const FrameSource& input);

}  // namespace orvantis::app
