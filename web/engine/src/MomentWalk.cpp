#include "MomentWalk.h"

#include "files/Failure.h"

namespace orvantis::engine {

const CloudFrame& MomentWalk::frameAt(std::size_t moment) {
  if (!timeLine_ || !last_ || moment + 1 < numRead_) {
    last_.reset();
    timeLine_.emplace(files_, options_);
    numRead_ = 0;
  }
  while (numRead_ <= moment && (numRead_ == 0 || last_)) {
    last_.reset();  // what cannot be read is begun anew
    last_ = timeLine_->next();
    ++numRead_;
  }
  if (!last_ || !last_->frame) {
    throw toolkit::Failure("there are no points at this moment");
  }
  return *last_->frame;
}

}  // namespace orvantis::engine
