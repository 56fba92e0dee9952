#include "classify/CellMaker.h"

#include <array>
#include <cstddef>
#include <limits>
#include <optional>

#include "classify/Combining.h"

namespace orvantis::filter::classify {
namespace {

using Kind = PlanCell::Kind;

constexpr std::size_t mostCurves = std::numeric_limits<std::uint16_t>::max();

std::uint64_t bitOf(int zone) {
  return std::uint64_t{1} << zone;
}

Decision asking(std::uint8_t bit) {
  return {{Grid::curveOfZero, Grid::curveOfZero}, bit, 0, 0};
}

bool areSame(const CrossedCell& a, const CrossedCell& b) {
  return a.asked == b.asked && a.decided == b.decided && a.curves == b.curves && a.zonesOn == b.zonesOn;
}

}  // namespace

PlanCell CellMaker::cellOf(std::uint64_t held, const std::vector<const Stroke*>& borders) {
  if (borders.empty()) {
    return {cells_.palette.codeOf(held), Kind::Decided};
  }
  const Stroke& first = *borders.front();
  if (borders.size() == 1 && first.kind == Stroke::Kind::OneCurve && first.known == Sides::both) {
    return cutCell(held, first);
  }
  decisions_.clear();
  for (const Stroke* border : borders) {
    decisions_.push_back(decisionOf(*border));
  }
  if (const std::optional<CrossedCell> crossed = combined(decisions_, held, cells_.palette)) {
    return crossedCell(*crossed);
  }
  return tangledCell(held);
}

PlanCell CellMaker::askingCell(std::uint64_t held, std::uint64_t zones) {
  decisions_.clear();
  for (std::uint8_t bit = 0; bit < numBits; ++bit) {
    if ((zones >> bit & 1U) != 0) {
      decisions_.push_back(asking(bit));
    }
  }
  return tangledCell(held);
}

std::uint16_t CellMaker::codeOf(std::uint64_t zones) {
  return static_cast<std::uint16_t>(cells_.palette.codeOf(zones));
}

PlanCell CellMaker::cutCell(std::uint64_t held, const Stroke& border) {
  const std::uint64_t bit = bitOf(border.bit);
  const CutZones zones = {held | ((border.inside & Sides::negative) != 0 ? bit : 0),
                          held | ((border.inside & Sides::positive) != 0 ? bit : 0)};
  std::uint32_t& last = lastCut_[border.curves[0]];
  for (std::uint32_t number = last; number != none; number = cuts_[number].before) {
    if (cuts_[number].zones == zones) {
      return {number, Kind::Cut};
    }
  }
  cuts_.push_back({zones, last});
  last = static_cast<std::uint32_t>(cells_.cutCells.size());
  cells_.cutCells.push_back({curves_[border.curves[0]], {codeOf(zones[0]), codeOf(zones[1])}, border.bit});
  return {last, Kind::Cut};
}

// Borders that cross mostly do so in several columns, so equal cells are kept once.
PlanCell CellMaker::crossedCell(const CrossedCell& cell) {
  lastCrossed_.resize(cells_.curves.size(), none);
  std::uint32_t& last = lastCrossed_[cell.curves[0]];
  for (std::uint32_t number = last; number != none; number = crossedBefore_[number]) {
    if (areSame(cells_.crossedCells[number], cell)) {
      return {number, Kind::Crossed};
    }
  }
  crossedBefore_.push_back(last);
  last = static_cast<std::uint32_t>(cells_.crossedCells.size());
  cells_.crossedCells.push_back(cell);
  return {last, Kind::Crossed};
}

// From the decisions in `decisions_`.
PlanCell CellMaker::tangledCell(std::uint64_t held) {
  std::vector<Decision>& all = cells_.decisions;
  const auto first = static_cast<std::uint32_t>(all.size());
  all.insert(all.end(), decisions_.begin(), decisions_.end());
  if (decisions_.size() % 2 != 0) {
    all.push_back(decisions_.back());
  }
  const std::size_t numPairs = (all.size() - first) / 2;
  cells_.tangledCells.push_back({first, static_cast<std::uint16_t>(numPairs), codeOf(held)});
  return {static_cast<std::uint32_t>(cells_.tangledCells.size() - 1), Kind::Tangled};
}

Decision CellMaker::decisionOf(const Stroke& border) {
  if (border.kind == Stroke::Kind::Asked) {
    return asking(border.bit);
  }
  const std::uint16_t first = numberOf(border.curves[0]);
  const std::uint16_t second = numberOf(border.curves[1]);
  if (first == Grid::curveOfZero || second == Grid::curveOfZero) {
    return asking(border.bit);
  }
  return {{first, second}, border.bit, border.known, border.inside};
}

// Only the curves of cells with several borders have an entry in the list of curves; a cut cell has its own
// copy.
std::uint16_t CellMaker::numberOf(std::uint32_t curve) {
  std::uint16_t& number = numbers_[curve];
  if (number == 0 && cells_.curves.size() <= mostCurves) {
    number = static_cast<std::uint16_t>(cells_.curves.size());
    cells_.curves.push_back(curves_[curve]);
  }
  return number;
}

}  // namespace orvantis::filter::classify
