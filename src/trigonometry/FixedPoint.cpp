#include "trigonometry/FixedPoint.h"

#include <algorithm>

namespace orvantis::trigonometry {
namespace {

constexpr int wordBits = 32;

constexpr std::uint32_t lowWord(std::uint64_t value) {
  return static_cast<std::uint32_t>(value);
}

}  // namespace

FixedPoint::FixedPoint(std::size_t numWords, std::uint32_t value) : words_(numWords + 1) {
  words_.back() = value;
}

FixedPoint::FixedPoint(std::size_t numWords, const Binary& value) : words_(numWords + 1) {
  // Word i has the digits of the mantissa from `shift` on. The mantissa may begin below or above the word.
  const int lowest = -wordBits * static_cast<int>(numWords) - value.exponent;
  for (std::size_t i = 0; i < words_.size(); ++i) {
    const int shift = lowest + wordBits * static_cast<int>(i);
    const Wide digits =
        shift >= 0 ? shiftedRight(value.mantissa, shift) : (shift > -wordBits ? value.mantissa << -shift : 0);
    words_[i] = lowWord(lowHalf(digits));
  }
}

bool FixedPoint::isZero() const {
  return std::all_of(words_.begin(), words_.end(), [](std::uint32_t word) { return word == 0; });
}

bool FixedPoint::operator<(const FixedPoint& other) const {
  return std::lexicographical_compare(words_.rbegin(), words_.rend(), other.words_.rbegin(),
                                      other.words_.rend());
}

FixedPoint& FixedPoint::operator+=(const FixedPoint& other) {
  std::uint64_t carried = 0;
  for (std::size_t i = 0; i < words_.size(); ++i) {
    carried += static_cast<std::uint64_t>(words_[i]) + other.words_[i];
    words_[i] = lowWord(carried);
    carried >>= wordBits;
  }
  return *this;
}

FixedPoint& FixedPoint::operator-=(const FixedPoint& other) {
  std::uint64_t borrowed = 0;
  for (std::size_t i = 0; i < words_.size(); ++i) {
    const std::uint64_t difference = static_cast<std::uint64_t>(words_[i]) - other.words_[i] - borrowed;
    words_[i] = lowWord(difference);
    borrowed = difference >> 63;
  }
  return *this;
}

FixedPoint& FixedPoint::operator/=(std::uint32_t divisor) {
  std::uint64_t rest = 0;
  for (std::size_t i = words_.size(); i-- > 0;) {
    const std::uint64_t dividend = (rest << wordBits) | words_[i];
    words_[i] = lowWord(dividend / divisor);
    rest = dividend % divisor;
  }
  return *this;
}

FixedPoint FixedPoint::operator*(const FixedPoint& other) const {
  std::vector<std::uint32_t> product(2 * words_.size());
  for (std::size_t i = 0; i < words_.size(); ++i) {
    std::uint64_t carried = 0;
    for (std::size_t j = 0; j < words_.size(); ++j) {
      carried += static_cast<std::uint64_t>(words_[i]) * other.words_[j] + product[i + j];
      product[i + j] = lowWord(carried);
      carried >>= wordBits;
    }
    product[i + words_.size()] = lowWord(carried);
  }
  const std::size_t numWords = words_.size() - 1;
  FixedPoint result(numWords);
  std::copy_n(product.begin() + static_cast<std::ptrdiff_t>(numWords), words_.size(), result.words_.begin());
  return result;
}

FixedPoint FixedPoint::cutTo(std::size_t numWords) const {
  FixedPoint result(numWords);
  std::copy(words_.end() - static_cast<std::ptrdiff_t>(numWords) - 1, words_.end(), result.words_.begin());
  return result;
}

int compare(const FixedPoint& a, const FixedPoint& b) {
  const bool isLess = a < b;
  FixedPoint difference = isLess ? b : a;
  difference -= isLess ? a : b;
  const bool isOpen = std::all_of(difference.words_.begin() + 1, difference.words_.end(),
                                  [](std::uint32_t word) { return word == 0; });
  if (isOpen) {
    return 0;
  }
  return isLess ? -1 : 1;
}

}  // namespace orvantis::trigonometry
