#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <filter/detection/CounterLine.h>
#include <filter/monitor/LineCounter.h>
#include <filter/monitor/LineSighting.h>
#include <filter/monitor/Stamp.h>
#include <filter/monitor/TrackedObject.h>

namespace orvantis::toolkit {

/// The story of one track at a line, from its first to its last sighting.
struct TrackStory {
  std::int32_t track = 0;
  std::string className;  ///< as last seen
  filter::monitor::Stamp firstSeen{0};
  filter::monitor::Stamp lastSeen{0};
  filter::monitor::CrossingExplanation explanation;  ///< as it was after the last sighting
  std::uint64_t crossings = 0;
  /// The sightings that decided: the one at which the verdict became what it is, and the last one before it
  /// at which the track was clear of the line, if there was one.
  filter::monitor::Stamp decidedAt{0};
  std::optional<filter::monitor::Stamp> decidedFrom;
};

/// A sighting of a track at a line. `beside` is empty when the object could not be placed, or the line has no
/// sides.
struct StampedSighting {
  filter::monitor::Stamp stamp{0};
  std::optional<filter::monitor::LineSighting> beside;
};

/// Keeps every track that was ever seen, for one line, also those that a line counter forgets. A track that
/// begins anew after it was forgotten is another track. Memory grows with the number of tracks, and with the
/// sightings of the one track whose sightings are kept.
class LineHistory {
 public:
  /// @param track the track whose sightings are kept; empty: no sightings are kept
  LineHistory(filter::detection::CounterLine line, double clearance, filter::monitor::Duration forgetAfter,
              std::optional<std::int32_t> track);

  /// @param lines the counter after it took these objects
  void add(filter::monitor::Stamp stamp, const std::vector<filter::monitor::TrackedObject>& objects,
           const std::vector<filter::monitor::Crossing>& crossings,
           const filter::monitor::LineCounter& lines);

  /// In the order in which the tracks were first seen.
  const std::vector<TrackStory>& stories() const { return stories_; }
  /// The last story of a track. One that was never seen has a story without sightings.
  TrackStory lastStoryOf(std::int32_t track) const;
  const std::vector<StampedSighting>& sightings() const { return sightings_; }

 private:
  TrackStory& storyOf(filter::monitor::Stamp stamp, const filter::monitor::TrackedObject& object);

  filter::detection::CounterLine line_;
  double clearance_;
  filter::monitor::Duration forgetAfter_;
  std::optional<std::int32_t> track_;
  std::vector<TrackStory> stories_;
  std::map<std::int32_t, std::size_t> current_;               // by track, the index of its last story
  std::map<std::int32_t, filter::monitor::Stamp> lastClear_;  // by track, in its last story
  std::vector<StampedSighting> sightings_;
};

}  // namespace orvantis::toolkit
