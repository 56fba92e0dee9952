#pragma once

#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>
#include <filter/monitor/ZoneMonitor.h>

#include "document/FieldZones.h"
#include "session/ZoneReach.h"

namespace orvantis::toolkit {

/// One zone at one frame: what counted, and what nearly did.
struct ZoneMoment {
  filter::monitor::Stamp stamp{0};
  std::string file;  ///< of the frame
  filter::monitor::ZoneExplanation zone;
  ZoneReach reach;
};

/// The moments of all zones at a frame.
std::vector<ZoneMoment> momentsOf(filter::monitor::Stamp stamp, const std::string& file,
                                  const std::vector<FieldZone>& zones,
                                  const std::vector<filter::monitor::ZoneExplanation>& explanations,
                                  const Points& points);

/// For each zone the frame of a recording that came nearest to occupying it: the most points that count, then
/// the most inside its outline, then the nearest point; of equal ones the first.
class BestFrames {
 public:
  void add(const std::vector<ZoneMoment>& moments);

  /// One for each zone, in the order of the zones; empty before the first frame.
  const std::vector<ZoneMoment>& moments() const { return best_; }

 private:
  std::vector<ZoneMoment> best_;
};

}  // namespace orvantis::toolkit
