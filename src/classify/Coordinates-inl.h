// As many coordinates as a vector has floats. Read once for each kind of processor: the guard toggles.
#if defined(ORVANTIS_CLASSIFY_COORDINATES) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVANTIS_CLASSIFY_COORDINATES
#undef ORVANTIS_CLASSIFY_COORDINATES
#else
#define ORVANTIS_CLASSIFY_COORDINATES
#endif

#include <cstddef>
#include <type_traits>

#include <hwy/highway.h>

#include "classify/Vectors-inl.h"

#if ORVANTIS_HAS_VECTORS
HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

// The indices of the masks from the starts on: those of the masks below are twice the buckets.
HWY_INLINE Ints upperHalf(Ints bucket, Lanes isUpper) {
  return bucket + bucket - hn::VecFromMask(ints, hn::RebindMask(ints, isUpper));
}

struct FloatCoordinates {
  using Real = float;

  HWY_INLINE explicit FloatCoordinates(const float* from) : values(hn::LoadU(floats, from)) {}

  HWY_INLINE static Floats same(double value) { return hn::Set(floats, static_cast<float>(value)); }
  HWY_INLINE Floats minus(Floats origin) const { return values - origin; }
  HWY_INLINE Floats asFloats() const { return values; }
  HWY_INLINE Lanes isFinite() const { return hn::IsFinite(values); }
  HWY_INLINE std::size_t numFinite(const FloatCoordinates& y, const FloatCoordinates& z) const {
    return hn::CountTrue(floats, hn::And(isFinite(), hn::And(y.isFinite(), z.isFinite())));
  }
  // For heights: which mask of its bucket each has.
  HWY_INLINE Ints half(Ints bucket, Floats starts, const double*) const {
    return upperHalf(bucket, values >= starts);
  }

  Floats values;
};

#if HWY_HAVE_FLOAT64

constexpr hn::Repartition<double, decltype(floats)> doubles;
constexpr hn::Half<decltype(floats)> halfFloats;
using Doubles = hn::Vec<decltype(doubles)>;

struct DoubleCoordinates {
  using Real = double;

  HWY_INLINE explicit DoubleCoordinates(const double* from)
      : low(hn::LoadU(doubles, from)), high(hn::LoadU(doubles, from + hn::Lanes(doubles))) {}

  HWY_INLINE static Doubles same(double value) { return hn::Set(doubles, value); }
  HWY_INLINE Floats minus(Doubles origin) const { return rounded(low - origin, high - origin); }
  HWY_INLINE Floats asFloats() const { return rounded(low, high); }
  HWY_INLINE std::size_t numFinite(const DoubleCoordinates& y, const DoubleCoordinates& z) const {
    return hn::CountTrue(doubles,
                         hn::And(hn::IsFinite(low), hn::And(hn::IsFinite(y.low), hn::IsFinite(z.low)))) +
           hn::CountTrue(doubles,
                         hn::And(hn::IsFinite(high), hn::And(hn::IsFinite(y.high), hn::IsFinite(z.high))));
  }
  HWY_INLINE Ints half(Ints bucket, Floats, const double* starts) const {
    const auto isUpperLow = low >= hn::GatherIndex(doubles, starts, lowLongs(bucket));
    const auto isUpperHigh = high >= hn::GatherIndex(doubles, starts, highLongs(bucket));
    const Doubles one = hn::Set(doubles, 1.0);
    const Floats upper = rounded(hn::IfThenElseZero(isUpperLow, one), hn::IfThenElseZero(isUpperHigh, one));
    return upperHalf(bucket, upper > hn::Zero(floats));
  }

  HWY_INLINE static Floats rounded(Doubles low, Doubles high) {
    return hn::Combine(floats, hn::DemoteTo(halfFloats, high), hn::DemoteTo(halfFloats, low));
  }

  Doubles low;
  Doubles high;
};

template <typename Real>
using Coordinates = std::conditional_t<std::is_same_v<Real, float>, FloatCoordinates, DoubleCoordinates>;

#else

template <typename Real>
using Coordinates = FloatCoordinates;

#endif

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();
#endif

#endif
