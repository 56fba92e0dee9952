#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <orvantis/Api.h>

namespace orvantis::filter::detection {
class ZoneDetector;
}

namespace orvantis::filter::classify {

/// The coordinates of `size` points as the caller holds them: three addresses and the distance in bytes from
/// one value to the next of the same coordinate. The addresses may be unaligned. The view neither copies nor
/// owns the values, so these must outlive it. Its operations throw nothing.
template <typename Real>
struct PointsView {
  const void* x = nullptr;
  const void* y = nullptr;
  const void* z = nullptr;
  std::size_t stride = sizeof(Real);
  std::size_t size = 0;

  /// Three separate arrays.
  static PointsView separate(const Real* x, const Real* y, const Real* z, std::size_t size) {
    return {x, y, z, sizeof(Real), size};
  }
  /// Records of `stride` bytes that begin with x, y and z.
  static PointsView interleaved(const void* points, std::size_t stride, std::size_t size) {
    if (size == 0) {
      return {points, points, points, stride, 0};  // an empty container may have no address to add to
    }
    const auto* bytes = static_cast<const unsigned char*>(points);
    return {bytes, bytes + sizeof(Real), bytes + 2 * sizeof(Real), stride, size};
  }
};

/// How many points of a frame each zone counts, and how many no zone counts.
struct ZoneCounts {
  std::array<std::uint64_t, 24>
      inside{};                ///< by bit of the mask: inside the field zone and outside every exclusion zone
  std::uint64_t excluded = 0;  ///< points inside at least one exclusion zone
  std::uint64_t noReturns = 0;  ///< points with a coordinate that is not finite
};

/// Which zones of a detector hold each point of a frame. An immutable snapshot of the detector: cheap to
/// copy, and safe to use from many threads at once. Copies and moves throw nothing. A classifier that was
/// moved from may only be assigned to or destroyed.
///
/// The verdict of each zone is the one of `Zone3dBase::within` for every input, also on borders and for
/// coordinates that are not finite. A zone that is missing, or has no shape, has a zero bit for every point.
///
/// The parts of the plan where zones lie are divided into about 131,000 square cells (of 0.28 m for a site of
/// 100 m x 100 m). The cells are made larger until the tables take at most 1 MiB, not counting 24 bytes for
/// each piece of a border. So a site of 1 km and zones of 1 cm cost time, not memory.
/// Three kinds of shapes are not indexed but asked for every point at their height: those that a host derived
/// from `Zone`, polygons of more than 4096 vertices, and shapes with a number that is not finite or beyond
/// 1e7.
class ORVANTIS_API PointClassifier {
 public:
  /// The bit of field zone `zone` of field `field`, and of exclusion zone number `k`. The arguments are not
  /// checked. Throws nothing.
  static constexpr int zoneBit(int field, int zone) { return 3 * field + zone; }
  static constexpr int exclusionBit(int k) { return 24 + k; }

  /// Copies the shapes: later edits of the detector's zones change nothing here.
  /// @throws std::invalid_argument for a detector with more than 32 exclusion zones, and for a shape whose
  ///   `makeCopy` gives null; std::bad_alloc; what a host's own shape throws from `makeCopy`
  explicit PointClassifier(const detection::ZoneDetector& detector);

  // These operations allocate nothing, and throw nothing but what a host's own shape throws. Several threads
  // may classify parts of one frame at the same time.

  /// One mask for each point; `masks` holds `points.size` values.
  void classify(const PointsView<float>& points, std::uint64_t* masks) const;
  void classify(const PointsView<double>& points, std::uint64_t* masks) const;

  /// The counts of the points; writes the masks too unless `masks` is null. A point with a coordinate that is
  /// not finite counts as a "no return", and nowhere else, even where its mask has a bit.
  ZoneCounts count(const PointsView<float>& points, std::uint64_t* masks = nullptr) const;
  ZoneCounts count(const PointsView<double>& points, std::uint64_t* masks = nullptr) const;

 private:
  class Index;
  std::shared_ptr<const Index> index_;
};

}  // namespace orvantis::filter::classify
