#include "monitor/LineScan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>

#include "monitor/Box.h"
#include "monitor/Orientation.h"

namespace orvantis::filter::monitor {
namespace {

constexpr std::size_t wordSize = 64;

// How far the rounded heights over a line may be off, for each unit of its slope. Of the centre's height,
// the corners' and the clearance all roundings together are less than 32 epsilons of the largest coordinate;
// twice that is taken. With coordinates beyond all sense, whose products overflow, nothing is sure.
double doubtOf(double largest) {
  constexpr double sensible = 1e100;
  return largest <= sensible ? 64.0 * std::numeric_limits<double>::epsilon() * largest
                             : std::numeric_limits<double>::infinity();
}

}  // namespace

LineScan::LineScan(std::vector<SidedLine> lines) : lines_(std::move(lines)) {
  for (const SidedLine& line : lines_) {
    const double dx = line.second.x() - line.first.x();
    const double dy = line.second.y() - line.first.y();
    functions_.a.push_back(-dy);
    functions_.b.push_back(dx);
    functions_.c.push_back(dy * line.first.x() - dx * line.first.y());
    functions_.clearance.push_back(line.clearance);
    functions_.slope.push_back(std::abs(dx) + std::abs(dy));
    largest_ = std::max({largest_, largestOf(line.first), largestOf(line.second)});
  }
}

std::uint64_t LineScan::allLines(std::size_t word) const {
  const std::size_t count = lines_.size() - word * wordSize;
  return count < wordSize ? (std::uint64_t{1} << count) - 1 : ~std::uint64_t{0};
}

void LineScan::scan(const core::State& footprint, const core::PlanarPoint& reference, Bits& bits) const {
  // The corners of a box are its footprint's vertices; the box around another footprint only holds them.
  const std::optional<Box> box = boxOf(footprint);
  const auto [centre, halfLength, halfWidth, largest] = box ? *box : boxAround(footprint.polygon().outer());
  const double doubt = doubtOf(std::max(largest, largest_));
  bits.left.assign(numWords(), 0);
  bits.clear.assign(numWords(), 0);
  for (std::size_t word = 0; word < numWords(); ++word) {
    const std::size_t begin = word * wordSize;
    const std::size_t count = std::min(wordSize, lines_.size() - begin);
    std::uint64_t left = 0;
    std::uint64_t clear = 0;
    std::uint64_t sure = 0;
    // Without branches: hardly anything about the next line can be guessed from this one.
    for (std::size_t i = 0; i < count; ++i) {
      const double a = functions_.a[begin + i];
      const double b = functions_.b[begin + i];
      // Of the centre over the line; of the corners from there, with the clearance; and what both may be off,
      // which is never zero, as products may underflow.
      const double height = a * centre.x() + b * centre.y() + functions_.c[begin + i];
      const double reach = std::abs(a * halfLength.x() + b * halfLength.y()) +
                           std::abs(a * halfWidth.x() + b * halfWidth.y()) + functions_.clearance[begin + i];
      const double error = functions_.slope[begin + i] * doubt + std::numeric_limits<double>::min();
      const double amount = std::abs(height);
      const std::uint64_t bit = std::uint64_t{1} << i;
      left |= height > 0.0 ? bit : 0;
      clear |= amount > reach ? bit : 0;
      sure |= std::min(std::abs(amount - reach), amount) > error ? bit : 0;
    }
    std::uint64_t unsure = allLines(word) & ~(box ? sure : sure & clear);
    for (; unsure != 0; unsure &= unsure - 1) {
      const std::uint64_t bit = unsure & (~unsure + 1);
      const SidedLine& line = lines_[begin + static_cast<std::size_t>(std::countr_zero(unsure))];
      const bool isLeft = orientation(line.first, line.second, reference) > 0;
      const bool isClear = clearSide(line, footprint.polygon().outer(), reference).has_value();
      left = isLeft ? left | bit : left & ~bit;
      clear = isClear ? clear | bit : clear & ~bit;
    }
    bits.left[word] = left;
    bits.clear[word] = clear;
  }
}

}  // namespace orvantis::filter::monitor
