#include "session/BestFrames.h"

#include <limits>
#include <tuple>

namespace orvantis::toolkit {
namespace {

bool isBetter(const ZoneMoment& a, const ZoneMoment& b) {
  const auto rank = [](const ZoneMoment& moment) {
    const double distance =
        moment.reach.nearest ? moment.reach.nearest->distance : std::numeric_limits<double>::infinity();
    return std::tuple(moment.zone.counted, moment.reach.insideOutline(), -distance);
  };
  return rank(a) > rank(b);
}

}  // namespace

std::vector<ZoneMoment> momentsOf(filter::monitor::Stamp stamp, const std::string& file,
                                  const std::vector<FieldZone>& zones,
                                  const std::vector<filter::monitor::ZoneExplanation>& explanations,
                                  const Points& points) {
  std::vector<ZoneMoment> moments;
  for (const filter::monitor::ZoneExplanation& explanation : explanations) {
    for (const FieldZone& zone : zones) {
      if (zone.field == explanation.slot.field && zone.zone == explanation.slot.zone) {
        moments.push_back({stamp, file, explanation, reachOf(*zone.volume, points)});
      }
    }
  }
  return moments;
}

void BestFrames::add(const std::vector<ZoneMoment>& moments) {
  if (best_.empty()) {
    best_ = moments;
    return;
  }
  for (std::size_t i = 0; i < moments.size(); ++i) {
    if (isBetter(moments[i], best_[i])) {
      best_[i] = moments[i];
    }
  }
}

}  // namespace orvantis::toolkit
