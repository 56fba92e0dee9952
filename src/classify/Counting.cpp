#include "classify/Counting.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "classify/Targets.h"

// Compiles this file once for each kind of processor that Highway knows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "classify/Counting.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "classify/Vectors-inl.h"

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::filter::classify {
namespace HWY_NAMESPACE {
namespace {

#if ORVANTIS_HAS_VECTORS

// One step of adding bit by bit: adds two vectors to `sum` and returns the carry. With AVX-512 these are two
// instructions; the compiler does not find the one for the carry by itself.
HWY_INLINE Words carried(Words& sum, Words a, Words b) {
#if HWY_TARGET <= HWY_AVX3 && HWY_ARCH_X86
  const Words carry{_mm512_ternarylogic_epi32(sum.raw, a.raw, b.raw, 0xE8)};
#else
  const Words carry = hn::Xor(a, hn::And(hn::Xor(sum, a), hn::Xor(a, b)));
#endif
  sum = hn::Xor3(sum, a, b);
  return carry;
}

// What the masks of two vectors count for, in any order: their field zones or, when an exclusion zone holds
// the point, the excluded points.
HWY_INLINE Words countedBits(const std::uint64_t* from) {
  const Masks excluded = hn::Set(masks, BitCounts::excludedBit);
  const Masks first = hn::Min(hn::LoadU(masks, from), excluded);
  const Masks second = hn::Min(hn::LoadU(masks, from + hn::Lanes(masks)), excluded);
  return hn::ConcatEven(words, hn::BitCast(words, second), hn::BitCast(words, first));
}

// Adds up 64 vectors of masks at a time. @return how many masks it added
std::size_t countGroups(const std::uint64_t* from, std::size_t size, BitCounts& counts) {
  const std::size_t group = 64 * hn::Lanes(words);
  std::size_t done = 0;
  for (; done + group <= size; done += group) {
    const std::uint64_t* at = from + done;
    std::array<Words, 6> sums;
    for (std::size_t k = 0; k < sums.size(); ++k) {
      sums[k] = hn::Load(words, counts.planes[k].data());
    }
    const auto next = [&] {
      const Words bits = countedBits(at);
      at += hn::Lanes(words);
      return bits;
    };
    const auto nextTwos = [&] {
      const Words a = next();
      return carried(sums[0], a, next());
    };
    const auto nextFours = [&] {
      const Words a = nextTwos();
      return carried(sums[1], a, nextTwos());
    };
    const auto nextEights = [&] {
      const Words a = nextFours();
      return carried(sums[2], a, nextFours());
    };
    std::array<Words, 4> sixteens;
    for (Words& carry : sixteens) {
      const Words a = nextEights();
      carry = carried(sums[3], a, nextEights());
    }
    const Words a = carried(sums[4], sixteens[0], sixteens[1]);
    Words carry = carried(sums[5], a, carried(sums[4], sixteens[2], sixteens[3]));
    for (std::size_t k = 0; k < sums.size(); ++k) {
      hn::Store(sums[k], words, counts.planes[k].data());
    }
    // A processor cannot predict how far it carries, so the first planes are always done.
    for (std::size_t k = sums.size(); k < 2 * sums.size() || !hn::AllTrue(words, carry == hn::Zero(words));
         ++k) {
      const Words sum = hn::Load(words, counts.planes[k].data());
      hn::Store(hn::Xor(sum, carry), words, counts.planes[k].data());
      carry = hn::And(sum, carry);
    }
  }
  return done;
}

#endif

void countMasks(const std::uint64_t* from, std::size_t size, BitCounts& counts) {
#if ORVANTIS_HAS_VECTORS
  const std::size_t done = countGroups(from, size, counts);
  if (done < size) {
    // The rest, padded with masks that count for nothing.
    alignas(64) std::array<std::uint64_t, 64 * hn::MaxLanes(words)> rest{};
    std::copy(from + done, from + size, rest.begin());
    countGroups(rest.data(), rest.size(), counts);
  }
#else
  for (std::size_t i = 0; i < size; ++i) {
    // Adds one number to counters that keep bit k of all counts in plane k.
    std::uint32_t carry =
        from[i] < BitCounts::excludedBit ? static_cast<std::uint32_t>(from[i]) : BitCounts::excludedBit;
    for (std::size_t k = 0; carry != 0; ++k) {
      const std::uint32_t sum = counts.planes[k][0];
      counts.planes[k][0] = sum ^ carry;
      carry = sum & carry;
    }
  }
#endif
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace orvantis::filter::classify
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvantis::filter::classify {

HWY_EXPORT(countMasks);

std::array<std::uint64_t, BitCounts::numCounts> BitCounts::sums() const {
  constexpr std::size_t byteSize = 8;
  constexpr std::uint32_t lowestOfEachByte = 0x01010101;
  std::array<std::uint64_t, numCounts> sums{};
  for (std::size_t k = 0; k < numPlanes; ++k) {
    if (std::all_of(planes[k].begin(), planes[k].end(), [](std::uint32_t word) { return word == 0; })) {
      continue;
    }
    // In how many words each bit is set: the number for bit i is byte i / 8 of element i % 8.
    std::array<std::uint32_t, byteSize> numSet{};
    for (const std::uint32_t word : planes[k]) {
      for (std::size_t shift = 0; shift < byteSize; ++shift) {
        numSet[shift] += word >> shift & lowestOfEachByte;
      }
    }
    for (std::size_t i = 0; i < numCounts; ++i) {
      sums[i] += std::uint64_t{numSet[i % byteSize] >> (i / byteSize * byteSize) & 0xFFU} << k;
    }
  }
  return sums;
}

void countZones(const std::uint64_t* masks, std::size_t size, BitCounts& counts) {
  HWY_DYNAMIC_DISPATCH(countMasks)(masks, size, counts);
}

}  // namespace orvantis::filter::classify
#endif
