#include "recording/FrameClock.h"

#include <cmath>
#include <string>

#include "files/Failure.h"
#include "recording/FrameSource.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {

using filter::monitor::Stamp;

namespace {

Stamp stampAt(std::uint64_t number, double rate, const std::string& path) {
  const double nanoseconds = static_cast<double>(number) / rate * 1e9;
  if (!(nanoseconds < 4.6e18)) {
    throw Failure("at " + toText(rate) + " Hz, " + printable(path) + " is out of the range of stamps");
  }
  return Stamp(std::llround(nanoseconds));
}

}  // namespace

Stamp FrameClock::stampOf(const InputFrame& frame) {
  if (frame.stamp) {
    if (rate_) {
      throw Failure(frame.file, "is a recording, whose frames have stamps; --rate is for single frames");
    }
    if (numSingle_ > 0) {
      throw Failure(frame.file, "is a recording; the files before it are single frames, without stamps");
    }
    ++numRecorded_;
    return *frame.stamp;
  }
  if (numRecorded_ > 0) {
    throw Failure(frame.file, "is a single frame, without a stamp; the files before it are recordings");
  }
  return stampAt(numSingle_++, rate_.value_or(10.0), frame.file);
}

}  // namespace orvantis::toolkit
