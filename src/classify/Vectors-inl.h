// Types of vectors, and operations that Highway lacks. Read once for each kind of processor: the guard
// toggles.
#if defined(ORVANTIS_CLASSIFY_VECTORS) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVANTIS_CLASSIFY_VECTORS
#undef ORVANTIS_CLASSIFY_VECTORS
#else
#define ORVANTIS_CLASSIFY_VECTORS
#endif

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

// These two kinds of processors take one number at a time.
#undef ORVANTIS_HAS_VECTORS
#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
#define ORVANTIS_HAS_VECTORS 0
#else
#define ORVANTIS_HAS_VECTORS 1
#endif

#if ORVANTIS_HAS_VECTORS
HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// A vector of floats, and vectors of the same size or with as many lanes.
constexpr hn::ScalableTag<float> floats;
constexpr hn::RebindToSigned<decltype(floats)> ints;
constexpr hn::RebindToUnsigned<decltype(floats)> words;
constexpr hn::ScalableTag<std::uint64_t> masks;

using Floats = hn::Vec<decltype(floats)>;
using Ints = hn::Vec<decltype(ints)>;
using Words = hn::Vec<decltype(words)>;
using Masks = hn::Vec<decltype(masks)>;
using Lanes = hn::Mask<decltype(floats)>;

// Some processors have vectors of floats but not of doubles.
template <typename Real>
constexpr bool hasVectorsOf = sizeof(Real) == sizeof(float) || HWY_HAVE_FLOAT64;

#if !(HWY_TARGET <= HWY_AVX3 && HWY_ARCH_X86) && HWY_TARGET != HWY_WASM
// The index is a number whose bits are the chosen lanes. The entry has these lanes in order; the rest is
// arbitrary.
using CompressOrders = std::array<std::array<std::uint32_t, hn::MaxLanes(words)>, 1U << hn::MaxLanes(words)>;
constexpr CompressOrders makeCompressOrders() {
  CompressOrders orders{};
  for (std::uint32_t bits = 0; bits < orders.size(); ++bits) {
    std::size_t numChosen = 0;
    for (std::uint32_t lane = 0; lane < orders[bits].size(); ++lane) {
      if ((bits >> lane & 1U) != 0) {
        orders[bits][numChosen++] = lane;
      }
    }
  }
  return orders;
}
alignas(64) constexpr CompressOrders compressOrders = makeCompressOrders();

// Highway's own operation is not used: for it g++ copies a whole table to the stack for every vector.
HWY_INLINE unsigned bitsOf(hn::Mask<decltype(words)> where) {
  std::array<std::uint8_t, 8> bits;
  hn::StoreMaskBits(words, where, bits.data());
  return bits[0];
}
#endif

// Appends the chosen entries to a list. It writes up to a whole vector past the new end.
HWY_INLINE void append(std::uint32_t*& list, hn::Vec<decltype(words)> entries,
                       hn::Mask<decltype(words)> where) {
#if HWY_TARGET <= HWY_AVX3 && HWY_ARCH_X86
  hn::StoreU(hn::Compress(entries, where), words, list);
  list += hn::CountTrue(words, where);
#elif HWY_TARGET == HWY_WASM
  // Its vectors have four lanes, of which mostly none is chosen, and shuffles go through memory.
  unsigned bits = wasm_i32x4_bitmask(where.raw);
  if (bits == 0) {
    return;
  }
  std::array<std::uint32_t, hn::MaxLanes(words)> all;
  hn::StoreU(entries, words, all.data());
  for (; bits != 0; bits &= bits - 1) {
    *list++ = all[static_cast<std::size_t>(std::countr_zero(bits))];
  }
#else
  const unsigned bits = bitsOf(where);
  const std::uint32_t* order = compressOrders[bits].data();
  hn::StoreU(hn::TableLookupLanes(entries, hn::SetTableIndices(words, order)), words, list);
  list += std::popcount(bits);
#endif
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();
#endif

#endif
