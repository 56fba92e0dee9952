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
  Stamp stamp;
  core::PlanarPoint place;
};

/// The last crossing of a track over a line. Its texts are kept once in the counter, here are their numbers.
struct LastCrossing {
  std::uint32_t line;
  std::uint32_t className;
  detection::CounterLineDirectionType to;
  Instant met;
  Stamp accepted;
};

/// What is known of one track on the lines of a counter. A line is identified by its number.
///
/// It stores two bytes for each line. Passes and crossings have entries only for the lines that have some, so
/// that many tracks on many lines need little memory.
class Passages {
 public:
  using Side = detection::CounterLineDirectionType;

  /// Begins anew, as an object of which nothing is known.
  /// @param verdict NeverClear, or Jumped
  void begin(std::size_t numLines, CrossingVerdict verdict);

  /// Counts the step from the last sighting to this one as a pass if it goes over the segment. The two
  /// reference points must lie on different sides of the line.
  void takeStep(std::uint32_t number, const SidedLine& line, const Instant& from, const Instant& to);

  /// Notes the side on which the track is clear of the line now, if it is clear.
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
  // Over the segment of a line, since the track was last clear of the line.
  struct Passes {
    std::uint32_t line;
    std::int32_t balance;  // passes away from the side where it was clear, less passes back
    Instant lastAway;
  };

  std::vector<Passes>::iterator passesOf(std::uint32_t number);

  std::vector<Standing> standings_;  // by line
  std::vector<Passes> passes_;       // of the lines that it has passed over and is not clear of yet
  std::vector<LastCrossing> lastCrossings_;
};

}  // namespace orvantis::filter::monitor
