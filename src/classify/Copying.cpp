#include "classify/Copying.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "classify/Targets.h"

// Compiles this file once for each kind of processor that Highway knows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "classify/Copying.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "classify/Fetch.h"
#include "classify/Vectors-inl.h"

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

// How far before their copying records are fetched, in bytes.
constexpr std::size_t recordsAhead = 1024;

#if ORVANTIS_HAS_VECTORS

// Records of three or four numbers that stand without gaps. @return how many of them, but never the last: its
// fourth number may be no one's to read
template <typename Real>
std::size_t copyRecords(const Real* records, std::size_t numbers, std::size_t size, const Columns<Real>& to) {
  constexpr hn::ScalableTag<Real> reals;
  const std::size_t lanes = hn::Lanes(reals);
  std::size_t done = 0;
  for (; size - done > lanes; done += lanes) {
    fetch(records + numbers * done, recordsAhead, numbers * lanes * sizeof(Real));
    hn::Vec<decltype(reals)> xs, ys, zs, rest;
    if (numbers == 3) {
      hn::LoadInterleaved3(reals, records + 3 * done, xs, ys, zs);
    } else {
      hn::LoadInterleaved4(reals, records + 4 * done, xs, ys, zs, rest);
    }
    hn::StoreU(xs, reals, to.x + done);
    hn::StoreU(ys, reals, to.y + done);
    hn::StoreU(zs, reals, to.z + done);
  }
  return done;
}

#endif

template <typename Real>
void copyAll(const PointsView<Real>& points, const Columns<Real>& to) {
  const auto* xs = static_cast<const unsigned char*>(points.x);
  const auto* ys = static_cast<const unsigned char*>(points.y);
  const auto* zs = static_cast<const unsigned char*>(points.z);
  std::size_t i = 0;
#if ORVANTIS_HAS_VECTORS
  if constexpr (hasVectorsOf<Real>) {
    const std::size_t numbers = points.stride / sizeof(Real);
    const bool areTogether = ys == xs + sizeof(Real) && zs == ys + sizeof(Real);
    const bool isAligned = reinterpret_cast<std::uintptr_t>(xs) % alignof(Real) == 0;
    if (areTogether && isAligned && points.stride % sizeof(Real) == 0 && (numbers == 3 || numbers == 4)) {
      i = copyRecords(reinterpret_cast<const Real*>(xs), numbers, points.size, to);
    }
  }
#endif
  for (; i < points.size; ++i) {
    fetch(xs + i * points.stride, recordsAhead, sizeof(Real));
    std::memcpy(to.x + i, xs + i * points.stride, sizeof(Real));
    std::memcpy(to.y + i, ys + i * points.stride, sizeof(Real));
    std::memcpy(to.z + i, zs + i * points.stride, sizeof(Real));
  }
}

void copyFloats(const PointsView<float>& points, const Columns<float>& to) {
  copyAll(points, to);
}

void copyDoubles(const PointsView<double>& points, const Columns<double>& to) {
  copyAll(points, to);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvantis::filter::classify {

HWY_EXPORT(copyFloats);
HWY_EXPORT(copyDoubles);

void copyColumns(const PointsView<float>& points, const Columns<float>& to) {
  HWY_DYNAMIC_DISPATCH(copyFloats)(points, to);
}

void copyColumns(const PointsView<double>& points, const Columns<double>& to) {
  HWY_DYNAMIC_DISPATCH(copyDoubles)(points, to);
}

}  // namespace orvantis::filter::classify
#endif
