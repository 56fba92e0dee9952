#include "PointTiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <variant>

namespace orvantis::engine {
namespace {

using filter::classify::PointsView;

// Fewer make the tiles of a small shape dearer to walk than to count, more count too many beside it.
constexpr std::size_t pointsOfATile = 512;

template <typename Real>
struct Spot {
  std::array<Real, 3> at;
  float value;
};

template <typename Real>
Real coordinate(const void* first, std::size_t stride, std::size_t i) {
  Real value{};  // copied, since nothing need be aligned
  std::memcpy(&value, static_cast<const unsigned char*>(first) + i * stride, sizeof(Real));
  return value;
}

template <typename Real>
std::vector<Spot<Real>> finiteOf(const PointsView<Real>& points, std::span<const float> values) {
  std::vector<Spot<Real>> spots;
  spots.reserve(points.size);
  for (std::size_t i = 0; i < points.size; ++i) {
    const Real x = coordinate<Real>(points.x, points.stride, i);
    const Real y = coordinate<Real>(points.y, points.stride, i);
    const Real z = coordinate<Real>(points.z, points.stride, i);
    if (std::isfinite(x) && std::isfinite(y) && std::isfinite(z)) {
      spots.push_back({{x, y, z}, values.empty() ? 0.0F : values[i]});
    }
  }
  return spots;
}

template <typename Real>
Box boxOf(const Spot<Real>* first, const Spot<Real>* last) {
  Box box;
  for (const Spot<Real>* spot = first; spot != last; ++spot) {
    const double x = spot->at[0];
    const double y = spot->at[1];
    const double z = spot->at[2];
    box = spot == first ? Box{x, x, y, y, z, z}
                        : Box{std::min(box.xMin, x), std::max(box.xMax, x), std::min(box.yMin, y),
                              std::max(box.yMax, y), std::min(box.zMin, z), std::max(box.zMax, z)};
  }
  return box;
}

// Halves along the longer side on the plan until a half is a tile.
template <typename Real>
void split(Spot<Real>* all, std::size_t begin, std::size_t end, std::vector<PointTiles::Tile>& tiles) {
  const Box box = boxOf(all + begin, all + end);
  if (end - begin <= pointsOfATile) {
    tiles.push_back({begin, end, box});
    return;
  }
  const std::size_t axis = box.xMax - box.xMin >= box.yMax - box.yMin ? 0 : 1;
  const std::size_t middle = begin + (end - begin) / 2;
  std::nth_element(all + begin, all + middle, all + end,
                   [axis](const auto& a, const auto& b) { return a.at[axis] < b.at[axis]; });
  split(all, begin, middle, tiles);
  split(all, middle, end, tiles);
}

}  // namespace

PointTiles::PointTiles(const Points& points, std::span<const float> values) {
  if (const auto* floats = std::get_if<PointsView<float>>(&points)) {
    build(*floats, values, floats_);
  } else {
    isFloat_ = false;
    build(*std::get_if<PointsView<double>>(&points), values, doubles_);
  }
}

template <typename Real>
void PointTiles::build(const PointsView<Real>& points, std::span<const float> values,
                       std::vector<Real>& room) {
  std::vector<Spot<Real>> spots = finiteOf(points, values);
  noReturns_ = points.size - spots.size();
  if (spots.empty()) {
    return;
  }
  split(spots.data(), 0, spots.size(), tiles_);
  box_ = boxOf(spots.data(), spots.data() + spots.size());
  room.resize(3 * spots.size());
  for (std::size_t axis = 0; axis < 3; ++axis) {
    for (std::size_t i = 0; i < spots.size(); ++i) {
      room[axis * spots.size() + i] = spots[i].at[axis];
    }
  }
  if (!values.empty()) {
    values_.reserve(spots.size());
    for (const Spot<Real>& spot : spots) {
      values_.push_back(spot.value);
    }
  }
}

Points PointTiles::view(std::size_t begin, std::size_t end) const {
  const auto viewOf = [&](const auto& room) -> Points {
    using Real = typename std::decay_t<decltype(room)>::value_type;
    const Real* x = room.data() + begin;
    return PointsView<Real>::separate(x, x + size(), x + 2 * size(), end - begin);
  };
  return isFloat_ ? viewOf(floats_) : viewOf(doubles_);
}

}  // namespace orvantis::engine
