#include "session/LineHistory.h"

#include <utility>

namespace orvantis::toolkit {

using filter::monitor::Crossing;
using filter::monitor::CrossingExplanation;
using filter::monitor::Stamp;
using filter::monitor::TrackedObject;

LineHistory::LineHistory(filter::detection::CounterLine line, double clearance,
                         filter::monitor::Duration forgetAfter, std::optional<std::int32_t> track)
    : line_(std::move(line)), clearance_(clearance), forgetAfter_(forgetAfter), track_(track) {}

TrackStory& LineHistory::storyOf(Stamp stamp, const TrackedObject& object) {
  const auto known = current_.find(object.id);
  if (known != current_.end() && stamp - stories_[known->second].lastSeen < forgetAfter_) {
    return stories_[known->second];
  }
  current_[object.id] = stories_.size();
  lastClear_.erase(object.id);
  TrackStory story;
  story.track = object.id;
  story.firstSeen = stamp;
  story.decidedAt = stamp;
  stories_.push_back(std::move(story));
  return stories_.back();
}

void LineHistory::add(Stamp stamp, const std::vector<TrackedObject>& objects,
                      const std::vector<Crossing>& crossings, const filter::monitor::LineCounter& lines) {
  for (const TrackedObject& object : objects) {
    const auto beside = filter::monitor::lineSighting(line_, object.footprint, clearance_);
    if (track_ && object.id == *track_) {
      sightings_.push_back({stamp, beside});
    }
    const bool isPlaced = filter::monitor::referencePoint(object.footprint).has_value();
    if (object.id < 0 || !isPlaced) {
      continue;  // the counter does not see it either
    }
    TrackStory& story = storyOf(stamp, object);
    const CrossingExplanation before =
        std::exchange(story.explanation, lines.explain(line_.getName(), object.id));
    story.className = object.className;
    story.lastSeen = stamp;
    bool hasCrossed = false;
    for (const Crossing& crossing : crossings) {
      hasCrossed = hasCrossed || (crossing.id == object.id && crossing.line == line_.getName());
    }
    story.crossings += hasCrossed ? 1 : 0;
    if (hasCrossed || story.explanation.verdict != before.verdict) {
      story.decidedAt = stamp;
      const auto clear = lastClear_.find(object.id);
      story.decidedFrom = clear == lastClear_.end() ? std::nullopt : std::optional(clear->second);
    }
    if (beside && beside->isClear) {
      lastClear_[object.id] = stamp;
    }
  }
}

TrackStory LineHistory::lastStoryOf(std::int32_t track) const {
  TrackStory story;
  story.track = track;
  if (track < 0) {
    story.explanation.verdict = filter::monitor::CrossingVerdict::NoIdentity;
  }
  for (const TrackStory& candidate : stories_) {
    if (candidate.track == track) {
      story = candidate;
    }
  }
  return story;
}

}  // namespace orvantis::toolkit
