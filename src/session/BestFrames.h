#pragma once

#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>
#include <filter/monitor/ZoneMonitor.h>

#include "document/FieldZones.h"
#include "session/ZoneReach.h"

namespace orvantis::toolkit {

/// One zone at one frame: the points that counted, and those that nearly did.
struct ZoneMoment {
  filter::monitor::Stamp stamp{0};
  std::string file;  ///< the frame's file
  filter::monitor::ZoneExplanation zone;
  ZoneReach reach;
};

/// The moments of all zones at a frame.
std::vector<ZoneMoment> momentsOf(filter::monitor::Stamp stamp, const std::string& file,
                                  const std::vector<FieldZone>& zones,
                                  const std::vector<filter::monitor::ZoneExplanation>& explanations,
                                  const Points& points);

/// For each zone, the frame of a recording that came nearest to occupying it: the frame with the most points
/// that count; of equal frames the one with the most points inside the outline; then the one with the nearest
/// point; then the first.
class BestFrames {
 public:
  void add(const std::vector<ZoneMoment>& moments);

  /// One entry for each zone, in the order of the zones; empty before the first frame.
  const std::vector<ZoneMoment>& moments() const { return best_; }

 private:
  std::vector<ZoneMoment> best_;
};

}  // namespace orvantis::toolkit
