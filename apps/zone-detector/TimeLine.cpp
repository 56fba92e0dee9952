#include "TimeLine.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

#include "Console.h"
#include "Input.h"
#include "text/Number.h"

namespace orvantis::app {

using filter::monitor::Stamp;

namespace {

Stamp stampAt(std::uint64_t number, double rate, const std::string& path) {
  const double nanoseconds = static_cast<double>(number) / rate * 1e9;
  if (!(nanoseconds < 4.6e18)) {
    throw Failure("at " + toText(rate) + " Hz, " + path + " is out of the range of stamps");
  }
  return Stamp(std::llround(nanoseconds));
}

bool isSingleFrame(const std::string& path) {
  return frameKindOf(path).has_value();
}

}  // namespace

// A file is read whole, so that its end is known and a wrong line is told before anything is done.
void TimeLine::readList(const std::string& path) {
  list_.emplace(openInput(path), path);
  if (path == standardInput) {
    return;
  }
  // So that a recording can be moved together with its list.
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  while (auto frame = list_->next()) {
    listed_.push_back({frame->stamp, (folder / frame->path).string()});
    input_.add(listed_.back().path);
  }
  list_.reset();
  if (listed_.empty()) {
    throw Failure(path, "lists no frames");
  }
  cloudCount_ = listed_.size();
}

TimeLine::TimeLine(const Recording& recording)
    : rate_(recording.rate), isListed_(!recording.stamps.empty()), input_({}, recording.frames) {
  if (isListed_) {
    readList(recording.stamps);
  } else {
    const std::deque<std::string> files = filesOf(recording.clouds);
    for (const std::string& file : files) {
      input_.add(file);
    }
    if (std::all_of(files.begin(), files.end(), isSingleFrame)) {
      cloudCount_ = files.size();
    }
  }
  if (recording.hasTracks()) {
    tracks_.emplace(openInput(recording.tracks), recording.tracks, recording.tracksFormat,
                    recording.frames.pose.value_or(Pose()));
  }
}

// The stamp of a frame that was just read.
Stamp TimeLine::stampOf(const InputFrame& frame) {
  if (isListed_) {
    if (frame.stamp) {
      throw Failure(frame.file,
                    "is a recording, whose frames have stamps of their own; a list is of single frames");
    }
    const Stamp stamp = listed_.front().stamp;
    listed_.pop_front();
    return stamp;
  }
  if (frame.stamp && (rate_ || numFrames_ > 0)) {
    throw Failure(frame.file, rate_
                                  ? "is a recording, whose frames have stamps; --rate is for single frames"
                                  : "is a recording; the files before it are single frames, without stamps");
  }
  if (!frame.stamp && lastFrame_ && numFrames_ == 0) {
    throw Failure(frame.file, "is a single frame, without a stamp; the files before it are recordings");
  }
  return frame.stamp ? *frame.stamp : stampAt(numFrames_++, rate_.value_or(10.0), frame.file);
}

void TimeLine::fetchFrame() {
  while (!frame_) {
    if (list_ && listed_.empty()) {
      if (auto listed = list_->next()) {
        input_.add(listed->path);
        listed_.push_back(std::move(*listed));
      } else {
        list_.reset();
      }
    }
    frame_ = input_.next();
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
    trackFrame_.reset();
  }
  return moment;
}

}  // namespace orvantis::app
