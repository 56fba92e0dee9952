#include "TimeLine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SourceStream.h"
#include "files/Failure.h"
#include "text/Number.h"

namespace orvantis::engine {

using filter::monitor::Stamp;
using toolkit::Failure;

namespace {

Stamp stampAt(std::uint64_t number, double rate, const std::string& name) {
  const double nanoseconds = static_cast<double>(number) / rate * 1e9;
  if (!(nanoseconds < 4.6e18)) {
    throw Failure("at " + toolkit::toText(rate) + " Hz, " + name + " is out of the range of stamps");
  }
  return Stamp(std::llround(nanoseconds));
}

std::vector<toolkit::StampedPath> readList(const std::optional<NamedSource>& file) {
  std::vector<toolkit::StampedPath> frames;
  if (!file) {
    return frames;
  }
  toolkit::StampList list(streamOf(*file), file->name);
  while (auto frame = list.next()) {
    frames.push_back(std::move(*frame));
  }
  if (frames.empty()) {
    throw Failure(file->name, "lists no frames");
  }
  return frames;
}

// A page knows no folders: a file is found by what its path ends with.
std::string lastOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::vector<NamedSource> cloudsOf(const RecordingFiles& files,
                                  const std::vector<toolkit::StampedPath>& listed) {
  if (!files.stamps) {
    return files.clouds;
  }
  std::vector<NamedSource> clouds;
  for (const toolkit::StampedPath& frame : listed) {
    const auto find = [&](const std::string& name) {
      return std::find_if(files.clouds.begin(), files.clouds.end(),
                          [&](const NamedSource& cloud) { return cloud.name == name; });
    };
    auto found = find(frame.path);
    if (found == files.clouds.end()) {
      found = find(lastOf(frame.path));
    }
    if (found == files.clouds.end()) {
      throw Failure(files.stamps->name, "names " + frame.path + ", which was not opened with it");
    }
    clouds.push_back(*found);
  }
  return clouds;
}

}  // namespace

TimeLine::TimeLine(const RecordingFiles& files, const RecordingOptions& options)
    : rate_(options.rate),
      listed_(readList(files.stamps)),
      isListed_(files.stamps.has_value()),
      clouds_(cloudsOf(files, listed_), options.frames) {
  if (files.tracks) {
    tracks_.emplace(streamOf(*files.tracks), files.tracks->name, options.tracksFormat,
                    options.frames.pose.value_or(toolkit::Pose()));
  }
}

// The stamp of a frame that was just read.
Stamp TimeLine::stampOf(const CloudFrame& frame) {
  if (isListed_) {
    if (frame.stamp) {
      throw Failure(frame.file,
                    "is a recording, whose frames have stamps of their own; a list is of single frames");
    }
    return listed_[static_cast<std::size_t>(numFrames_++)].stamp;
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
    frame_ = clouds_.next();
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

}  // namespace orvantis::engine
