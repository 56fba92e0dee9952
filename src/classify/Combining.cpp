#include "classify/Combining.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvantis::filter::classify {
namespace {

using CurveNumbers = std::array<std::uint16_t, CrossedCell::numCurves>;

// When there are fewer curves, the first one is repeated.
std::optional<CurveNumbers> curvesOf(std::span<const Decision> decisions) {
  CurveNumbers curves{};
  std::size_t size = 0;
  for (const Decision& decision : decisions) {
    for (const std::uint16_t curve : decision.curves) {
      const auto* const end = curves.data() + size;
      if (std::find<const std::uint16_t*>(curves.data(), end, curve) != end) {
        continue;
      }
      if (curve == Grid::curveOfZero || size == curves.size()) {
        return std::nullopt;
      }
      curves[size++] = curve;
    }
  }
  if (size == 0) {
    return std::nullopt;
  }
  std::fill(curves.begin() + static_cast<std::ptrdiff_t>(size), curves.end(), curves[0]);
  return curves;
}

}  // namespace

std::optional<CrossedCell> combined(std::span<const Decision> decisions, std::uint64_t decided,
                                    Palette& palette) {
  const std::optional<CurveNumbers> curves = curvesOf(decisions);
  if (!curves) {
    return std::nullopt;
  }
  CrossedCell cell;
  cell.zonesOn.fill(CrossedCell::noSet);
  cell.curves = *curves;
  cell.decided = static_cast<std::uint16_t>(palette.codeOf(decided));
  for (const Decision& decision : decisions) {
    cell.asked |= std::uint64_t{1} << decision.bit;
  }
  for (unsigned sides = 0; sides < cell.zonesOn.size(); ++sides) {
    const auto sideOf = [&](std::uint16_t curve) {
      return sides >> (std::find(curves->begin(), curves->end(), curve) - curves->begin()) & 1U;
    };
    // A repeated curve has the same side each time, so some combinations cannot occur.
    unsigned possible = 0;
    for (std::size_t k = 0; k < curves->size(); ++k) {
      possible |= sideOf((*curves)[k]) << k;
    }
    bool isKnown = possible == sides;
    std::uint64_t zones = decided;
    for (const Decision& decision : decisions) {
      const unsigned combination = sideOf(decision.curves[0]) | sideOf(decision.curves[1]) << 1U;
      isKnown = isKnown && (decision.known >> combination & 1U) != 0;
      zones |= (decision.inside >> combination & 1U) != 0 ? std::uint64_t{1} << decision.bit : 0;
    }
    if (isKnown) {
      cell.zonesOn[sides] = static_cast<std::uint16_t>(palette.codeOf(zones));
    }
  }
  return cell;
}

}  // namespace orvantis::filter::classify
