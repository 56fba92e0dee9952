#include "recording/FrameWarnings.h"

#include "recording/FrameSource.h"
#include "recording/TimeLine.h"
#include "text/Text.h"

namespace orvantis::toolkit {

void FrameWarnings::add(const InputFrame& frame) {
  add(frame, frame.atOrigin ? *frame.atOrigin : countAtOrigin(frame.points));
}

void FrameWarnings::add(const InputFrame& frame, std::uint64_t atOrigin) {
  if (atOrigin * 100 > sizeOf(frame.points)) {
    firstAtOrigin_ = framesAtOrigin_ == 0 ? frame.file : firstAtOrigin_;
    ++framesAtOrigin_;
  }
}

std::vector<std::string> FrameWarnings::texts(const FrameSource& input) const {
  return texts(input, input.numLate());
}

std::vector<std::string> FrameWarnings::texts(const TimeLine& timeLine) const {
  return texts(timeLine.input(), timeLine.numLate());
}

std::vector<std::string> FrameWarnings::texts(const FrameSource& input, std::uint64_t numLate) const {
  std::vector<std::string> texts;
  if (framesAtOrigin_ > 0) {
    texts.push_back("in " + counted(framesAtOrigin_, "frame") + ", first in " + printable(firstAtOrigin_) +
                    ", more than 1 % of the points are at (0, 0, 0), as many drivers write \"no return\"; "
                    "--drop-origin leaves them out");
  }
  const std::vector<std::string> ofInput = input.warnings();
  texts.insert(texts.end(), ofInput.begin(), ofInput.end());
  if (numLate > 0) {
    texts.push_back(counted(numLate, "frame") + " left out: not later than the frame before");
  }
  return texts;
}

}  // namespace orvantis::toolkit
