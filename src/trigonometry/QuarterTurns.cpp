#include "trigonometry/QuarterTurns.h"

#include <array>
#include <cstddef>

namespace orvantis::trigonometry {
namespace {

// 256 bits, the lowest word first.
using Words = std::array<std::uint64_t, 4>;

// The binary digits of 2/pi, the highest word first, with as many zeros in front as a small angle needs. The
// least angle needs the digits from 2^80 on, the largest double the digits down to 2^-1226.
constexpr int leadingZeroDigits = 128;
constexpr std::array<std::uint64_t, 22> twoOverPi = {
    0x0000000000000000, 0x0000000000000000, 0xa2f9836e4e441529, 0xfc2757d1f534ddc0, 0xdb6295993c439041,
    0xfe5163abdebbc561, 0xb7246e3a424dd2e0, 0x06492eea09d1921c, 0xfe1deb1cb129a73e, 0xe88235f52ebb4484,
    0xe99c7026b45f7e41, 0x3991d639835339f4, 0x9c845f8bbdf9283b, 0x1ff897ffde05980f, 0xef2f118b5a0a6d1f,
    0x6d367ecf27cb09b7, 0x4f463f669e5fea2d, 0x7527bac7ebe5f17b, 0x3d0739f78a5292ea, 0x6bfb5fb11f8d5d08,
    0x56033046fc7b6bab, 0xf0cfbc209af4361d};

// 256 of those digits, beginning with the digit of 2^-first.
Words digitsFrom(int first) {
  const int position = first - 1 + leadingZeroDigits;
  const auto word = static_cast<std::size_t>(position / 64);
  const int bit = position % 64;
  Words digits{};
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const Wide both =
        wide(twoOverPi[word + i], word + i + 1 < twoOverPi.size() ? twoOverPi[word + i + 1] : 0);
    digits[digits.size() - 1 - i] = highHalf(both << bit);
  }
  return digits;
}

// Modulo 2^256.
Words product(const Words& words, std::uint64_t factor) {
  Words result{};
  Wide carried = 0;
  for (std::size_t i = 0; i < words.size(); ++i) {
    carried += static_cast<Wide>(words[i]) * factor;
    result[i] = lowHalf(carried);
    carried >>= 64;
  }
  return result;
}

Words shiftedLeft(const Words& words, int bits) {
  const auto skipped = static_cast<std::size_t>(bits / 64);
  Words result{};
  for (std::size_t i = skipped; i < words.size(); ++i) {
    const Wide both = wide(words[i - skipped], i > skipped ? words[i - skipped - 1] : 0);
    result[i] = highHalf(both << (bits % 64));
  }
  return result;
}

void negate(Words& words) {
  Wide carried = 1;
  for (std::uint64_t& word : words) {
    carried += ~word;
    word = lowHalf(carried);
    carried >>= 64;
  }
}

Wide upperHalf(const Words& words) {
  return wide(words[3], words[2]);
}

}  // namespace

// The reduction of M. Payne and R. Hanek, "Radian reduction for trigonometric functions", 1983: it computes
// only the digits of the product of the angle and 2/pi around the binary point. It leaves out the digits of
// 2/pi that give whole turns, and those that are too small to matter.
QuarterTurns quarterTurnsOf(const Binary& angle) {
  // Digit i is worth angle.mantissa * 2^(angle.exponent - i), so the first digit that is taken is worth twice
  // the mantissa. The product is then in units of 2^-254, modulo 4. The digits left out behind are worth less
  // than one in the last digit, which is 2^53 of those units.
  const Words turns = product(digitsFrom(angle.exponent - 1), lowHalf(angle.mantissa));
  Words rest = shiftedLeft(turns, 2);
  const bool isLess = (rest[3] >> 63) != 0;
  const auto count = static_cast<unsigned>(turns[3] >> 62) + (isLess ? 1U : 0U);
  if (isLess) {
    negate(rest);
  }
  // Of all doubles, 6381956970095103 * 2^797 is nearest to a multiple of a quarter turn other than zero:
  // 2^-61.5 quarter turns away (the worst case in the table of J.-M. Muller, "Elementary Functions", which
  // continued fractions give). So there are at most 61 zeros.
  const int zeros = leadingZeros(upperHalf(rest));
  const Wide mantissa = upperHalf(shiftedLeft(rest, zeros));
  // The rest is the mantissa in units of 2^(-128 - zeros) quarter turns. Less than 1 unit was cut off, and
  // the 2^53 units from above are now less than 2^-11. It is multiplied by pi/2, as 0.79 * 2^128 with less
  // than 1 cut off. Then the unit is 2^(-127 - zeros), and less than 4 units are missing.
  constexpr Wide halfPi = wide(0xc90fdaa22168c234, 0xc4c6628b80dc1cd1);
  return {count % 4, isLess, {highProduct(mantissa, halfPi), -127 - zeros, 4}};
}

}  // namespace orvantis::trigonometry
