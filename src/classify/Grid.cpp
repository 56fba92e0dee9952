#include "classify/Grid.h"

#include <optional>
#include <utility>

#include "classify/Cells.h"
#include "classify/Marking.h"

namespace orvantis::filter::classify {
namespace {

constexpr std::size_t mostCodes = std::size_t{1} << 16U;

template <typename T>
std::size_t bytesOf(const std::vector<T>& values) {
  return values.size() * sizeof(T);
}

PlannedZones plannedZones(const std::vector<FrozenZone>& zones) {
  PlannedZones planned;
  for (const FrozenZone& zone : zones) {
    if (std::optional<Outline> outline = outlineOf(*zone.shape)) {
      planned.site.include(outline->bounds);
      planned.outlined.push_back({&zone, std::move(*outline)});
    } else {
      planned.alwaysAsked |= std::uint64_t{1} << zone.bit;
    }
  }
  return planned;
}

// The last phase: gives each cell its code. @return nothing when the grid is larger than it may be
std::optional<Grid> codedGrid(MarkedPlan plan, PlanCells cells, std::uint64_t alwaysAsked) {
  const std::size_t numCodes = cells.palette.sets().size() + cells.cutCells.size() +
                               cells.crossedDecisions.size() + cells.tangledDecisions.size();
  if (numCodes > mostCodes) {
    return std::nullopt;
  }
  Grid grid;
  grid.lattice = plan.lattice;
  grid.alwaysAsked = alwaysAsked;
  grid.palette = cells.palette.sets();
  grid.firstCut = static_cast<std::uint32_t>(grid.palette.size());
  grid.palette.push_back(~std::uint64_t{0});
  grid.firstCrossed = grid.firstCut + static_cast<std::uint32_t>(cells.cutCells.size());
  const std::uint32_t firstTangled =
      grid.firstCrossed + static_cast<std::uint32_t>(cells.crossedDecisions.size());
  const auto codeOf = [&](const PlanCell& cell) {
    using Kind = PlanCell::Kind;
    const std::uint32_t first = cell.kind == Kind::Decided   ? 0
                                : cell.kind == Kind::Cut     ? grid.firstCut
                                : cell.kind == Kind::Crossed ? grid.firstCrossed
                                                             : firstTangled;
    return static_cast<std::uint16_t>(first + cell.number);
  };
  grid.codeOfNaN = codeOf(cells.ofNaN);
  grid.codeOfFarAway = codeOf(cells.farAway);
  grid.codes.reserve(cells.cells.size() + 2);
  for (const PlanCell& cell : cells.cells) {
    grid.codes.push_back(codeOf(cell));
  }
  grid.codes.resize(grid.codes.size() + 2, 0);
  grid.curves = std::move(plan.curves);
  grid.cutCells = std::move(cells.cutCells);
  grid.crossedCells = std::move(cells.crossedCells);
  grid.cellDecisions = std::move(cells.crossedDecisions);
  grid.cellDecisions.insert(grid.cellDecisions.end(), cells.tangledDecisions.begin(),
                            cells.tangledDecisions.end());
  grid.decisions = std::move(cells.decisions);
  if (grid.bytes() > Grid::mostBytes + bytesOf(grid.curves)) {
    return std::nullopt;
  }
  return grid;
}

}  // namespace

std::size_t Grid::bytes() const {
  return bytesOf(codes) + bytesOf(palette) + bytesOf(cutCells) + bytesOf(crossedCells) +
         bytesOf(cellDecisions) + bytesOf(decisions) + bytesOf(curves);
}

Grid gridOf(const std::vector<FrozenZone>& zones, double safety) {
  const PlannedZones planned = plannedZones(zones);
  for (double cell = suitableCell(planned.site);; cell *= 2.0) {
    std::optional<MarkedPlan> plan = markPlan(planned, cell, safety);
    if (!plan) {
      continue;
    }
    PlanCells cells = cellsOf(planned, *plan);
    std::optional<Grid> grid = codedGrid(std::move(*plan), std::move(cells), planned.alwaysAsked);
    if (grid) {
      return std::move(*grid);
    }
  }
}

}  // namespace orvantis::filter::classify
