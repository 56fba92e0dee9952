#include "session/SiteEstimate.h"

#include <algorithm>
#include <cmath>

namespace orvantis::toolkit {
namespace {

constexpr double binHeight = 0.1;  // the ground is not quite flat

// The value below which that share of the values lies.
double quantile(std::vector<double> values, double share) {
  const auto at =
      values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), at, values.end());
  return *at;
}

}  // namespace

template <typename Real>
void SiteEstimate::addView(const filter::classify::PointsView<Real>& points) {
  for (std::size_t i = 0; i < points.size; ++i) {
    const Coordinates p = coordinatesOf(points, i);
    if (!p.isFinite() || (p.x == 0.0 && p.y == 0.0 && p.z == 0.0)) {
      continue;
    }
    xs_.push_back(p.x);
    ys_.push_back(p.y);
    Bin& bin = heights_[std::floor(p.z / binHeight)];
    ++bin.count;
    bin.mean += (p.z - bin.mean) / static_cast<double>(bin.count);
  }
}

void SiteEstimate::add(const Points& points) {
  std::visit([this](const auto& view) { addView(view); }, points);
}

std::optional<Site> SiteEstimate::site() const {
  if (xs_.empty()) {
    return std::nullopt;
  }
  constexpr double few = 0.05;
  const auto fullest = std::max_element(heights_.begin(), heights_.end(), [](const auto& a, const auto& b) {
    return a.second.count < b.second.count;
  });
  return Site{{quantile(xs_, few), quantile(ys_, few)},
              {quantile(xs_, 1.0 - few), quantile(ys_, 1.0 - few)},
              fullest->second.mean};
}

}  // namespace orvantis::toolkit
