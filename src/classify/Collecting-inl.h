// Lists the points whose masks have a flag. Read once for each kind of processor: the guard toggles.
#if defined(ORVANTIS_CLASSIFY_COLLECTING) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVANTIS_CLASSIFY_COLLECTING
#undef ORVANTIS_CLASSIFY_COLLECTING
#else
#define ORVANTIS_CLASSIFY_COLLECTING
#endif

#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "classify/Flags.h"
#include "classify/Pending.h"
#include "classify/Places.h"
#include "classify/Vectors-inl.h"

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

#if ORVANTIS_HAS_VECTORS

// Appends the points of a group to the lists, without a branch, which a processor could not predict.
HWY_INLINE void collectGroup(const std::uint64_t* from, std::size_t first, std::uint32_t*& cells,
                             std::uint32_t*& heights) {
  const Words isOpenCell = hn::Set(words, static_cast<std::uint32_t>(openCell >> 32U));
  const Words isOpenHeight = hn::Set(words, static_cast<std::uint32_t>(openHeight >> 32U));
  for (std::size_t i = 0; i < Block<float>::groupSize; i += hn::Lanes(words)) {
    const Masks low = hn::LoadU(masks, from + first + i);
    const Masks high = hn::LoadU(masks, from + first + i + hn::Lanes(masks));
    const Words flags = hn::ConcatOdd(words, hn::BitCast(words, high), hn::BitCast(words, low));
    const Words points = hn::Iota(words, 0) + hn::Set(words, static_cast<std::uint32_t>(first + i));
    append(cells, points, hn::TestBit(flags, isOpenCell));
    append(heights, points, hn::TestBit(flags, isOpenHeight));
  }
}

#else

HWY_INLINE void collectGroup(const std::uint64_t* from, std::size_t first, std::uint32_t*& cells,
                             std::uint32_t*& heights) {
  for (std::size_t i = first; i < first + Block<float>::groupSize; ++i) {
    // Always written; the list grows only when the point belongs to it.
    *cells = static_cast<std::uint32_t>(i);
    cells += (from[i] & openCell) != 0 ? 1 : 0;
    *heights = static_cast<std::uint32_t>(i);
    heights += (from[i] & openHeight) != 0 ? 1 : 0;
  }
}

#endif

inline void collectPending(const std::uint64_t* from, const Places& places, Pending& pending) {
  std::uint32_t* cells = pending.cell.points.data();
  std::uint32_t* heights = pending.height.points.data();
  for (std::size_t k = 0; k < places.numGroups; ++k) {
    collectGroup(from, places.groups[k], cells, heights);
  }
  pending.cell.size = static_cast<std::size_t>(cells - pending.cell.points.data());
  pending.height.size = static_cast<std::size_t>(heights - pending.height.points.data());
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#endif
