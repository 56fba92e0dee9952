#include "monitor/LineCounterImpl.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "monitor/ObjectIds.h"
#include "monitor/Orientation.h"

namespace orvantis::filter::monitor {

using Side = detection::CounterLineDirectionType;

namespace {

Side opposite(Side side) {
  return side == Side::LEFT ? Side::RIGHT : Side::LEFT;
}

void countTowards(Side to, CrossingCounts& counts) {
  ++(to == Side::LEFT ? counts.toLeft : counts.toRight);
}

void count(const Crossing& crossing, LineTally& tally) {
  countTowards(crossing.to, tally.crossings);
  countTowards(crossing.to, tally.byClass[crossing.className]);
  (crossing.to == Side::LEFT ? tally.ids.left : tally.ids.right).insert(crossing.id);
}

bool hasBit(std::uint64_t word, int bit) {
  return (word >> bit & 1U) != 0;
}

}  // namespace

LineCounter::Impl::Impl(const std::map<std::string, detection::CounterLine>& lines,
                        const LineCounterOptions& options)
    : options_(options) {
  requireForgetAfter(options.forgetAfter);
  requireClearance(options.clearance);
  if (!(options.maxSpeed > 0.0)) {
    throw std::invalid_argument("The maximum speed must be above zero");
  }
  std::vector<SidedLine> sided;
  for (const auto& [name, line] : lines) {
    lines_.push_back({name, std::nullopt});
    tallies_.push_back({name, {}, {}, {}});
    if (const auto sides = sidedLine(line, options.clearance)) {
      lines_.back().number = static_cast<std::uint32_t>(sided.size());
      lineOf_.push_back(static_cast<std::uint32_t>(lines_.size() - 1));
      sided.push_back(*sides);
    }
  }
  scan_ = LineScan(std::move(sided));
}

std::vector<Crossing> LineCounter::Impl::update(Stamp stamp, const std::vector<TrackedObject>& objects) {
  clock_.requireFrame(stamp);
  requireUniqueIds(objects);
  clock_.takeFrame(stamp);
  forgetTracks(stamp);

  std::vector<Crossing> crossings;
  for (const TrackedObject& object : objects) {
    if (object.id < 0) {
      continue;
    }
    if (const auto reference = referencePoint(object.footprint)) {
      follow(object, {stamp, *reference}, crossings);
    }
  }
  return crossings;
}

void LineCounter::Impl::advance(Stamp stamp) {
  clock_.requirePassing(stamp);
  clock_.pass(stamp);
  forgetTracks(stamp);
}

void LineCounter::Impl::forgetTracks(Stamp stamp) {
  tracks_.forget(stamp, options_.forgetAfter, [&](std::int32_t id, const Track&, Stamp) {
    // The numbers stay; the ids go, or the sets would grow for ever.
    for (LineTally& tally : tallies_) {
      tally.ids.left.erase(id);
      tally.ids.right.erase(id);
    }
  });
}

void LineCounter::Impl::follow(const TrackedObject& object, const Instant& now,
                               std::vector<Crossing>& crossings) {
  scan_.scan(object.footprint, now.place, seen_);
  const std::size_t numLines = scan_.lines().size();
  const auto [track, isFirst] = tracks_.see(object.id, now.stamp, [&] {
    Track made{now, seen_, {}};
    made.passages.begin(numLines, CrossingVerdict::NeverClear);
    return made;
  });
  const bool jumps = !isFirst && isJump(track.last, now);
  const bool isAnew = isFirst || jumps;
  if (isAnew) {
    track.passages.begin(scan_.lines().size(), jumps ? CrossingVerdict::Jumped : CrossingVerdict::NeverClear);
  }
  scan_.scan(object.footprint, now.place, seen_);
  for (std::size_t word = 0; word < seen_.left.size(); ++word) {
    // A line that lies as it did at the last sighting learns nothing, and most lines do.
    const std::uint64_t met = isAnew ? 0 : track.sides.left[word] ^ seen_.left[word];
    std::uint64_t changed =
        isAnew ? scan_.allLines(word) : met | (track.sides.clear[word] ^ seen_.clear[word]);
    for (; changed != 0; changed &= changed - 1) {
      const int bit = std::countr_zero(changed);
      const auto number = static_cast<std::uint32_t>(64 * word) + static_cast<std::uint32_t>(bit);
      if (hasBit(met, bit)) {
        track.passages.takeStep(number, scan_.lines()[number], track.last, now);
      }
      std::optional<Side> side;
      if (hasBit(seen_.clear[word], bit)) {
        side = hasBit(seen_.left[word], bit) ? Side::LEFT : Side::RIGHT;
      }
      if (const auto pass = track.passages.takeSide(number, side, isFirst)) {
        const LastCrossing crossing{number, classNames_.numberOf(object.className), *side, *pass, now.stamp};
        track.passages.setLastCrossing(crossing);
        crossings.push_back(crossingOf(object.id, crossing));
        count(crossings.back(), tallies_[lineOf_[number]]);
      }
    }
  }
  std::swap(track.sides, seen_);
  track.last = now;
}

bool LineCounter::Impl::isJump(const Instant& from, const Instant& to) const {
  if (std::isinf(options_.maxSpeed)) {
    return false;
  }
  const double seconds = std::chrono::duration<double>(elapsed(from.stamp, to.stamp)).count();
  return distance(from.place, to.place) > options_.maxSpeed * seconds;
}

Crossing LineCounter::Impl::crossingOf(std::int32_t id, const LastCrossing& crossing) const {
  return {
      lines_[lineOf_[crossing.line]].name,    opposite(crossing.to), crossing.to,        id,
      classNames_.nameOf(crossing.className), crossing.met.stamp,    crossing.met.place, crossing.accepted};
}

void LineCounter::Impl::resetTallies() {
  for (LineTally& tally : tallies_) {
    tally = {tally.line, {}, {}, {}};
  }
}

const LineCounter::Impl::Line* LineCounter::Impl::find(const std::string& name) const {
  const auto found =
      std::find_if(lines_.begin(), lines_.end(), [&](const Line& line) { return line.name == name; });
  return found != lines_.end() ? &*found : nullptr;
}

CrossingExplanation LineCounter::Impl::explain(const std::string& name, std::int32_t id) const {
  const auto only = [](CrossingVerdict verdict) {
    return CrossingExplanation{verdict, std::nullopt, std::nullopt};
  };
  const Line* line = find(name);
  if (line == nullptr) {
    return only(CrossingVerdict::NoSuchLine);
  }
  if (!line->number) {
    return only(CrossingVerdict::NoLength);
  }
  if (id < 0) {
    return only(CrossingVerdict::NoIdentity);
  }
  const Track* track = tracks_.find(id);
  if (track == nullptr) {
    return only(CrossingVerdict::NotSeen);
  }
  const Passages& passages = track->passages;
  const LastCrossing* last = passages.lastCrossing(*line->number);
  return {passages.verdict(*line->number), passages.side(*line->number),
          last != nullptr ? std::optional(crossingOf(id, *last)) : std::nullopt};
}

}  // namespace orvantis::filter::monitor
