// The coordinates of as many points as a vector has floats, as the placing needs them: x and y as their
// distances from the lattice's origin, z itself, all rounded to float. Read once for each kind of processor:
// the guard toggles.
#if defined(ORVANTIS_CLASSIFY_READERS) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVANTIS_CLASSIFY_READERS
#undef ORVANTIS_CLASSIFY_READERS
#else
#define ORVANTIS_CLASSIFY_READERS
#endif

#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "classify/Block.h"
#include "classify/LookupTables.h"
#include "classify/Vectors-inl.h"

#if ORVANTIS_HAS_VECTORS
HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

class FloatArrays {
 public:
  FloatArrays(const PointsView<float>& points, const LookupTables& tables)
      : x_(static_cast<const float*>(points.x)),
        y_(static_cast<const float*>(points.y)),
        z_(static_cast<const float*>(points.z)),
        originX_(hn::Set(floats, tables.columns.origin)),
        originY_(hn::Set(floats, tables.rows.origin)) {}

  struct Points {
    HWY_INLINE Floats x() const { return hn::LoadU(floats, arrays.x_ + first) - arrays.originX_; }
    HWY_INLINE Floats y() const { return hn::LoadU(floats, arrays.y_ + first) - arrays.originY_; }
    HWY_INLINE Floats z() const { return hn::LoadU(floats, arrays.z_ + first); }

    const FloatArrays& arrays;
    std::size_t first;
  };
  HWY_INLINE Points at(std::size_t first) const { return {*this, first}; }

 private:
  const float* x_;
  const float* y_;
  const float* z_;
  Floats originX_;
  Floats originY_;
};

// Four floats for each point of a vector: x, y, z and one more that is ignored. The first quarter has points
// 0 to 3.
struct Quads {
  // `load` gives the four floats of the point with that number.
  template <typename Load>
  HWY_INLINE explicit Quads(const Load& load)
      : first(everyFourth(floats, load, 0)),
        second(everyFourth(floats, load, 1)),
        third(everyFourth(floats, load, 2)),
        fourth(everyFourth(floats, load, 3)) {}

  HWY_INLINE Floats x() const {
    return pairs(hn::InterleaveLower(floats, first, second), hn::InterleaveLower(floats, third, fourth));
  }
  HWY_INLINE Floats y() const {
    const Words low = hn::BitCast(words, hn::InterleaveLower(floats, first, second));
    const Words high = hn::BitCast(words, hn::InterleaveLower(floats, third, fourth));
    return hn::BitCast(floats, hn::InterleaveUpper(masks, hn::BitCast(masks, low), hn::BitCast(masks, high)));
  }
  HWY_INLINE Floats z() const {
    return pairs(hn::InterleaveUpper(floats, first, second), hn::InterleaveUpper(floats, third, fourth));
  }

  // Joins the lower halves of each block of 16 bytes.
  HWY_INLINE static Floats pairs(Floats low, Floats high) {
    return hn::BitCast(floats, hn::InterleaveLower(masks, hn::BitCast(masks, low), hn::BitCast(masks, high)));
  }

  // Points `number`, `number` + 4, ... of the vector.
  template <typename D, typename Load>
  HWY_INLINE static hn::Vec<D> everyFourth(D d, const Load& load, std::size_t number) {
    if constexpr (hn::MaxLanes(D()) == 4) {
      return load(number);
    } else {
      constexpr hn::Half<D> half;
      return hn::Combine(d, everyFourth(half, load, number + hn::MaxLanes(D()) / 2),
                         everyFourth(half, load, number));
    }
  }

  Floats first;
  Floats second;
  Floats third;
  Floats fourth;
};

class FloatRecords {
 public:
  FloatRecords(const PointsView<float>& points, const LookupTables& tables)
      : records_(static_cast<const std::uint8_t*>(points.x)),
        stride_(points.stride),
        originX_(hn::Set(floats, tables.columns.origin)),
        originY_(hn::Set(floats, tables.rows.origin)) {}

  struct Load {
    HWY_INLINE hn::Vec<hn::FixedTag<float, 4>> operator()(std::size_t number) const {
      return hn::BitCast(hn::FixedTag<float, 4>(),
                         hn::LoadU(hn::FixedTag<std::uint8_t, 16>(), records + number * stride));
    }
    const std::uint8_t* records;
    std::size_t stride;
  };
  struct Points {
    HWY_INLINE Floats x() const { return quads.x() - records.originX_; }
    HWY_INLINE Floats y() const { return quads.y() - records.originY_; }
    HWY_INLINE Floats z() const { return quads.z(); }

    const FloatRecords& records;
    Quads quads;
  };
  HWY_INLINE Points at(std::size_t first) const {
    return {*this, Quads(Load{records_ + first * stride_, stride_})};
  }

 private:
  const std::uint8_t* records_;
  std::size_t stride_;
  Floats originX_;
  Floats originY_;
};

#if HWY_HAVE_FLOAT64

constexpr hn::Repartition<double, decltype(floats)> doubles;
using Doubles = hn::Vec<decltype(doubles)>;

class DoubleArrays {
 public:
  DoubleArrays(const PointsView<double>& points, const LookupTables& tables)
      : x_(static_cast<const double*>(points.x)),
        y_(static_cast<const double*>(points.y)),
        z_(static_cast<const double*>(points.z)),
        originX_(hn::Set(doubles, static_cast<double>(tables.columns.origin))),
        originY_(hn::Set(doubles, static_cast<double>(tables.rows.origin))) {}

  struct Points {
    HWY_INLINE Floats x() const { return rounded(arrays.x_ + first, arrays.originX_); }
    HWY_INLINE Floats y() const { return rounded(arrays.y_ + first, arrays.originY_); }
    HWY_INLINE Floats z() const { return rounded(arrays.z_ + first, hn::Zero(doubles)); }

    const DoubleArrays& arrays;
    std::size_t first;
  };
  HWY_INLINE Points at(std::size_t first) const { return {*this, first}; }

 private:
  HWY_INLINE static Floats rounded(const double* from, Doubles origin) {
    constexpr hn::Half<decltype(floats)> halfFloats;
    const Doubles low = hn::LoadU(doubles, from) - origin;
    const Doubles high = hn::LoadU(doubles, from + hn::Lanes(doubles)) - origin;
    return hn::Combine(floats, hn::DemoteTo(halfFloats, high), hn::DemoteTo(halfFloats, low));
  }

  const double* x_;
  const double* y_;
  const double* z_;
  Doubles originX_;
  Doubles originY_;
};

class DoubleRecords {
 public:
  DoubleRecords(const PointsView<double>& points, const LookupTables& tables)
      : records_(static_cast<const std::uint8_t*>(points.x)),
        stride_(points.stride),
        origin_{static_cast<double>(tables.columns.origin), static_cast<double>(tables.rows.origin), 0.0,
                0.0} {}

  struct Load {
#if HWY_MAX_BYTES >= 32
    HWY_INLINE hn::Vec<hn::FixedTag<float, 4>> operator()(std::size_t number) const {
      constexpr hn::FixedTag<double, 4> four;
      const auto record = hn::LoadU(hn::FixedTag<std::uint8_t, 32>(), records + number * stride);
      return hn::DemoteTo(hn::FixedTag<float, 4>(), hn::BitCast(four, record) - hn::Load(four, origin));
    }
#else
    HWY_INLINE hn::Vec<hn::FixedTag<float, 4>> operator()(std::size_t number) const {
      const std::uint8_t* record = records + number * stride;
      return hn::Combine(hn::FixedTag<float, 4>(), two(record + 16, origin + 2), two(record, origin));
    }
    HWY_INLINE static hn::Vec<hn::FixedTag<float, 2>> two(const std::uint8_t* from, const double* origin) {
      constexpr hn::FixedTag<double, 2> both;
      const auto values = hn::BitCast(both, hn::LoadU(hn::FixedTag<std::uint8_t, 16>(), from));
      return hn::DemoteTo(hn::FixedTag<float, 2>(), values - hn::Load(both, origin));
    }
#endif
    const std::uint8_t* records;
    std::size_t stride;
    const double* origin;
  };
  HWY_INLINE Quads at(std::size_t first) const {
    return Quads(Load{records_ + first * stride_, stride_, origin_});
  }

 private:
  const std::uint8_t* records_;
  std::size_t stride_;
  alignas(32) double origin_[4];
};

#endif

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();
#endif

#endif
