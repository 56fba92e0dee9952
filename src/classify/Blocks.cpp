#include "classify/Blocks.h"

#include <algorithm>

namespace orvantis::filter::classify {
namespace {

constexpr std::size_t mostBytesApart = std::size_t{1}
                                       << 20U;  // records with larger gaps are copied; no driver makes them

constexpr std::size_t bytesAtOnce = 12288;

std::uintptr_t addressOf(const void* values) {
  return reinterpret_cast<std::uintptr_t>(values);
}

const void* moved(const void* from, std::size_t offset) {
  return static_cast<const unsigned char*>(from) + static_cast<std::ptrdiff_t>(offset);
}

template <typename Real>
bool areArrays(const PointsView<Real>& points) {
  return points.stride == sizeof(Real) && addressOf(points.x) % alignof(Real) == 0 &&
         addressOf(points.y) % alignof(Real) == 0 && addressOf(points.z) % alignof(Real) == 0;
}

// A reader may read past the z of a record, into the next record. So the last record is copied.
template <typename Real>
bool areRecords(const PointsView<Real>& points) {
  return addressOf(points.y) == addressOf(points.x) + sizeof(Real) &&
         addressOf(points.z) == addressOf(points.y) + sizeof(Real) && points.stride >= sizeof(Real) &&
         points.stride <= mostBytesApart;
}

template <typename Real>
std::size_t wholeGroups(std::size_t size) {
  return size - size % Block<Real>::groupSize;
}

}  // namespace

template <typename Real>
Blocks<Real>::Blocks(const PointsView<Real>& points, std::uint64_t* masks) : points_(points), masks_(masks) {
  if (areArrays(points)) {
    numDirect_ = wholeGroups<Real>(points.size);
  } else if (points.size > 0 && areRecords(points)) {
    layout_ = Layout::Records;
    numDirect_ = wholeGroups<Real>(points.size - 1);
  }
}

template <typename Real>
bool Blocks<Real>::next() {
  first_ += size_;
  if (first_ == points_.size) {
    return false;
  }
  if (first_ < numDirect_) {
    // Not larger, so that this block and the next one stay in the first-level cache.
    size_ = std::min({Block<Real>::capacity,
                      wholeGroups<Real>(std::max(bytesAtOnce / points_.stride, std::size_t{256})),
                      numDirect_ - first_});
    const std::size_t offset = first_ * points_.stride;
    block_.points = {moved(points_.x, offset), moved(points_.y, offset), moved(points_.z, offset),
                     points_.stride, size_};
    block_.layout = layout_;
    block_.masks = masks_ != nullptr ? masks_ + first_ : ownMasks_.data();
  } else {
    size_ = std::min(Block<Real>::capacity, points_.size - first_);
    takeCopy();
  }
  return true;
}

template <typename Real>
void Blocks<Real>::takeCopy() {
  const std::array<const void*, 3> from{points_.x, points_.y, points_.z};
  const std::size_t padded = wholeGroups<Real>(size_ + Block<Real>::groupSize - 1);
  for (std::size_t k = 0; k < from.size(); ++k) {
    for (std::size_t i = 0; i < size_; ++i) {
      copies_[k][i] = valueAt<Real>(from[k], (first_ + i) * points_.stride);
    }
    std::fill(copies_[k].begin() + static_cast<std::ptrdiff_t>(size_),
              copies_[k].begin() + static_cast<std::ptrdiff_t>(padded), Real{0});
  }
  block_.points = PointsView<Real>::separate(copies_[0].data(), copies_[1].data(), copies_[2].data(), padded);
  block_.layout = Layout::Arrays;
  block_.masks = ownMasks_.data();
}

template <typename Real>
void Blocks<Real>::finish() {
  if (masks_ != nullptr && block_.masks == ownMasks_.data()) {
    std::copy_n(block_.masks, size_, masks_ + first_);
  }
}

template class Blocks<float>;
template class Blocks<double>;

}  // namespace orvantis::filter::classify
