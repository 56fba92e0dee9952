#pragma once

#include <array>
#include <cstdint>
#include <map>
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

/// The levels of the outputs differ from those of the frame before, or this is the first frame.
struct OutputEvent {
  int field = 0;  ///< the active field
  std::array<filter::monitor::PointFrame::Level, 3> levels{};
};

/// The event of a zone that is bound to sensors.
struct SensorZoneEvent {
  filter::monitor::ZoneEvent event;  ///< its slot is that in `monitorOfSensorZones`
};

using Event = std::variant<filter::monitor::ZoneEvent, SensorZoneEvent, OutputEvent,
                           filter::monitor::ObjectEvent, filter::monitor::Crossing>;

/// The results for one stamp of a recording.
struct SessionFrame {
  filter::monitor::Stamp stamp{0};
  std::size_t pointCount = 0;  ///< including no returns
  std::optional<filter::monitor::PointFrame> points;
  std::optional<filter::monitor::PointFrame> sensorZones;  ///< the zones that are bound to sensors
  std::optional<filter::monitor::ObjectFrame> objects;
  std::size_t objectCount = 0;
  std::vector<filter::monitor::ObjectEvent>
      lost;  ///< when there is no frame of objects: tracks lost because time passed
  std::vector<Event> events;
  filter::monitor::Duration taken{0};  ///< by the monitors, without the reading of files
};

/// Those of the events that are crossings.
std::vector<filter::monitor::Crossing> crossingsOf(const SessionFrame& frame);

/// A frame of points that were counted before.
struct CountedPoints {
  filter::classify::ZoneCounts counts;  ///< by a classifier of the same zones
  std::size_t pointCount = 0;           ///< no returns included
};

/// Feeds a recording to the monitors of a zone document.
class Session {
 public:
  /// @throws std::invalid_argument, std::out_of_range as the monitors do; std::invalid_argument for too many
  ///   zones that are bound to sensors
  explicit Session(const Configuration& configuration, const SessionOptions& options = {});

  /// Takes the frames of the next stamp, first the points.
  /// @param points a frame of points; empty when there is no such frame
  /// @param objects a frame of objects; null when there is no such frame
  /// @param sensors the same points by sensor, if zones that are bound to sensors are followed
  /// @throws std::invalid_argument as the monitors do
  SessionFrame take(filter::monitor::Stamp stamp, const std::optional<Points>& points,
                    const std::vector<filter::monitor::TrackedObject>* objects,
                    const std::vector<filter::monitor::SensorPoints>& sensors = {});
  /// The same for points that were counted before; zones that are bound to sensors are not followed.
  SessionFrame take(filter::monitor::Stamp stamp, const CountedPoints& points,
                    const std::vector<filter::monitor::TrackedObject>* objects);

  /// Goes on with another document. A zone that is the same keeps its state, as ZoneMonitor and ObjectMonitor
  /// have it; where any counter line changed, all lines begin anew.
  /// @return what loses its state, at the last stamp
  /// @throws as the constructor; nothing is changed then
  std::vector<Event> reconfigure(const Configuration& configuration);
  /// The field that drives the outputs, from the next frame on.
  /// @throws std::out_of_range unless 0 to 7; nothing is changed then
  void setActiveField(int field) { zones_.setActiveField(field); }
  int activeField() const { return zones_.activeField(); }

  /// Explains the last points. @param points those that the last `take` with points was given
  std::vector<filter::monitor::ZoneExplanation> explainZones(const Points& points) const;
  /// The names of the zones that are bound to sensors; empty when they are not followed.
  const std::vector<std::string>& sensorZoneNames() const { return sensorZoneNames_; }
  const filter::monitor::ObjectMonitor& objects() const { return objects_; }
  const filter::monitor::LineCounter& lines() const { return lines_; }

 private:
  /// @param update gives the frames of points, if there are any
  template <typename Update>
  SessionFrame takeWith(filter::monitor::Stamp stamp, Update update, std::size_t pointCount,
                        const std::vector<filter::monitor::TrackedObject>* objects);

  filter::monitor::ZoneMonitor zones_;
  std::optional<filter::monitor::ZoneMonitor> sensorZones_;
  std::vector<std::string> sensorZoneNames_;
  filter::monitor::ObjectMonitor objects_;
  filter::monitor::LineCounter lines_;
  filter::monitor::LineCounterOptions lineOptions_;
  std::map<std::string, filter::detection::CounterLine> counterLines_;
  std::optional<OutputEvent> lastOutputs_;
};

}  // namespace orvantis::toolkit
