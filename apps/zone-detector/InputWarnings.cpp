#include "InputWarnings.h"

#include "Console.h"
#include "FrameSource.h"
#include "Interrupt.h"
#include "text/Text.h"

namespace orvantis::app {

void InputWarnings::add(const InputFrame& frame) {
  add(frame, frame.atOrigin ? *frame.atOrigin : countAtOrigin(frame.points));
}

void InputWarnings::add(const InputFrame& frame, std::uint64_t atOrigin) {
  if (atOrigin * 100 > sizeOf(frame.points)) {
    firstAtOrigin_ = framesAtOrigin_ == 0 ? frame.file : firstAtOrigin_;
    ++framesAtOrigin_;
  }
}

void InputWarnings::tell(const FrameSource& input, const Console& console) const {
  if (framesAtOrigin_ > 0) {
    console.warn("in " + counted(framesAtOrigin_, "frame") + ", first in " + printable(firstAtOrigin_) +
                 ", more than 1 % of the points are at (0, 0, 0), as many drivers write \"no return\"; "
                 "--drop-origin leaves them out");
  }
  for (const std::string& warning : input.warnings()) {
    console.warn(warning);
  }
}

int exitCodeOf(const FrameSource& input) {
  constexpr int cutRecording = 4;
  if (Interrupt::signal() != 0) {
    return Interrupt::exitCode();
  }
  return input.isDamaged() ? cutRecording : 0;
}

}  // namespace orvantis::app
