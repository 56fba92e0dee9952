#include "TimeLine.h"

#include <cmath>
#include <filesystem>
#include <utility>

#include "Console.h"
#include "RowReader.h"
#include "Stamps.h"
#include "Text.h"

namespace orvantis::app {

using filter::monitor::Stamp;

std::deque<TimeLine::StampedCloud> TimeLine::atRate(const std::vector<std::string>& paths, double rate) {
  std::deque<StampedCloud> clouds;
  for (const std::string& path : paths) {
    const double nanoseconds = static_cast<double>(clouds.size()) / rate * 1e9;
    if (!(nanoseconds < 4.6e18)) {
      throw Failure("at " + toText(rate) + " Hz, " + path + " is out of the range of stamps");
    }
    clouds.push_back({Stamp(std::llround(nanoseconds)), path});
  }
  return clouds;
}

std::deque<TimeLine::StampedCloud> TimeLine::fromList(const std::string& path) {
  // So that a recording can be moved together with its list.
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  std::deque<StampedCloud> clouds;
  RowReader rows(path);
  while (rows.next()) {
    const std::string_view line = rows.line();
    if (line.empty() || line.starts_with('#')) {
      continue;
    }
    const std::size_t end = line.find_first_of(", \t");
    const std::size_t begin = line.find_first_not_of(" \t", end == std::string_view::npos ? end : end + 1);
    const Field stampField{line.substr(0, end), 1};
    const Stamp stamp(rows.nanoseconds(stampField, "stamp"));
    if (begin == std::string_view::npos) {
      rows.refuse({{}, line.size() + 1}, "there is no path after the stamp");
    }
    if (!clouds.empty() && stamp <= clouds.back().stamp) {
      rows.refuse(stampField,
                  "stamp is not later than the one before, " + toText(clouds.back().stamp) + " s");
    }
    clouds.push_back({stamp, (folder / line.substr(begin)).string()});
  }
  if (clouds.empty()) {
    throw Failure(path + ": lists no frames");
  }
  return clouds;
}

TimeLine::TimeLine(const Recording& recording)
    : clouds_(recording.stamps.empty() ? atRate(recording.clouds, recording.rate.value_or(10.0))
                                       : fromList(recording.stamps)),
      cloudCount_(clouds_.size()) {
  if (recording.hasTracks()) {
    tracks_.emplace(recording.tracks, recording.tracksFormat);
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
