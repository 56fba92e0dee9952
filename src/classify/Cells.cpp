#include "classify/Cells.h"

#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <span>

#include <filter/detection/Point.h>

#include "classify/Combining.h"

namespace orvantis::filter::classify {
namespace {

using Kind = PlanCell::Kind;

constexpr std::uint32_t mostTabled = std::numeric_limits<std::uint16_t>::max();

std::uint64_t bitOf(int zone) {
  return std::uint64_t{1} << zone;
}

Decision asking(std::uint8_t bit) {
  return {{Grid::curveOfZero, Grid::curveOfZero}, bit, 0, 0};
}

class CellMaker {
 public:
  CellMaker(const PlannedZones& zones, const MarkedPlan& plan) : zones_(zones), plan_(plan) {
    for (const OutlinedZone& zone : zones.outlined) {
      shapes_[static_cast<std::size_t>(zone.zone->bit)] = zone.zone->shape.get();
    }
    cutsByCurve_.resize(plan.curves.size());
  }

  PlanCells make() {
    makeSpecialCells();
    result_.cells.reserve(plan_.decided.size());
    for (int column = 0; column < plan_.lattice.columns; ++column) {
      for (int row = 0; row < plan_.lattice.rows; ++row) {
        const std::size_t cell = plan_.index(column, row);
        result_.cells.push_back(plan_.firstMark[cell] == MarkedPlan::noMark ? decidedCell(plan_.decided[cell])
                                                                            : markedCell(column, row));
      }
    }
    return std::move(result_);
  }

 private:
  // The first tangled cell, which is nowhere, asks every zone. The bits that a NaN has are the same whichever
  // coordinate it is.
  void makeSpecialCells() {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    std::uint64_t ofNaN = zones_.alwaysAsked;
    for (const OutlinedZone& zone : zones_.outlined) {
      result_.decisions.push_back(asking(static_cast<std::uint8_t>(zone.zone->bit)));
      if (zone.zone->shape->within(detection::Point(nan, nan))) {
        ofNaN |= bitOf(zone.zone->bit);
      }
    }
    result_.farAway = addCell(0, zones_.alwaysAsked);
    result_.ofNaN = decidedCell(ofNaN);
  }

  PlanCell decidedCell(std::uint64_t zones) { return {result_.palette.codeOf(zones), Kind::Decided}; }

  std::uint16_t codeOfSet(std::uint64_t zones) {
    return static_cast<std::uint16_t>(result_.palette.codeOf(zones));
  }

  PlanCell markedCell(int column, int row) {
    const Mark& first = plan_.marks[plan_.firstMark[plan_.index(column, row)]];
    if (first.next == MarkedPlan::noMark) {
      if (const std::optional<PlanCell> cut = cutCell(column, row, first)) {
        return *cut;
      }
    }
    return crossedCell(column, row);
  }

  std::optional<PlanCell> cutCell(int column, int row, const Mark& mark) {
    const Sides sides = sidesOf(column, row, mark, {mark.curve, mark.curve});
    if (sides.known != Sides::both) {
      return std::nullopt;
    }
    const std::uint64_t bit = bitOf(mark.bit);
    const std::uint64_t rest = plan_.decided[plan_.index(column, row)];
    const std::array<std::uint16_t, 2> zones = {
        codeOfSet(rest | ((sides.inside & Sides::negative) != 0 ? bit : 0)),
        codeOfSet(rest | ((sides.inside & Sides::positive) != 0 ? bit : 0))};
    for (const std::uint32_t number : cutsByCurve_[mark.curve]) {
      if (result_.cutCells[number].zones == zones) {
        return PlanCell{number, Kind::Cut};
      }
    }
    const auto number = static_cast<std::uint32_t>(result_.cutCells.size());
    result_.cutCells.push_back({plan_.curves[mark.curve], zones, mark.bit});
    cutsByCurve_[mark.curve].push_back(number);
    return PlanCell{number, Kind::Cut};
  }

  PlanCell crossedCell(int column, int row) {
    const std::size_t cell = plan_.index(column, row);
    const auto firstDecision = static_cast<std::uint32_t>(result_.decisions.size());
    for (std::uint32_t at = plan_.firstMark[cell]; at != MarkedPlan::noMark;) {
      const Mark& first = plan_.marks[at];
      std::uint32_t numCurves = 0;
      std::array<std::uint32_t, Decision::numCurves> curves{first.curve, first.curve};
      bool hasTable = true;
      for (; at != MarkedPlan::noMark && plan_.marks[at].bit == first.bit; at = plan_.marks[at].next) {
        const std::uint32_t curve = plan_.marks[at].curve;
        hasTable = hasTable && numCurves < Decision::numCurves && curve <= mostTabled;
        if (hasTable) {
          curves[numCurves++] = curve;
        }
      }
      result_.decisions.push_back(hasTable ? decision(column, row, first, curves) : asking(first.bit));
    }
    return addCell(firstDecision, plan_.decided[cell]);
  }

  // The cell of the last decisions.
  PlanCell addCell(std::uint32_t firstDecision, std::uint64_t decided) {
    std::vector<Decision>& all = result_.decisions;
    const auto decisions = std::span(all).subspan(firstDecision);
    if (const std::optional<CrossedCell> crossed = combined(decisions, decided, result_.palette)) {
      all.resize(firstDecision);
      result_.crossedCells.push_back(*crossed);
      return {static_cast<std::uint32_t>(result_.crossedCells.size() - 1), Kind::Crossed};
    }
    if (all.size() % 2 != 0) {
      all.emplace_back(all.back());
    }
    const std::size_t numPairs = (all.size() - firstDecision) / 2;
    result_.tangledCells.push_back({firstDecision, static_cast<std::uint16_t>(numPairs), codeOfSet(decided)});
    return {static_cast<std::uint32_t>(result_.tangledCells.size() - 1), Kind::Tangled};
  }

  Decision decision(int column, int row, const Mark& mark, const std::array<std::uint32_t, 2>& curves) const {
    const Sides sides = sidesOf(column, row, mark, curves);
    return {{static_cast<std::uint16_t>(curves[0]), static_cast<std::uint16_t>(curves[1])},
            mark.bit,
            static_cast<std::uint8_t>(sides.known & 0xFU),
            static_cast<std::uint8_t>(sides.inside & 0xFU)};
  }

  Sides sidesOf(int column, int row, const Mark& mark, const std::array<std::uint32_t, 2>& curves) const {
    return mark.sides.known != 0
               ? mark.sides
               : askSides(*shapes_[mark.bit], plan_.lattice, column, row,
                          {plan_.curves[curves[0]], plan_.curves[curves[1]]}, curves[0] == curves[1]);
  }

  const PlannedZones& zones_;
  const MarkedPlan& plan_;
  PlanCells result_;
  std::array<const detection::Zone*, numBits> shapes_{};
  std::vector<std::vector<std::uint32_t>> cutsByCurve_;
};

}  // namespace

PlanCells cellsOf(const PlannedZones& zones, const MarkedPlan& plan) {
  return CellMaker(zones, plan).make();
}

}  // namespace orvantis::filter::classify
