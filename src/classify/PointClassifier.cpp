#include <filter/classify/PointClassifier.h>

#include "classify/ZoneIndex.h"

namespace orvantis::filter::classify {

class PointClassifier::Index : public ZoneIndex {
  using ZoneIndex::ZoneIndex;
};

PointClassifier::PointClassifier(const detection::ZoneDetector& detector)
    : index_(std::make_shared<const Index>(detector)) {}

void PointClassifier::classify(const PointsView<float>& points, std::uint64_t* masks) const {
  index_->classify(points, masks);
}

void PointClassifier::classify(const PointsView<double>& points, std::uint64_t* masks) const {
  index_->classify(points, masks);
}

ZoneCounts PointClassifier::count(const PointsView<float>& points, std::uint64_t* masks) const {
  return index_->count(points, masks);
}

ZoneCounts PointClassifier::count(const PointsView<double>& points, std::uint64_t* masks) const {
  return index_->count(points, masks);
}

}  // namespace orvantis::filter::classify
