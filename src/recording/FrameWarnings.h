#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvantis::toolkit {

struct InputFrame;
class FrameSource;
class TimeLine;

/// Collects what the user should know about the frames that were read.
class FrameWarnings {
 public:
  void add(const InputFrame& frame);
  /// @param atOrigin how many of its points are at the origin
  void add(const InputFrame& frame, std::uint64_t atOrigin);

  /// A text each about points at the origin, recordings that are cut off, stamps that go back, and frames
  /// that were left out. Asked for after the last frame.
  std::vector<std::string> texts(const FrameSource& input) const;
  std::vector<std::string> texts(const TimeLine& timeLine) const;

 private:
  std::vector<std::string> texts(const FrameSource& input, std::uint64_t numLate) const;

  std::uint64_t framesAtOrigin_ = 0;  // frames in which more than 1 % of the points are at the origin
  std::string firstAtOrigin_;
};

}  // namespace orvantis::toolkit
