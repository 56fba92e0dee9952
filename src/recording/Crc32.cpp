#include "recording/Crc32.h"

#include <array>

#include "recording/Bytes.h"

// The folding below is compiled for each kind of processor that can multiply polynomials. The program chooses
// one when it runs.
#undef HWY_TARGET_INCLUDE
#define HWY_WANT_AVX3_DL  // this target has vectors of several blocks
#define HWY_TARGET_INCLUDE "recording/Crc32.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef ORVANTIS_RECORDING_CRC32_ONCE
#define ORVANTIS_RECORDING_CRC32_ONCE
namespace orvantis::toolkit {

// Polynomials over bits, modulo that of the CRC: bit 31 - i of a word is the coefficient of x^i.
constexpr std::uint32_t one = 0x80000000U;

constexpr std::uint32_t timesX(std::uint32_t polynomial) {
  return (polynomial >> 1U) ^ ((polynomial & 1U) != 0 ? 0xEDB88320U : 0U);
}

constexpr std::uint32_t powerOfX(unsigned exponent) {
  std::uint32_t power = one;
  for (; exponent != 0; --exponent) {
    power = timesX(power);
  }
  return power;
}

using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

// Table k has what a byte adds to the CRC when k more bytes follow it.
constexpr Tables makeTables() {
  Tables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t value = byte;
    for (auto& table : tables) {
      for (int bit = 0; bit < 8; ++bit) {
        value = timesX(value);
      }
      table[byte] = value;
    }
  }
  return tables;
}
constexpr Tables tables = makeTables();

// The CRC without the inversions at begin and end.
inline std::uint32_t plainCrc(const std::byte* at, std::size_t count, std::uint32_t crc) {
  for (; count >= 8; count -= 8, at += 8) {
    const auto low = loadLittleEndian<std::uint32_t>(at) ^ crc;
    const auto high = loadLittleEndian<std::uint32_t>(at + 4);
    crc = tables[7][low & 0xFFU] ^ tables[6][(low >> 8U) & 0xFFU] ^ tables[5][(low >> 16U) & 0xFFU] ^
          tables[4][low >> 24U] ^ tables[3][high & 0xFFU] ^ tables[2][(high >> 8U) & 0xFFU] ^
          tables[1][(high >> 16U) & 0xFFU] ^ tables[0][high >> 24U];
  }
  for (; count != 0; --count, ++at) {
    crc = (crc >> 8U) ^ tables[0][(crc ^ std::to_integer<std::uint32_t>(*at)) & 0xFFU];
  }
  return crc;
}

}  // namespace orvantis::toolkit
#endif

HWY_BEFORE_NAMESPACE();
// NOLINTNEXTLINE(modernize-concat-nested-namespaces): each target's own, by Highway's rules
namespace orvantis::toolkit {
namespace HWY_NAMESPACE {

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_SSE4 && !defined(HWY_DISABLE_PCLMUL_AES)

namespace hn = hwy::HWY_NAMESPACE;

// Vectors of 128 bits, or of several such blocks if the processor can multiply them at once.
#if HWY_TARGET == HWY_AVX3_DL
using Words = hn::ScalableTag<std::uint64_t>;
#else
using Words = hn::FixedTag<std::uint64_t, 2>;
#endif
using Blocks = hn::Vec<Words>;
constexpr std::size_t size = hn::MaxLanes(Words()) * sizeof(std::uint64_t);
constexpr std::size_t numVectors = 4;  // several, so that no multiplication waits for another

HWY_INLINE Blocks blocksAt(const std::byte* at) {
  const hn::Repartition<std::uint8_t, Words> bytes;
  return hn::BitCast(Words(), hn::LoadU(bytes, reinterpret_cast<const std::uint8_t*>(at)));
}

// Multiplies each block of 128 bits by x^bits, modulo the CRC's polynomial. Its first 64 bits are 64 places
// above the others. A product of reflected numbers is multiplied by x in addition, so the exponents are one
// less.
template <unsigned bits>
HWY_INLINE Blocks moved(Blocks blocks) {
  alignas(16) constexpr std::uint64_t factors[2] = {std::uint64_t{powerOfX(bits + 63)} << 32U,
                                                    std::uint64_t{powerOfX(bits - 1)} << 32U};
  const Blocks factor = hn::LoadDup128(Words(), factors);
  return hn::Xor(hn::CLMulLower(blocks, factor), hn::CLMulUpper(blocks, factor));
}

// The folding of V. Gopal and others, "Fast CRC computation for generic polynomials using PCLMULQDQ", 2009:
// blocks are shifted to the place of the next ones and added to them. The rest at the end has the same CRC.
std::uint32_t foldedCrc(const std::byte* at, std::size_t count, std::uint32_t crc) {
  constexpr std::size_t step = numVectors * size;
  if (count < 2 * step) {
    return plainCrc(at, count, crc);
  }
  alignas(64) std::uint64_t start[size / sizeof(std::uint64_t)] = {crc};
  Blocks a = hn::Xor(blocksAt(at), hn::Load(Words(), start));
  Blocks b = blocksAt(at + size);
  Blocks c = blocksAt(at + 2 * size);
  Blocks d = blocksAt(at + 3 * size);
  for (at += step, count -= step; count >= step; at += step, count -= step) {
    a = hn::Xor(moved<8 * step>(a), blocksAt(at));
    b = hn::Xor(moved<8 * step>(b), blocksAt(at + size));
    c = hn::Xor(moved<8 * step>(c), blocksAt(at + 2 * size));
    d = hn::Xor(moved<8 * step>(d), blocksAt(at + 3 * size));
  }
  alignas(64) std::uint64_t rest[step / sizeof(std::uint64_t)];
  constexpr std::size_t lanes = hn::MaxLanes(Words());
  hn::Store(a, Words(), rest);
  hn::Store(b, Words(), rest + lanes);
  hn::Store(c, Words(), rest + 2 * lanes);
  hn::Store(d, Words(), rest + 3 * lanes);
  return plainCrc(at, count, plainCrc(reinterpret_cast<const std::byte*>(rest), sizeof(rest), 0));
}

#else

std::uint32_t foldedCrc(const std::byte* at, std::size_t count, std::uint32_t crc) {
  return plainCrc(at, count, crc);
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace orvantis::toolkit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace orvantis::toolkit {
namespace {

std::uint32_t product(std::uint32_t a, std::uint32_t b) {
  std::uint32_t sum = 0;
  for (; a != 0; a <<= 1U) {
    if ((a & one) != 0) {
      sum ^= b;
    }
    b = timesX(b);
  }
  return sum;
}

}  // namespace

HWY_EXPORT(foldedCrc);

std::uint32_t crc32(std::span<const std::byte> bytes, std::uint32_t before) {
  return ~HWY_DYNAMIC_DISPATCH(foldedCrc)(bytes.data(), bytes.size(), ~before);
}

std::uint32_t crc32OfBoth(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength) {
  // Each byte of the second run shifts the CRC of the first by 8 places. The inversions cancel out.
  std::uint32_t power = powerOfX(8);
  for (; secondLength != 0; secondLength >>= 1U) {
    if ((secondLength & 1U) != 0) {
      first = product(first, power);
    }
    power = product(power, power);
  }
  return first ^ second;
}

}  // namespace orvantis::toolkit
#endif
