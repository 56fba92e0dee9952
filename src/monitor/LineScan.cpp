#include "monitor/LineScan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "monitor/Bounds.h"
#include "monitor/Orientation.h"

namespace orvantis::filter::monitor {
namespace {

constexpr std::size_t wordSize = 64;

// A parallelogram that holds all vertices of a footprint, and its reference point.
struct Frame {
  core::PlanarPoint centre;
  core::PlanarPoint halfLength;
  core::PlanarPoint halfWidth;
  double largest;  // coordinate, without sign
  bool isTight;    // its corners are the footprint's vertices, but for rounding
};

double largestOf(const core::PlanarPoint& point) {
  return std::max(std::abs(point.x()), std::abs(point.y()));
}

core::PlanarPoint halfOf(const core::PlanarPoint& from, const core::PlanarPoint& to) {
  return {0.5 * (to.x() - from.x()), 0.5 * (to.y() - from.y())};
}

Frame frameOf(const core::State& footprint, const core::PlanarPoint& reference) {
  const auto& ring = footprint.polygon().outer();
  if (footprint.centre() && ring.size() >= 4) {
    const double largest =
        std::max({largestOf(ring[0]), largestOf(ring[1]), largestOf(ring[2]), largestOf(ring[3])});
    return {reference, halfOf(ring[1], ring[0]), halfOf(ring[2], ring[1]), largest, true};
  }
  const auto [low, high] = boundsOf(ring);
  const core::PlanarPoint half = halfOf(low, high);
  return {{low.x() + half.x(), low.y() + half.y()},
          {half.x(), 0.0},
          {0.0, half.y()},
          std::max(largestOf(low), largestOf(high)),
          false};
}

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
  const Frame frame = frameOf(footprint, reference);
  const double doubt = doubtOf(std::max(frame.largest, largest_));
  bits.left.assign(numWords(), 0);
  bits.clear.assign(numWords(), 0);
  for (std::size_t word = 0; word < numWords(); ++word) {
    const std::size_t begin = word * wordSize;
    const std::size_t count = std::min(wordSize, lines_.size() - begin);
    // In two loops, because compilers turn this one into vectors and not the next.
    std::array<double, wordSize> height;  // of the centre, over the line
    std::array<double, wordSize> reach;   // of the corners from there, and the clearance
    std::array<double, wordSize> error;
    for (std::size_t i = 0; i < count; ++i) {
      const double a = functions_.a[begin + i];
      const double b = functions_.b[begin + i];
      height[i] = a * frame.centre.x() + b * frame.centre.y() + functions_.c[begin + i];
      reach[i] = std::abs(a * frame.halfLength.x() + b * frame.halfLength.y()) +
                 std::abs(a * frame.halfWidth.x() + b * frame.halfWidth.y()) +
                 functions_.clearance[begin + i];
      // Never zero: products may underflow.
      error[i] = functions_.slope[begin + i] * doubt + std::numeric_limits<double>::min();
    }
    std::uint64_t left = 0;
    std::uint64_t clear = 0;
    std::uint64_t sure = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const double amount = std::abs(height[i]);
      const bool isClear = amount > reach[i] + error[i];
      const bool isNotClear = frame.isTight && amount > error[i] && amount < reach[i] - error[i];
      left |= static_cast<std::uint64_t>(height[i] > 0.0) << i;
      clear |= static_cast<std::uint64_t>(isClear) << i;
      sure |= static_cast<std::uint64_t>(isClear || isNotClear) << i;
    }
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint64_t bit = std::uint64_t{1} << i;
      if ((sure & bit) == 0) {
        const SidedLine& line = lines_[begin + i];
        const bool isLeft = orientation(line.first, line.second, reference) > 0;
        const bool isClear = clearSide(line, footprint.polygon().outer(), reference).has_value();
        left = isLeft ? left | bit : left & ~bit;
        clear = isClear ? clear | bit : clear & ~bit;
      }
    }
    bits.left[word] = left;
    bits.clear[word] = clear;
  }
}

}  // namespace orvantis::filter::monitor
