#include "classify/Combining.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvantis::filter::classify {
namespace {

using CurveNumbers = std::array<std::uint16_t, CrossedCell::numCurves>;

// The different curves of the decisions of a cell.
class CellCurves {
 public:
  // Takes in the curves of a decision. False when they are too many, or one of them decides nothing.
  bool add(const Decision& decision) { return add(decision.curves[0]) && add(decision.curves[1]); }

  std::size_t size() const { return size_; }

  std::size_t placeOf(std::uint16_t curve) const {
    std::size_t place = 0;
    while (place < size_ && curves_[place] != curve) {
      ++place;
    }
    return place;
  }

  // When there are fewer curves, the first one is repeated.
  CurveNumbers numbers() const {
    CurveNumbers numbers = curves_;
    std::fill(numbers.begin() + static_cast<std::ptrdiff_t>(size_), numbers.end(), numbers[0]);
    return numbers;
  }

  // A repeated curve has the same side each time, so some combinations cannot occur.
  bool canOccur(unsigned sides) const {
    const unsigned repeated = allSides & ~0U << size_;
    return (sides & repeated) == ((sides & 1U) != 0 ? repeated : 0U);
  }

 private:
  bool add(std::uint16_t curve) {
    if (placeOf(curve) < size_) {
      return true;
    }
    if (curve == Grid::curveOfZero || size_ == curves_.size()) {
      return false;
    }
    curves_[size_++] = curve;
    return true;
  }

  static constexpr unsigned allSides = (1U << CrossedCell::numCurves) - 1U;

  CurveNumbers curves_{};
  std::size_t size_ = 0;
};

}  // namespace

std::optional<CrossedCell> combined(std::span<const Decision> decisions, std::uint64_t decided,
                                    Palette& palette) {
  CellCurves curves;
  for (const Decision& decision : decisions) {
    if (!curves.add(decision)) {
      return std::nullopt;
    }
  }
  if (curves.size() == 0) {
    return std::nullopt;
  }
  CrossedCell cell;
  cell.curves = curves.numbers();
  cell.decided = static_cast<std::uint16_t>(palette.codeOf(decided));
  std::array<std::uint64_t, 1U << CrossedCell::numCurves> zones{};
  std::array<bool, 1U << CrossedCell::numCurves> isKnown{};
  zones.fill(decided);
  isKnown.fill(true);
  for (const Decision& decision : decisions) {
    const std::uint64_t zone = std::uint64_t{1} << decision.bit;
    const std::size_t first = curves.placeOf(decision.curves[0]);
    const std::size_t second = curves.placeOf(decision.curves[1]);
    for (unsigned sides = 0; sides < zones.size(); ++sides) {
      const unsigned combination = (sides >> first & 1U) | (sides >> second & 1U) << 1U;
      isKnown[sides] = isKnown[sides] && (decision.known >> combination & 1U) != 0;
      zones[sides] |= (decision.inside >> combination & 1U) != 0 ? zone : 0;
    }
    cell.asked |= zone;
  }
  for (unsigned sides = 0; sides < zones.size(); ++sides) {
    const bool hasSet = isKnown[sides] && curves.canOccur(sides);
    cell.zonesOn[sides] =
        hasSet ? static_cast<std::uint16_t>(palette.codeOf(zones[sides])) : CrossedCell::noSet;
  }
  return cell;
}

}  // namespace orvantis::filter::classify
