#include "MomentWalk.h"

#include "files/Failure.h"

namespace orvantis::engine {

const toolkit::InputFrame& MomentWalk::frameAt(std::size_t moment) {
  if (!opened_ || !last_ || moment + 1 < numRead_) {
    last_.reset();
    opened_.emplace(openFiles(files_, options_));
    numRead_ = 0;
  }
  while (numRead_ <= moment && (numRead_ == 0 || last_)) {
    last_.reset();  // what cannot be read is begun anew
    last_ = opened_->timeLine.next();
    ++numRead_;
  }
  if (!last_ || !last_->frame) {
    throw toolkit::Failure("this moment has no points");
  }
  return *last_->frame;
}

}  // namespace orvantis::engine
