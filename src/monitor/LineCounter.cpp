#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include <filter/monitor/LineCounter.h>

#include "monitor/ObjectIds.h"
#include "monitor/Orientation.h"
#include "monitor/Stamps.h"

namespace orvantis::filter::monitor {

using Side = detection::CounterLineDirectionType;

namespace {

void countTowards(Side to, CrossingCounts& counts) {
  ++(to == Side::LEFT ? counts.toLeft : counts.toRight);
}

void count(const Crossing& crossing, LineTally& tally) {
  countTowards(crossing.to, tally.crossings);
  countTowards(crossing.to, tally.byClass[crossing.className]);
  (crossing.to == Side::LEFT ? tally.ids.left : tally.ids.right).insert(crossing.id);
}

}  // namespace

const char* describe(CrossingVerdict verdict) {
  switch (verdict) {
    case CrossingVerdict::NoSuchLine:
      return "there is no line of that name";
    case CrossingVerdict::NoLength:
      return "the line's ends are the same point or not finite, so it has no sides";
    case CrossingVerdict::NoIdentity:
      return "an id below zero is no identity";
    case CrossingVerdict::NotSeen:
      return "was not seen, or is forgotten";
    case CrossingVerdict::NeverClear:
      return "has not been clear of the line yet";
    case CrossingVerdict::NotOver:
      return "has stayed clear of the line on one side";
    case CrossingVerdict::OnLine:
      return "is not clear of the line now";
    case CrossingVerdict::TurnedBack:
      return "came to the line and turned back";
    case CrossingVerdict::PassedBeside:
      return "changed sides beside the line's ends";
    case CrossingVerdict::Jumped:
      return "was faster than the maximum speed, so it was taken for another object";
    case CrossingVerdict::Counted:
      return "went over the line";
  }
  return "";
}

LineCounter::LineCounter(const std::map<std::string, detection::CounterLine>& lines,
                         const LineCounterOptions& options)
    : options_(options) {
  if (!(options.forgetAfter > Duration::zero())) {
    throw std::invalid_argument("The time after which tracks are forgotten must be above zero");
  }
  if (!(options.clearance >= 0.0) || !std::isfinite(options.clearance)) {
    throw std::invalid_argument("The clearance must be zero or more");
  }
  if (!(options.maxSpeed > 0.0)) {
    throw std::invalid_argument("The maximum speed must be above zero");
  }
  for (const auto& [name, line] : lines) {
    // A line that was moved from has no points, and reads as one from (0, 0) to (0, 0).
    const auto& points = line.getPoints();
    const core::PlanarPoint first = points.empty() ? core::PlanarPoint(0.0, 0.0) : points.front();
    const core::PlanarPoint second = points.empty() ? core::PlanarPoint(0.0, 0.0) : points.back();
    const double length = std::hypot(second.x() - first.x(), second.y() - first.y());
    lines_.push_back(
        {name, first, second, std::isfinite(length) && length > 0.0, options.clearance * length});
    tallies_.push_back({name, {}, {}, {}});
  }
}

std::vector<Crossing> LineCounter::update(Stamp stamp, const std::vector<TrackedObject>& objects) {
  requireLater(stamp, lastStamp_);
  requireUniqueIds(objects);
  lastStamp_ = stamp;
  forgetTracks(stamp);

  std::vector<Crossing> crossings;
  for (const TrackedObject& object : objects) {
    if (object.id < 0) {
      continue;
    }
    if (const auto reference = referencePoint(object.footprint)) {
      follow(object, object.footprint.polygon(), {stamp, *reference}, crossings);
    }
  }
  return crossings;
}

void LineCounter::forgetTracks(Stamp stamp) {
  std::erase_if(tracks_, [&](const auto& entry) {
    const auto& [id, track] = entry;
    if (elapsed(track.last.stamp, stamp) < options_.forgetAfter) {
      return false;
    }
    // The numbers stay; the ids go, or the sets would grow for ever.
    for (LineTally& tally : tallies_) {
      tally.ids.left.erase(id);
      tally.ids.right.erase(id);
    }
    return true;
  });
}

void LineCounter::follow(const TrackedObject& object, const core::PlanarPolygon& footprint,
                         const Instant& now, std::vector<Crossing>& crossings) {
  const auto [entry, isNew] = tracks_.try_emplace(object.id);
  Track& track = entry->second;
  const bool jumps = !isNew && isJump(track.last, now);
  if (isNew || jumps) {
    track.passages.assign(lines_.size(), Passage{});
  }
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (!line.hasSides) {
      continue;
    }
    Passage& passage = track.passages[i];
    if (jumps) {
      passage.verdict = CrossingVerdict::Jumped;
    } else if (!isNew) {
      takeStep(line, track.last, now, passage);
    }
    const auto from = passage.side;
    if (takeSide(clearSide(line, footprint, now.place), passage)) {
      const Crossing crossing{line.name,
                              *from,
                              *passage.side,
                              object.id,
                              object.className,
                              passage.lastAway.stamp,
                              passage.lastAway.place,
                              now.stamp};
      count(crossing, tallies_[i]);
      passage.lastCrossing = crossing;
      crossings.push_back(crossing);
    }
  }
  track.last = now;
}

bool LineCounter::isJump(const Instant& from, const Instant& to) const {
  const double seconds = std::chrono::duration<double>(elapsed(from.stamp, to.stamp)).count();
  const double distance = std::hypot(to.place.x() - from.place.x(), to.place.y() - from.place.y());
  return distance > options_.maxSpeed * seconds;
}

// The side on which the object is clear of the line, if it is.
std::optional<Side> LineCounter::clearSide(const Line& line, const core::PlanarPolygon& footprint,
                                           const core::PlanarPoint& reference) {
  const int sign = orientation(line.first, line.second, reference);
  const auto isClear = [&](const core::PlanarPoint& point) {
    return orientation(line.first, line.second, point) == sign &&
           std::abs(crossProduct(line.first, line.second, point)) >= line.clearance;
  };
  if (sign == 0 || !isClear(reference) ||
      !std::all_of(footprint.outer().begin(), footprint.outer().end(), isClear)) {
    return std::nullopt;
  }
  return sign > 0 ? Side::LEFT : Side::RIGHT;
}

// Accounts for the way from one sighting to the next.
void LineCounter::takeStep(const Line& line, const Instant& from, const Instant& to, Passage& passage) {
  const int fromSign = orientation(line.first, line.second, from.place);
  const int toSign = orientation(line.first, line.second, to.place);
  const bool meetsLine = (fromSign > 0) != (toSign > 0);
  if (!meetsLine || !passage.side) {
    return;
  }
  // The two ends of the segment on the same side of the way: it passes beside them.
  if (orientation(from.place, to.place, line.first) * orientation(from.place, to.place, line.second) > 0) {
    return;
  }
  const Side towards = toSign > 0 ? Side::LEFT : Side::RIGHT;
  if (towards == *passage.side) {
    --passage.balance;
    return;
  }
  ++passage.balance;
  passage.lastAway = meeting(line, from, fromSign, to, toSign);
}

// Where the step meets the line, given the sides of its two ends.
LineCounter::Instant LineCounter::meeting(const Line& line, const Instant& from, int fromSign,
                                          const Instant& to, int toSign) {
  if (fromSign == 0) {
    return from;
  }
  if (toSign == 0) {
    return to;
  }
  const double before = std::abs(crossProduct(line.first, line.second, from.place));
  const double after = std::abs(crossProduct(line.first, line.second, to.place));
  const double share = before + after > 0.0 ? before / (before + after) : 0.0;
  return {between(from.stamp, to.stamp, share),
          {std::lerp(from.place.x(), to.place.x(), share), std::lerp(from.place.y(), to.place.y(), share)}};
}

// Takes note of the side on which the object is clear; whether this completes a crossing.
bool LineCounter::takeSide(const std::optional<Side>& side, Passage& passage) {
  if (!side) {
    if (passage.side) {
      passage.verdict = CrossingVerdict::OnLine;
    }
    return false;
  }
  const bool isFirst = !passage.side;
  const bool changesSide = !isFirst && *side != *passage.side;
  const bool isCrossing = changesSide && passage.balance > 0;
  if (isCrossing) {
    passage.verdict = CrossingVerdict::Counted;
  } else if (changesSide) {
    passage.verdict = CrossingVerdict::PassedBeside;
  } else if (passage.verdict == CrossingVerdict::OnLine) {
    passage.verdict = CrossingVerdict::TurnedBack;
  } else if (passage.verdict == CrossingVerdict::NeverClear) {
    passage.verdict = CrossingVerdict::NotOver;
  }
  passage.side = side;
  passage.balance = 0;
  return isCrossing;
}

void LineCounter::resetTallies() {
  for (LineTally& tally : tallies_) {
    tally = {tally.line, {}, {}, {}};
  }
}

std::optional<std::size_t> LineCounter::indexOf(const std::string& line) const {
  const auto found = std::find_if(lines_.begin(), lines_.end(),
                                  [&](const Line& candidate) { return candidate.name == line; });
  return found != lines_.end() ? std::optional(static_cast<std::size_t>(found - lines_.begin()))
                               : std::nullopt;
}

detection::CounterLineDirections LineCounter::directions(const std::string& line) const {
  detection::CounterLineDirections directions;
  if (const auto index = indexOf(line)) {
    for (const auto& [id, track] : tracks_) {
      if (const auto& side = track.passages[*index].side) {
        directions.sides.emplace(id, *side);
      }
    }
  }
  return directions;
}

std::vector<detection::CounterLineTrackable> LineCounter::onLine(const std::string& line) const {
  std::vector<detection::CounterLineTrackable> onLine;
  if (const auto index = indexOf(line)) {
    for (const auto& [id, track] : tracks_) {
      const Passage& passage = track.passages[*index];
      if (passage.verdict == CrossingVerdict::OnLine) {
        onLine.push_back({id, *passage.side});
      }
    }
  }
  return onLine;
}

CrossingExplanation LineCounter::explain(const std::string& line, std::int32_t id) const {
  const auto index = indexOf(line);
  if (!index) {
    return {CrossingVerdict::NoSuchLine, std::nullopt, std::nullopt};
  }
  if (!lines_[*index].hasSides) {
    return {CrossingVerdict::NoLength, std::nullopt, std::nullopt};
  }
  if (id < 0) {
    return {CrossingVerdict::NoIdentity, std::nullopt, std::nullopt};
  }
  const auto track = tracks_.find(id);
  if (track == tracks_.end()) {
    return {CrossingVerdict::NotSeen, std::nullopt, std::nullopt};
  }
  const Passage& passage = track->second.passages[*index];
  return {passage.verdict, passage.side, passage.lastCrossing};
}

}  // namespace orvantis::filter::monitor
