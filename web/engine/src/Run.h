#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MomentFeed.h"
#include "Recording.h"
#include "document/Configuration.h"
#include "session/HeightWatch.h"
#include "session/Session.h"
#include "session/SessionSummary.h"
#include "session/SessionTables.h"

namespace orvantis::engine {

/// What a page draws of each moment: arrays of numbers, one or 24 for a moment.
struct RunColumns {
  std::vector<std::int64_t> stamps;  ///< nanoseconds
  std::vector<std::uint8_t> has;     ///< 1: points, 2: objects
  std::vector<std::uint32_t> points;
  std::vector<std::uint32_t> counts;  ///< 24 for each
  std::vector<std::uint32_t> excluded;
  std::vector<std::uint32_t> noReturns;
  std::vector<std::uint32_t> occupied;  ///< a bit for each slot
  std::vector<std::uint32_t> occupiedNow;
  std::vector<std::uint8_t> outputs;         ///< a bit for each that is high
  std::vector<std::uint32_t> inhabitants;    ///< 24 for each
  std::vector<std::uint32_t> momentOfEvent;  ///< one for each event
};

/// A document over a whole recording, step by step.
class Run {
 public:
  /// @throws Failure when the files cannot be read, and what the monitors throw
  Run(std::shared_ptr<Recording> recording, toolkit::Configuration configuration,
      const toolkit::SessionOptions& options);

  /// Goes on for about so long. @return whether there is more
  /// @throws Failure when a file cannot be read
  bool step(std::chrono::milliseconds budget);

  std::size_t moments() const { return columns_.stamps.size(); }
  std::uint64_t bytes() const { return feed_.bytes(); }
  /// How many frames of points were counted, and not known before.
  std::size_t counted() const { return numCounted_; }
  int activeField() const { return activeField_; }
  const RunColumns& columns() const { return columns_; }
  /// [{"line": ..., "record": {...}}, ...]
  std::string events() const { return "[" + events_ + "]"; }

  // Once `step` said that there is no more.

  std::string summary() const;  ///< an array of the records that end `run --json`
  std::vector<std::string> warnings() const;
  std::string eventTable() const { return eventTable_; }  ///< as CSV

 private:
  void take(const FedMoment& moment);
  void note(const toolkit::SessionFrame& frame, const FedMoment& moment);
  void noteEvents(const toolkit::SessionFrame& frame);
  void finish();

  std::shared_ptr<Recording> recording_;
  toolkit::Configuration configuration_;
  std::vector<toolkit::FieldZone> zones_;
  toolkit::SessionInputs inputs_;
  ZoneSignatures signatures_;
  std::shared_ptr<const FrameCounts> known_;
  MomentFeed feed_;
  toolkit::Session session_;
  toolkit::SessionSummary summary_;
  toolkit::SessionTables tables_;
  toolkit::HeightWatch heights_;
  std::vector<filter::classify::ZoneCounts> counts_;
  std::size_t numCounted_ = 0;
  int activeField_ = 0;
  RunColumns columns_;
  std::string events_;
  std::string eventTable_;
};

}  // namespace orvantis::engine
