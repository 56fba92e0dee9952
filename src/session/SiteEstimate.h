#pragma once

#include <map>
#include <optional>
#include <vector>

#include "document/NewDocument.h"
#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// Estimates the place of a site from frames of points: its extent, from the positions of the points without
/// the few far ones, and its ground, as the height of most points.
class SiteEstimate {
 public:
  /// Points that are not finite, or are at the sensor itself, are not returns and are skipped.
  void add(const Points& points);

  /// Nothing when there was no point.
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
