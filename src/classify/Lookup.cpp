#include "classify/Lookup.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "classify/Targets.h"

// Compiles this file once for each kind of processor that Highway knows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "classify/Lookup.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "classify/Collecting-inl.h"
#include "classify/Fetch.h"
#include "classify/GroupLookup.h"
#include "classify/LookupTables.h"
#include "classify/Placing-inl.h"
#include "classify/PlainPlacing-inl.h"
#include "classify/Readers-inl.h"
#include "classify/Vectors-inl.h"

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

template <Purpose purpose, typename Real>
void placeAll(const LookupTables& tables, const Block<Real>& block, Pending& pending, Places& places) {
#if ORVANTIS_HAS_VECTORS
  if constexpr (std::is_same_v<Real, float>) {
    if (block.layout == Layout::Arrays) {
      Placing<purpose, FloatArrays, float>(tables, block).place(pending, places);
    } else {
      Placing<purpose, FloatRecords, float>(tables, block).place(pending, places);
    }
    return;
  }
#if HWY_HAVE_FLOAT64
  if constexpr (std::is_same_v<Real, double>) {
    if (block.layout == Layout::Arrays) {
      Placing<purpose, DoubleArrays, double>(tables, block).place(pending, places);
    } else {
      Placing<purpose, DoubleRecords, double>(tables, block).place(pending, places);
    }
    return;
  }
#endif
#endif
  PlainPlacing<purpose, Real>(tables, block).place(pending, places);
}

// Prefetches what the next block will read and write, because the processor would begin only after the tables
// have been read.
template <typename Real>
HWY_INLINE void fetchNext(const Block<Real>& block, std::size_t first) {
  constexpr std::size_t lineSize = 64;
  const std::size_t stride = block.points.stride;
  const std::size_t ahead = (block.points.size + first) * stride;
  if (block.layout == Layout::Arrays) {
    fetch(block.points.x, ahead, Block<Real>::groupSize * sizeof(Real));
    fetch(block.points.y, ahead, Block<Real>::groupSize * sizeof(Real));
    fetch(block.points.z, ahead, Block<Real>::groupSize * sizeof(Real));
  } else if (stride <= lineSize) {
    fetch(block.points.x, ahead, Block<Real>::groupSize * stride);
  } else {
    for (std::size_t i = 0; i < Block<Real>::groupSize; ++i) {
      fetch(block.points.x, ahead + i * stride, 1);
    }
  }
  fetch(block.masks, (block.points.size + first) * sizeof(std::uint64_t),
        Block<Real>::groupSize * sizeof(std::uint64_t));
}

template <typename Real>
void lookUpGroups(const LookupTables& tables, const Block<Real>& block, const Pending& pending,
                  const Places& places) {
  const GroupLookup lookUpGroup(tables);
  for (std::size_t k = 0; k < places.numGroups; ++k) {
    const std::size_t first = places.groups[k];
    fetchNext(block, first);
    lookUpGroup(pending.cells.data() + first, pending.buckets.data() + first, block.masks + first,
                std::make_index_sequence<Block<Real>::groupSize / 2>());
  }
}

template <typename Real>
NoReturns lookUpBlock(const Grid& grid, const Heights& heights, const Block<Real>& block, Purpose purpose,
                      Pending& pending) {
  const LookupTables tables(grid, heights);
  Places places;
  if (purpose == Purpose::Counts) {
    placeAll<Purpose::Counts>(tables, block, pending, places);
  } else {
    placeAll<Purpose::Masks>(tables, block, pending, places);
  }
  lookUpGroups(tables, block, pending, places);
  collectPending(block.masks, places, pending);
  return places.noReturns;
}

NoReturns lookUpFloats(const Grid& grid, const Heights& heights, const Block<float>& block, Purpose purpose,
                       Pending& pending) {
  return lookUpBlock(grid, heights, block, purpose, pending);
}

NoReturns lookUpDoubles(const Grid& grid, const Heights& heights, const Block<double>& block, Purpose purpose,
                        Pending& pending) {
  return lookUpBlock(grid, heights, block, purpose, pending);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvantis::filter::classify {

HWY_EXPORT(lookUpFloats);
HWY_EXPORT(lookUpDoubles);

NoReturns lookUp(const Grid& grid, const Heights& heights, const Block<float>& block, Purpose purpose,
                 Pending& pending) {
  return HWY_DYNAMIC_DISPATCH(lookUpFloats)(grid, heights, block, purpose, pending);
}

NoReturns lookUp(const Grid& grid, const Heights& heights, const Block<double>& block, Purpose purpose,
                 Pending& pending) {
  return HWY_DYNAMIC_DISPATCH(lookUpDoubles)(grid, heights, block, purpose, pending);
}

}  // namespace orvantis::filter::classify
#endif
