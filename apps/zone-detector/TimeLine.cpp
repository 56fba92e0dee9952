#include "TimeLine.h"

#include <cmath>
#include <filesystem>
#include <utility>

#include "Console.h"
#include "Input.h"
#include "text/Number.h"

namespace orvantis::app {

using filter::monitor::Stamp;

std::deque<StampedPath> TimeLine::atRate(const std::vector<std::string>& paths, double rate) {
  std::deque<StampedPath> clouds;
  for (const std::string& path : paths) {
    const double nanoseconds = static_cast<double>(clouds.size()) / rate * 1e9;
    if (!(nanoseconds < 4.6e18)) {
      throw Failure("at " + toText(rate) + " Hz, " + path + " is out of the range of stamps");
    }
    clouds.push_back({Stamp(std::llround(nanoseconds)), path});
  }
  return clouds;
}

// A file is read whole, so that its end is known and a wrong line is told before anything is done.
void TimeLine::readList(const std::string& path) {
  list_.emplace(openInput(path), path);
  if (path == standardInput) {
    return;
  }
  // So that a recording can be moved together with its list.
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  while (auto cloud = list_->next()) {
    cloud->path = (folder / cloud->path).string();
    clouds_.push_back(std::move(*cloud));
  }
  list_.reset();
  if (clouds_.empty()) {
    throw Failure(path, "lists no frames");
  }
  cloudCount_ = clouds_.size();
}

TimeLine::TimeLine(const Recording& recording) {
  if (recording.stamps.empty()) {
    clouds_ = atRate(recording.clouds, recording.rate.value_or(10.0));
    cloudCount_ = clouds_.size();
  } else {
    readList(recording.stamps);
  }
  if (recording.hasTracks()) {
    tracks_.emplace(openInput(recording.tracks), recording.tracks, recording.tracksFormat);
  }
}

void TimeLine::fetch() {
  if (clouds_.empty() && list_) {
    if (auto cloud = list_->next()) {
      clouds_.push_back(std::move(*cloud));
    } else {
      list_.reset();
    }
  }
  if (!trackFrame_ && tracks_) {
    trackFrame_ = tracks_->next();
    if (!trackFrame_) {
      tracks_.reset();
    }
  }
}

std::optional<Moment> TimeLine::next() {
  fetch();
  if (clouds_.empty() && !trackFrame_) {
    return std::nullopt;
  }
  Moment moment;
  const bool cloudIsFirst = !clouds_.empty() && (!trackFrame_ || clouds_.front().stamp <= trackFrame_->stamp);
  moment.stamp = cloudIsFirst ? clouds_.front().stamp : trackFrame_->stamp;
  if (cloudIsFirst) {
    moment.cloud = std::move(clouds_.front().path);
    clouds_.pop_front();
  }
  if (trackFrame_ && trackFrame_->stamp == moment.stamp) {
    moment.objects = std::move(trackFrame_->objects);
    trackFrame_.reset();
  }
  return moment;
}

}  // namespace orvantis::app
