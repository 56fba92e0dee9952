#include "recording/TimeLine.h"

#include <utility>

namespace orvantis::toolkit {

using filter::monitor::Stamp;

TimeLine::TimeLine(std::unique_ptr<FrameSource> input, FrameClock clock, std::unique_ptr<TrackReader> tracks)
    : input_(std::move(input)),
      clock_(clock),
      cloudCount_(input_->frameCount()),
      tracks_(std::move(tracks)) {}

void TimeLine::fetchFrame() {
  while (!frame_) {
    frame_ = input_->next();
    if (!frame_) {
      return;
    }
    const Stamp stamp = clock_.stampOf(*frame_);
    if (lastFrame_ && stamp <= *lastFrame_) {
      ++numLate_;
      frame_.reset();
    } else {
      frame_->stamp = stamp;
      lastFrame_ = stamp;
    }
  }
}

void TimeLine::fetchTracks() {
  if (!trackFrame_ && tracks_) {
    trackFrame_ = tracks_->next();
    if (!trackFrame_) {
      tracks_.reset();
    }
  }
}

std::optional<Moment> TimeLine::next() {
  fetchFrame();
  fetchTracks();
  if (!frame_ && !trackFrame_) {
    return std::nullopt;
  }
  Moment moment;
  const bool frameIsFirst = frame_ && (!trackFrame_ || *frame_->stamp <= trackFrame_->stamp);
  moment.stamp = frameIsFirst ? *frame_->stamp : trackFrame_->stamp;
  if (frameIsFirst) {
    moment.frame = std::exchange(frame_, std::nullopt);
  }
  if (trackFrame_ && trackFrame_->stamp == moment.stamp) {
    moment.objects = std::move(trackFrame_->objects);
    moment.boxes = std::move(trackFrame_->boxes);
    trackFrame_.reset();
  }
  return moment;
}

}  // namespace orvantis::toolkit
