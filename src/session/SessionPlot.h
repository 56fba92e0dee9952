#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "document/Configuration.h"
#include "document/FieldZones.h"
#include "drawing/SvgPlan.h"
#include "session/Session.h"
#include "session/SessionSummary.h"

namespace orvantis::toolkit {

/// Collects the content of the picture of a session. Memory grows with the number of sightings.
class SessionPlot {
 public:
  /// @param forgetAfter that of the session: an id that was out of sight so long is drawn as a new track
  SessionPlot(const Configuration& configuration, const SessionInputs& inputs,
              filter::monitor::Duration forgetAfter = filter::monitor::ObjectMonitor::DEFAULT_FORGET_AFTER);

  /// For a session whose inputs are known only at its end; before `draw`.
  void setInputs(const SessionInputs& inputs);

  /// @param objects those that the session took; null when there was no frame of objects
  void add(const SessionFrame& frame, const std::vector<filter::monitor::TrackedObject>* objects);

  /// The picture as an SVG document. @throws std::runtime_error when it cannot be drawn
  std::string draw(const std::string& title, const std::optional<PlanContent::Extent>& extent = std::nullopt);

 private:
  struct OpenTrack {
    std::size_t index;  // among the plan's tracks
    filter::monitor::Stamp lastSeen;
  };

  void followTracks(filter::monitor::Stamp stamp, const std::vector<filter::monitor::TrackedObject>& objects);
  /// Extends the last interval if it was on in the frame before, else begins one.
  static void extend(std::vector<TimelineContent::Interval>& intervals, bool wasOn, bool isOn, double time);

  std::vector<FieldZone> zones_;
  PlanContent plan_;
  filter::monitor::Duration forgetAfter_;
  std::map<std::int32_t, OpenTrack> tracks_;
  std::map<std::string, std::size_t> lineRows_;
  std::array<bool, filter::monitor::NUM_ZONE_SLOTS> wasOccupied_{};
  std::array<bool, filter::monitor::NUM_ZONE_SLOTS> wasInhabited_{};
  bool isBegun_ = false;
};

}  // namespace orvantis::toolkit
