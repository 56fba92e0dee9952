#include "recording/PointBuffer.h"

#include <array>
#include <cstdint>

#include "recording/Bytes.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointsView;

// The values of one coordinate in memory.
struct Values {
  const std::byte* first;
  std::size_t stride;
  NumberType type;
};
using Axes = std::array<Values, 3>;

#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
constexpr bool isThisMachineBigEndian = true;
#else
constexpr bool isThisMachineBigEndian = false;
#endif

bool areAll(const Axes& axes, NumberType type) {
  return axes[0].type == type && axes[1].type == type && axes[2].type == type;
}

bool fitsFloat(NumberType type) {
  return type == NumberType::F4 || sizeOf(type) <= 2;
}

template <typename Real>
Points viewInPlace(const Axes& axes, std::size_t count) {
  return PointsView<Real>{axes[0].first, axes[1].first, axes[2].first, axes[0].stride, count};
}

template <bool isBigEndian, typename Number, typename Real>
void convertFrom(const Values& values, std::size_t count, Real* out) {
  const std::byte* at = values.first;
  for (std::size_t i = 0; i < count; ++i) {
    out[i] = static_cast<Real>(load<isBigEndian, Number>(at));
    at += values.stride;
  }
}

template <bool isBigEndian, typename Real>
void convert(const Values& values, std::size_t count, Real* out) {
  switch (values.type) {
    case NumberType::I1:
      return convertFrom<isBigEndian, std::int8_t>(values, count, out);
    case NumberType::U1:
      return convertFrom<isBigEndian, std::uint8_t>(values, count, out);
    case NumberType::I2:
      return convertFrom<isBigEndian, std::int16_t>(values, count, out);
    case NumberType::U2:
      return convertFrom<isBigEndian, std::uint16_t>(values, count, out);
    case NumberType::I4:
      return convertFrom<isBigEndian, std::int32_t>(values, count, out);
    case NumberType::U4:
      return convertFrom<isBigEndian, std::uint32_t>(values, count, out);
    case NumberType::I8:
      return convertFrom<isBigEndian, std::int64_t>(values, count, out);
    case NumberType::U8:
      return convertFrom<isBigEndian, std::uint64_t>(values, count, out);
    case NumberType::F4:
      return convertFrom<isBigEndian, float>(values, count, out);
    case NumberType::F8:
      return convertFrom<isBigEndian, double>(values, count, out);
  }
}

template <typename Real>
Points converted(const Axes& axes, std::size_t count, bool isBigEndian, std::vector<Real>& buffer) {
  buffer.resize(3 * count);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    Real* const out = buffer.data() + axis * count;
    if (isBigEndian) {
      convert<true>(axes[axis], count, out);
    } else {
      convert<false>(axes[axis], count, out);
    }
  }
  const Real* const x = buffer.data();
  return PointsView<Real>::separate(x, x + count, x + 2 * count, count);
}

Points viewOf(const Axes& axes, std::size_t count, bool isBigEndian, std::vector<float>& floats,
              std::vector<double>& doubles) {
  if (isBigEndian == isThisMachineBigEndian) {
    if (areAll(axes, NumberType::F4)) {
      return viewInPlace<float>(axes, count);
    }
    if (areAll(axes, NumberType::F8)) {
      return viewInPlace<double>(axes, count);
    }
  }
  const bool areFloats = fitsFloat(axes[0].type) && fitsFloat(axes[1].type) && fitsFloat(axes[2].type);
  return areFloats ? converted(axes, count, isBigEndian, floats)
                   : converted(axes, count, isBigEndian, doubles);
}

}  // namespace

Points PointBuffer::view(const std::byte* records, std::size_t count, const PointLayout& layout) {
  if (count == 0) {
    return PointsView<float>();  // an empty container may have no address to add to
  }
  const auto values = [&](const Coordinate& coordinate) {
    return Values{records + coordinate.offset, layout.stride, coordinate.type};
  };
  return viewOf({values(layout.x), values(layout.y), values(layout.z)}, count, layout.isBigEndian, floats_,
                doubles_);
}

Points PointBuffer::viewColumns(const std::byte* columns, std::size_t count, const PointLayout& layout) {
  if (count == 0) {
    return PointsView<float>();
  }
  const auto values = [&](const Coordinate& coordinate) {
    return Values{columns + coordinate.offset, sizeOf(coordinate.type), coordinate.type};
  };
  return viewOf({values(layout.x), values(layout.y), values(layout.z)}, count, layout.isBigEndian, floats_,
                doubles_);
}

}  // namespace orvantis::toolkit
