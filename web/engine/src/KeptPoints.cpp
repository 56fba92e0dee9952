#include "KeptPoints.h"

#include <cstring>
#include <type_traits>
#include <variant>

namespace orvantis::engine {
namespace {

using filter::classify::Points;
using filter::classify::PointsView;

template <typename Real>
void copy(const PointsView<Real>& points, std::vector<Real>& room) {
  room.resize(3 * points.size);
  Real* to = room.data();
  for (const void* const first : {points.x, points.y, points.z}) {
    const auto* from = static_cast<const unsigned char*>(first);
    for (std::size_t i = 0; i < points.size; ++i) {
      std::memcpy(to++, from + i * points.stride, sizeof(Real));
    }
  }
}

}  // namespace

KeptPoints::KeptPoints(const Points& points) {
  if (const auto* floats = std::get_if<PointsView<float>>(&points)) {
    copy(*floats, floats_);
  } else {
    copy(*std::get_if<PointsView<double>>(&points), doubles_);
  }
}

Points KeptPoints::view() const {
  const auto viewOf = [](const auto& room) -> Points {
    using Real = typename std::decay_t<decltype(room)>::value_type;
    const std::size_t size = room.size() / 3;
    return PointsView<Real>::separate(room.data(), room.data() + size, room.data() + 2 * size, size);
  };
  return doubles_.empty() ? viewOf(floats_) : viewOf(doubles_);
}

}  // namespace orvantis::engine
