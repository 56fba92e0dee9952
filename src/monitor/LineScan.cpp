#include "monitor/LineScan.h"

#include <algorithm>
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

double dot(const core::PlanarPoint& a, const core::PlanarPoint& b) {
  return a.x() * b.x() + a.y() * b.y();
}

// Larger than the error of a product that underflows.
constexpr double smallest = std::numeric_limits<double>::min();

// An upper bound of the error of the rounded heights over a line, for each unit of its length. All roundings
// of the heights of centre and corners and of the clearance together are less than 48 epsilons of the largest
// coordinate; the bound is larger. Beyond `sensible`, products may overflow, so no answer is sure.
double doubtOf(double largest) {
  constexpr double sensible = 1e100;
  return largest <= sensible ? 128.0 * std::numeric_limits<double>::epsilon() * largest
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
    functions_.length.push_back(line.length);
    functions_.clearance.push_back(line.clearance + smallest);
    largest_ = std::max({largest_, largestOf(line.first), largestOf(line.second)});
  }
}

std::uint64_t LineScan::allLines(std::size_t word) const {
  const std::size_t count = lines_.size() - word * wordSize;
  return count < wordSize ? (std::uint64_t{1} << count) - 1 : ~std::uint64_t{0};
}

void LineScan::scan(const core::State& footprint, const core::PlanarPoint& reference, Bits& bits) const {
  // The corners of a box are the vertices of its footprint. For another footprint, the box around it may be
  // larger, so only the answer "clear" counts.
  const std::optional<Box> tight = boxOf(footprint);
  const Box box = tight ? *tight : boxAround(footprint.polygon().outer());
  const double doubt = doubtOf(std::max(box.largest, largest_));
  bits.left.resize(numWords());
  bits.clear.resize(numWords());
  for (std::size_t word = 0; word < numWords(); ++word) {
    auto [left, clear] = farLines(word, box, doubt);
    for (std::uint64_t near = allLines(word) & ~clear; near != 0; near &= near - 1) {
      const std::size_t number = word * wordSize + static_cast<std::size_t>(std::countr_zero(near));
      auto side = besideLine(number, box, doubt);
      if (!side || !(tight || side->isClear)) {
        const SidedLine& line = lines_[number];
        side = {orientation(line.first, line.second, reference) > 0,
                clearSide(line, footprint.polygon().outer(), reference).has_value()};
      }
      const std::uint64_t bit = near & (~near + 1);
      left = side->isLeft ? left | bit : left & ~bit;
      clear |= side->isClear ? bit : 0;
    }
    bits.left[word] = left;
    bits.clear[word] = clear;
  }
}

// Most lines are farther from the centre than any corner. There are no branches, because a processor cannot
// predict the answer for the next line. The loop begins at the last line, so that each bit is shifted to its
// place.
LineScan::Word LineScan::farLines(std::size_t word, const Box& box, double doubt) const {
  const double radius = std::sqrt(dot(box.halfLength, box.halfLength) + dot(box.halfWidth, box.halfWidth) +
                                  2.0 * std::abs(dot(box.halfLength, box.halfWidth)));
  const double reach = radius + doubt;
  Word lines;
  const std::size_t begin = word * wordSize;
  for (std::size_t i = std::min(begin + wordSize, lines_.size()); i-- > begin;) {
    const double height =
        functions_.a[i] * box.centre.x() + functions_.b[i] * box.centre.y() + functions_.c[i];
    const double least = functions_.length[i] * reach + functions_.clearance[i];
    lines.left = 2 * lines.left + static_cast<std::uint64_t>(height > 0.0);
    lines.clear = 2 * lines.clear + static_cast<std::uint64_t>(std::abs(height) > least);
  }
  return lines;
}

std::optional<LineScan::Beside> LineScan::besideLine(std::size_t number, const Box& box, double doubt) const {
  const double a = functions_.a[number];
  const double b = functions_.b[number];
  const double height = a * box.centre.x() + b * box.centre.y() + functions_.c[number];
  const double reach = std::abs(a * box.halfLength.x() + b * box.halfLength.y()) +
                       std::abs(a * box.halfWidth.x() + b * box.halfWidth.y()) + functions_.clearance[number];
  const double amount = std::abs(height);
  if (!(std::min(std::abs(amount - reach), amount) > functions_.length[number] * doubt + smallest)) {
    return std::nullopt;
  }
  return Beside{height > 0.0, amount > reach};
}

}  // namespace orvantis::filter::monitor
