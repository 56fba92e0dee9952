#include "monitor/Passages.h"

#include <algorithm>
#include <cmath>

#include "monitor/Orientation.h"
#include "monitor/Stamps.h"

namespace orvantis::filter::monitor {
namespace {

using Side = Passages::Side;

// Where and when the step meets the line. Its ends must lie on different sides.
Instant meeting(const SidedLine& line, const Instant& from, const Instant& to) {
  if (orientation(line.first, line.second, from.place) == 0) {
    return from;
  }
  if (orientation(line.first, line.second, to.place) == 0) {
    return to;
  }
  const double before = std::abs(crossProduct(line.first, line.second, from.place));
  const double after = std::abs(crossProduct(line.first, line.second, to.place));
  const double share = before + after > 0.0 ? before / (before + after) : 0.0;
  return {between(from.stamp, to.stamp, share),
          {std::lerp(from.place.x(), to.place.x(), share), std::lerp(from.place.y(), to.place.y(), share)}};
}

}  // namespace

void Passages::begin(std::size_t numLines, CrossingVerdict verdict) {
  standings_.assign(numLines, {static_cast<std::uint8_t>(verdict), static_cast<std::uint8_t>(Side::ON)});
  passes_.clear();
  lastCrossings_.clear();
}

void Passages::takeStep(std::uint32_t number, const SidedLine& line, const Instant& from, const Instant& to) {
  const auto clearSide = side(number);
  if (!clearSide) {
    return;
  }
  // Both ends of the segment are on the same side of the step, so it does not pass over the segment.
  if (orientation(from.place, to.place, line.first) * orientation(from.place, to.place, line.second) > 0) {
    return;
  }
  auto passes = passesOf(number);
  if (passes == passes_.end()) {
    passes = passes_.insert(passes, {number, 0, {}});
  }
  const Side towards = orientation(line.first, line.second, to.place) > 0 ? Side::LEFT : Side::RIGHT;
  if (towards == *clearSide) {
    --passes->balance;
    return;
  }
  ++passes->balance;
  passes->lastAway = meeting(line, from, to);
}

std::optional<Instant> Passages::takeSide(std::uint32_t number, const std::optional<Side>& side,
                                          bool isFirst) {
  Standing& standing = standings_[number];
  const auto lastSide = static_cast<Side>(standing.side);
  const auto lastVerdict = static_cast<CrossingVerdict>(standing.verdict);
  const auto conclude = [&](CrossingVerdict verdict) {
    standing.verdict = static_cast<std::uint8_t>(verdict);
  };
  if (!side) {
    if (lastSide != Side::ON) {
      conclude(CrossingVerdict::OnLine);
    }
    return std::nullopt;
  }
  std::optional<Instant> met;
  const auto passes = passesOf(number);
  if (lastSide != Side::ON && *side != lastSide) {
    if (passes != passes_.end() && passes->balance > 0) {
      met = passes->lastAway;
    }
    conclude(met ? CrossingVerdict::Counted : CrossingVerdict::PassedBeside);
  } else if (lastVerdict == CrossingVerdict::OnLine) {
    conclude(CrossingVerdict::TurnedBack);
  } else if (lastVerdict == CrossingVerdict::NeverClear) {
    conclude(isFirst ? CrossingVerdict::NotOver : CrossingVerdict::BeganOnLine);
  }
  standing.side = static_cast<std::uint8_t>(*side);
  if (passes != passes_.end()) {
    passes_.erase(passes);
  }
  return met;
}

void Passages::setLastCrossing(const LastCrossing& crossing) {
  const auto known = std::find_if(lastCrossings_.begin(), lastCrossings_.end(),
                                  [&](const LastCrossing& other) { return other.line == crossing.line; });
  if (known != lastCrossings_.end()) {
    *known = crossing;
  } else {
    lastCrossings_.push_back(crossing);
  }
}

CrossingVerdict Passages::verdict(std::uint32_t number) const {
  return static_cast<CrossingVerdict>(standings_[number].verdict);
}

std::optional<Side> Passages::side(std::uint32_t number) const {
  const auto side = static_cast<Side>(standings_[number].side);
  return side == Side::ON ? std::nullopt : std::optional(side);
}

const LastCrossing* Passages::lastCrossing(std::uint32_t number) const {
  const auto known = std::find_if(lastCrossings_.begin(), lastCrossings_.end(),
                                  [&](const LastCrossing& crossing) { return crossing.line == number; });
  return known != lastCrossings_.end() ? &*known : nullptr;
}

std::vector<Passages::Passes>::iterator Passages::passesOf(std::uint32_t number) {
  return std::find_if(passes_.begin(), passes_.end(),
                      [&](const Passes& passes) { return passes.line == number; });
}

}  // namespace orvantis::filter::monitor
