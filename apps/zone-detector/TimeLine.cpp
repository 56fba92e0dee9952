#include "TimeLine.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

#include "Console.h"
#include "files/File.h"
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

std::deque<StampedPath> TimeLine::fromList(const std::string& path) {
  // So that a recording can be moved together with its list.
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  StampList list(std::make_unique<std::ifstream>(openFile(path)), path);
  std::deque<StampedPath> clouds;
  while (auto cloud = list.next()) {
    cloud->path = (folder / cloud->path).string();
    clouds.push_back(std::move(*cloud));
  }
  if (clouds.empty()) {
    throw Failure(path, "lists no frames");
  }
  return clouds;
}

TimeLine::TimeLine(const Recording& recording)
    : clouds_(recording.stamps.empty() ? atRate(recording.clouds, recording.rate.value_or(10.0))
                                       : fromList(recording.stamps)),
      cloudCount_(clouds_.size()) {
  if (recording.hasTracks()) {
    tracks_.emplace(std::make_unique<std::ifstream>(openFile(recording.tracks)), recording.tracks,
                    recording.tracksFormat);
    trackFrame_ = tracks_->next();
  }
}

std::optional<Moment> TimeLine::next() {
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
    trackFrame_ = tracks_->next();
  }
  return moment;
}

}  // namespace orvantis::app
