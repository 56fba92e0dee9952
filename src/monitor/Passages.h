#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <core/Planar.h>
#include <filter/detection/CounterLine.h>
#include <filter/monitor/LineCounter.h>
#include <filter/monitor/Stamp.h>

#include "monitor/SidedLine.h"

namespace orvantis::filter::monitor {

/// Where and when a reference point was.
struct Instant {
  Stamp stamp{0};
  core::PlanarPoint place{0.0, 0.0};
};

/// A crossing without the texts, which the counter has: the last one of a track over a line.
struct LastCrossing {
  std::uint32_t line = 0;
  std::uint32_t className = 0;
  detection::CounterLineDirectionType to = detection::CounterLineDirectionType::LEFT;
  Instant met;
  Stamp accepted{0};
};

/// What the lines of a counter know of one track. Lines go by their numbers.
///
/// Two bytes for each line; what else is known of a line is kept only while there is something to know, so
/// that many tracks on many lines stay small.
class Passages {
 public:
  using Side = detection::CounterLineDirectionType;

  /// Begins anew, as an object of which nothing is known.
  /// @param verdict NeverClear, or Jumped
  void begin(std::size_t numLines, CrossingVerdict verdict);

  /// Accounts for the way from the last sighting to this one, which begins and ends on different sides of the
  /// line by their reference points.
  void takeStep(std::uint32_t number, const SidedLine& line, const Instant& from, const Instant& to);

  /// Takes note of the side on which the track is clear of the line now, if it is.
  /// @param isFirst whether it is the first sighting of the track
  /// @return when this completes a crossing, where and when it met the line
  std::optional<Instant> takeSide(std::uint32_t number, const std::optional<Side>& side, bool isFirst);

  void setLastCrossing(const LastCrossing& crossing);

  CrossingVerdict verdict(std::uint32_t number) const;
  /// The side on which it was last clear.
  std::optional<Side> side(std::uint32_t number) const;
  const LastCrossing* lastCrossing(std::uint32_t number) const;

 private:
  struct Standing {
    std::uint8_t verdict;
    std::uint8_t side;  // ON while it was never clear
  };
  // Over a segment, since the track was last clear of the line.
  struct Passes {
    std::uint32_t line;
    std::int32_t balance;  // away from the side where it was clear, less those back
    Instant lastAway;
  };

  std::vector<Passes>::iterator passesOf(std::uint32_t number);

  std::vector<Standing> standings_;  // by line
  std::vector<Passes> passes_;       // of the lines that it has passed over and is not clear of yet
  std::vector<LastCrossing> lastCrossings_;
};

}  // namespace orvantis::filter::monitor
