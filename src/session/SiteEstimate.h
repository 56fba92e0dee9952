#pragma once

#include <map>
#include <optional>
#include <vector>

#include "document/NewDocument.h"
#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// Finds out from frames of points where a site lies: its extent from the points' positions, without the few
/// far ones, and its ground as the height at which most points are.
class SiteEstimate {
 public:
  /// Points that are not finite, or at the sensor itself, are no returns and are passed over.
  void add(const Points& points);

  /// None when there was no point.
  std::optional<Site> site() const;

 private:
  template <typename Real>
  void addView(const filter::classify::PointsView<Real>& points);

  struct Bin {
    std::size_t count = 0;
    double mean = 0.0;
  };

  std::vector<double> xs_;
  std::vector<double> ys_;
  std::map<double, Bin> heights_;
};

}  // namespace orvantis::toolkit
