#include "TimeLine.h"

#include <filesystem>
#include <utility>

#include "Console.h"
#include "FrameInput.h"
#include "Input.h"

namespace orvantis::app {

using filter::monitor::Stamp;

// Reads a file whole, so that the number of frames is known, and a wrong line is reported before any frame is
// read.
void TimeLine::readList(const std::string& path) {
  list_.emplace(openInput(path), path);
  if (path == standardInput) {
    return;
  }
  // Paths are relative to the list, so that a recording can be moved together with it.
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  while (auto frame = list_->next()) {
    listed_.push_back({frame->stamp, (folder / frame->path).string()});
    files_->add(listed_.back().path);
  }
  list_.reset();
  if (listed_.empty()) {
    throw Failure(path, "lists no frames");
  }
  cloudCount_ = listed_.size();
}

TimeLine::TimeLine(const Recording& recording, const Configuration& configuration, const Console& console)
    : clock_(recording.rate), isListed_(!recording.stamps.empty()) {
  if (isListed_) {
    auto files = std::make_unique<FrameInput>(std::deque<std::string>(), recording.frames);
    files_ = files.get();
    input_ = std::move(files);
    readList(recording.stamps);
  } else {
    input_ = openFrames(recording, configuration, console);
    cloudCount_ = input_->frameCount();
  }
  if (recording.hasTracks()) {
    tracks_.emplace(openInput(recording.tracks), recording.tracks, recording.tracksFormat,
                    recording.frames.pose.value_or(Pose()));
  }
}

// The stamp of the frame that was just read.
Stamp TimeLine::stampOf(const InputFrame& frame) {
  if (!frame.sensors.empty()) {
    return *frame.stamp;  // from the clocks of the sensors
  }
  if (!isListed_) {
    return clock_.stampOf(frame);
  }
  if (frame.stamp) {
    throw Failure(frame.file,
                  "is a recording, whose frames have stamps of their own; a list is of single frames");
  }
  const Stamp stamp = listed_.front().stamp;
  listed_.pop_front();
  return stamp;
}

void TimeLine::fetchFrame() {
  while (!frame_) {
    if (list_ && listed_.empty()) {
      if (auto listed = list_->next()) {
        files_->add(listed->path);
        listed_.push_back(std::move(*listed));
      } else {
        list_.reset();
      }
    }
    frame_ = input_->next();
    if (!frame_) {
      return;
    }
    const Stamp stamp = stampOf(*frame_);
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

}  // namespace orvantis::app
