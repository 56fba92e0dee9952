#include "classify/Lookup.h"

#include <cstddef>

#include "classify/Targets.h"

// Compiles this file once for each kind of processor that Highway knows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "classify/Lookup.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "classify/LookupTables.h"
#include "classify/PointLookup-inl.h"
#include "classify/VectorLookup-inl.h"
#include "classify/Vectors-inl.h"

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

template <Fetching fetching, typename Real>
std::size_t lookUpAll(const Grid& grid, const Heights& heights, const Block<Real>& block, Pending& pending) {
  const LookupTables tables(grid, heights);
  Ends ends(pending);
  std::size_t noReturns = 0;
  std::size_t first = 0;
#if ORVANTIS_HAS_VECTORS
  if constexpr (hasVectorsOf<Real>) {
    VectorLookup<Coordinates<Real>, fetching> lookUpVector(tables, block.masks);
    const std::size_t lanes = hn::Lanes(floats);
    for (; first + lanes <= block.size; first += lanes) {
      lookUpVector(block.x + first, block.y + first, block.z + first, first, ends);
    }
    noReturns += lookUpVector.numNoReturns();
  }
#endif
  PointLookup<Real> lookUpPoint(tables, block.masks);
  for (; first < block.size; ++first) {
    lookUpPoint(block.x[first], block.y[first], block.z[first], first, ends);
  }
  noReturns += lookUpPoint.numNoReturns();
  ends.finish(pending);
  return noReturns;
}

template <typename Real>
std::size_t lookUpBlock(const Grid& grid, const Heights& heights, const Block<Real>& block, Fetching fetching,
                        Pending& pending) {
  return fetching == Fetching::All ? lookUpAll<Fetching::All>(grid, heights, block, pending)
                                   : lookUpAll<Fetching::Heights>(grid, heights, block, pending);
}

std::size_t lookUpFloats(const Grid& grid, const Heights& heights, const Block<float>& block,
                         Fetching fetching, Pending& pending) {
  return lookUpBlock(grid, heights, block, fetching, pending);
}

std::size_t lookUpDoubles(const Grid& grid, const Heights& heights, const Block<double>& block,
                          Fetching fetching, Pending& pending) {
  return lookUpBlock(grid, heights, block, fetching, pending);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvantis::filter::classify {

HWY_EXPORT(lookUpFloats);
HWY_EXPORT(lookUpDoubles);

std::size_t lookUp(const Grid& grid, const Heights& heights, const Block<float>& block, Fetching fetching,
                   Pending& pending) {
  return HWY_DYNAMIC_DISPATCH(lookUpFloats)(grid, heights, block, fetching, pending);
}

std::size_t lookUp(const Grid& grid, const Heights& heights, const Block<double>& block, Fetching fetching,
                   Pending& pending) {
  return HWY_DYNAMIC_DISPATCH(lookUpDoubles)(grid, heights, block, fetching, pending);
}

}  // namespace orvantis::filter::classify
#endif
