#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/LineCounter.h>

#include "monitor/ClassNames.h"
#include "monitor/LineScan.h"
#include "monitor/Passages.h"
#include "monitor/Stamps.h"
#include "monitor/Tracks.h"

namespace orvantis::filter::monitor {

/// The state of a LineCounter, and what changes it.
class __attribute__((visibility("hidden"))) LineCounter::Impl {
 public:
  /// No lines.
  Impl() = default;
  Impl(const std::map<std::string, detection::CounterLine>& lines, const LineCounterOptions& options);

  std::vector<Crossing> update(Stamp stamp, const std::vector<TrackedObject>& objects);
  void advance(Stamp stamp);

  const std::vector<LineTally>& tallies() const { return tallies_; }
  void resetTallies();
  std::size_t numTracks() const { return tracks_.size(); }
  CrossingExplanation explain(const std::string& name, std::int32_t id) const;

  /// Calls `visit` for each track in ascending order of the ids, with its id, its passages, and the number of
  /// the line in them. Calls nothing for a line that does not exist or has no sides.
  template <typename Visit>
  void forEachTrack(const std::string& name, const Visit& visit) const {
    const Line* line = find(name);
    if (line != nullptr && line->number) {
      tracks_.forEach(
          [&](std::int32_t id, const Track& track, Stamp) { visit(id, track.passages, *line->number); });
    }
  }

 private:
  struct Line {
    std::string name;
    std::optional<std::uint32_t> number;  // in the scan; empty for a line without sides
  };
  struct Track {
    Instant last;
    LineScan::Bits sides;  // at the last sighting
    Passages passages;
  };

  void forgetTracks(Stamp stamp);
  void follow(const TrackedObject& object, const Instant& now, std::vector<Crossing>& crossings);
  bool isJump(const Instant& from, const Instant& to) const;
  Crossing crossingOf(std::int32_t id, const LastCrossing& crossing) const;
  const Line* find(const std::string& name) const;  // null when there is no such line

  LineCounterOptions options_;
  std::vector<Line> lines_;
  std::vector<LineTally> tallies_;  // one for each line
  LineScan scan_;
  std::vector<std::uint32_t> lineOf_;  // by the number in the scan
  Tracks<Track> tracks_;
  ClassNames classNames_;
  Clock clock_;
  LineScan::Bits seen_;  // of the current sighting; a member, so that its memory is used again
};

}  // namespace orvantis::filter::monitor
