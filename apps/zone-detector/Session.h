#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <filter/monitor/LineCounter.h>
#include <filter/monitor/ObjectMonitor.h>
#include <filter/monitor/ZoneMonitor.h>

#include "CloudReader.h"
#include "Configuration.h"
#include "TimeLine.h"

namespace orvantis::app {

/// The levels of the outputs are others than in the frame before, or this is the first frame.
struct OutputEvent {
  int field = 0;  ///< the active one
  std::array<filter::monitor::PointFrame::Level, 3> levels{};
};

using Event = std::variant<filter::monitor::ZoneEvent, OutputEvent, filter::monitor::ObjectEvent,
                           filter::monitor::Crossing>;

/// What one moment of a recording came to.
struct SessionFrame {
  filter::monitor::Stamp stamp{0};
  std::string cloud;           ///< its path; empty: there were no points
  std::size_t pointCount = 0;  ///< no returns included
  std::optional<filter::monitor::PointFrame> points;
  std::optional<filter::monitor::ObjectFrame> objects;
  std::size_t objectCount = 0;
  std::vector<Event> events;
  filter::monitor::Duration taken{0};  ///< by the monitors; reading the files is no part of it
};

/// Feeds a recording to the monitors of a zone document.
class Session {
 public:
  explicit Session(const Configuration& configuration);

  /// Takes the next moment.
  /// @param cloud its points; empty when it has none
  SessionFrame take(const Moment& moment, const Cloud& cloud);

  /// What the last points came to. @param cloud the same that `take` was given with them
  std::vector<filter::monitor::ZoneExplanation> explainZones(const Cloud& cloud) const;
  const filter::monitor::ObjectMonitor& objects() const { return objects_; }
  const filter::monitor::LineCounter& lines() const { return lines_; }

 private:
  filter::monitor::ZoneMonitor zones_;
  filter::monitor::ObjectMonitor objects_;
  filter::monitor::LineCounter lines_;
  std::optional<OutputEvent> lastOutputs_;
};

}  // namespace orvantis::app
