#include "PlainLineCounter.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "monitor/Orientation.h"
#include "monitor/Stamps.h"

namespace orvantis::filter::monitor::testing {

PlainLineCounter::PlainLineCounter(const std::map<std::string, detection::CounterLine>& lines,
                                   const LineCounterOptions& options)
    : options_(options) {
  for (const auto& [name, line] : lines) {
    const core::PlanarPoint& first = line.getPoints().front();
    const core::PlanarPoint& second = line.getPoints().back();
    const double length = distance(first, second);
    if (std::isfinite(length) && length > 0.0) {
      lines_.push_back({name, first, second, options.clearance * length});
    }
  }
}

std::vector<Crossing> PlainLineCounter::update(Stamp stamp, const std::vector<TrackedObject>& objects) {
  std::erase_if(tracks_, [&](const auto& entry) {
    return elapsed(entry.second.last.stamp, stamp) >= options_.forgetAfter;
  });
  std::vector<Crossing> crossings;
  for (const TrackedObject& object : objects) {
    const auto reference = referencePoint(object.footprint);
    if (object.id >= 0 && reference) {
      follow(object, {stamp, *reference}, crossings);
    }
  }
  return crossings;
}

void PlainLineCounter::follow(const TrackedObject& object, const Instant& now,
                              std::vector<Crossing>& crossings) {
  const auto [entry, isFirst] = tracks_.try_emplace(object.id);
  Track& track = entry->second;
  const double seconds = std::chrono::duration<double>(elapsed(track.last.stamp, now.stamp)).count();
  const double way = distance(track.last.place, now.place);
  const bool jumps = !isFirst && way > options_.maxSpeed * seconds;
  if (isFirst || jumps) {
    track.passages.assign(lines_.size(), Passage());
  }
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    Passage& passage = track.passages[i];
    if (jumps) {
      passage.verdict = CrossingVerdict::Jumped;
    } else if (!isFirst) {
      takeStep(line, track.last, now, passage);
    }
    const auto from = passage.side;
    if (takeSide(clearSide(line, object, now.place), isFirst, passage)) {
      passage.lastCrossing = {line.name,
                              *from,
                              *passage.side,
                              object.id,
                              object.className,
                              passage.lastAway.stamp,
                              passage.lastAway.place,
                              now.stamp};
      crossings.push_back(*passage.lastCrossing);
    }
  }
  track.last = now;
}

std::optional<PlainLineCounter::Side> PlainLineCounter::clearSide(const Line& line,
                                                                  const TrackedObject& object,
                                                                  const core::PlanarPoint& reference) {
  int left = 0;
  int right = 0;
  const auto look = [&](const core::PlanarPoint& point) {
    const int sign = orientation(line.first, line.second, point);
    const bool isNear = std::abs(crossProduct(line.first, line.second, point)) < line.clearance;
    left += sign >= 0 || isNear ? 1 : 0;
    right += sign <= 0 || isNear ? 1 : 0;
  };
  look(reference);
  for (const core::PlanarPoint& vertex : object.footprint.polygon().outer()) {
    look(vertex);
  }
  return right == 0 ? std::optional(Side::LEFT) : left == 0 ? std::optional(Side::RIGHT) : std::nullopt;
}

void PlainLineCounter::takeStep(const Line& line, const Instant& from, const Instant& to, Passage& passage) {
  const int fromSign = orientation(line.first, line.second, from.place);
  const int toSign = orientation(line.first, line.second, to.place);
  const bool passesBeside =
      orientation(from.place, to.place, line.first) * orientation(from.place, to.place, line.second) > 0;
  if ((fromSign > 0) == (toSign > 0) || !passage.side || passesBeside) {
    return;
  }
  if ((toSign > 0 ? Side::LEFT : Side::RIGHT) == *passage.side) {
    --passage.balance;
    return;
  }
  ++passage.balance;
  if (fromSign == 0) {
    passage.lastAway = from;
  } else if (toSign == 0) {
    passage.lastAway = to;
  } else {
    const double before = std::abs(crossProduct(line.first, line.second, from.place));
    const double after = std::abs(crossProduct(line.first, line.second, to.place));
    const double share = before / (before + after);
    passage.lastAway = {
        between(from.stamp, to.stamp, share),
        {std::lerp(from.place.x(), to.place.x(), share), std::lerp(from.place.y(), to.place.y(), share)}};
  }
}

bool PlainLineCounter::takeSide(const std::optional<Side>& side, bool isFirst, Passage& passage) {
  if (!side) {
    if (passage.side) {
      passage.verdict = CrossingVerdict::OnLine;
    }
    return false;
  }
  const bool changesSide = passage.side && *side != *passage.side;
  const bool isCrossing = changesSide && passage.balance > 0;
  if (isCrossing) {
    passage.verdict = CrossingVerdict::Counted;
  } else if (changesSide) {
    passage.verdict = CrossingVerdict::PassedBeside;
  } else if (passage.verdict == CrossingVerdict::OnLine) {
    passage.verdict = CrossingVerdict::TurnedBack;
  } else if (passage.verdict == CrossingVerdict::NeverClear) {
    passage.verdict = isFirst ? CrossingVerdict::NotOver : CrossingVerdict::BeganOnLine;
  }
  passage.side = side;
  passage.balance = 0;
  return isCrossing;
}

CrossingExplanation PlainLineCounter::explain(const std::string& name, std::int32_t id) const {
  const auto line = std::find_if(lines_.begin(), lines_.end(),
                                 [&](const Line& candidate) { return candidate.name == name; });
  const auto track = tracks_.find(id);
  if (track == tracks_.end()) {
    return {CrossingVerdict::NotSeen, std::nullopt, std::nullopt};
  }
  const Passage& passage = track->second.passages.at(static_cast<std::size_t>(line - lines_.begin()));
  return {passage.verdict, passage.side, passage.lastCrossing};
}

}  // namespace orvantis::filter::monitor::testing
