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

#include "document/Configuration.h"
#include "session/Coordinates.h"
#include "session/SessionOptions.h"

namespace orvantis::toolkit {

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
  std::size_t pointCount = 0;  ///< no returns included
  std::optional<filter::monitor::PointFrame> points;
  std::optional<filter::monitor::ObjectFrame> objects;
  std::size_t objectCount = 0;
  std::vector<filter::monitor::ObjectEvent> lost;  ///< without a frame of objects: by the time alone
  std::vector<Event> events;
  filter::monitor::Duration taken{0};  ///< by the monitors; without reading the files
};

/// Feeds a recording to the monitors of a zone document.
class Session {
 public:
  /// @throws std::invalid_argument, std::out_of_range as the monitors do
  explicit Session(const Configuration& configuration, const SessionOptions& options = {});

  /// Takes what there is for the next stamp; points first.
  /// @param points of a frame; none: there is no frame of points
  /// @param objects of a frame; null: there is no frame of objects
  /// @throws std::invalid_argument as the monitors do
  SessionFrame take(filter::monitor::Stamp stamp, const std::optional<Points>& points,
                    const std::vector<filter::monitor::TrackedObject>* objects);

  /// What the last points came to. @param points the same that `take` was given with them
  std::vector<filter::monitor::ZoneExplanation> explainZones(const Points& points) const;
  const filter::monitor::ObjectMonitor& objects() const { return objects_; }
  const filter::monitor::LineCounter& lines() const { return lines_; }

 private:
  filter::monitor::ZoneMonitor zones_;
  filter::monitor::ObjectMonitor objects_;
  filter::monitor::LineCounter lines_;
  std::optional<OutputEvent> lastOutputs_;
};

}  // namespace orvantis::toolkit
