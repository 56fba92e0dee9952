#include "classify/Grid.h"

#include <optional>
#include <utility>

#include "classify/Cells.h"
#include "classify/Flags.h"
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

Folding folded(double origin, double cell, int count) {
  Folding folding;
  folding.origin = static_cast<float>(origin + 0.5 * cell);
  folding.stepsPerUnit = static_cast<float>(1.0 / cell);
  folding.counts[0] = static_cast<float>(count - 1);
  return folding;
}

// The zones that some point in a cell of each code may have.
std::vector<std::uint64_t> paletteOf(const PlanCells& cells) {
  std::vector<std::uint64_t> palette = cells.palette.sets();
  const auto add = [&palette](std::uint64_t zones) { palette.push_back(zones | openCell); };
  for (const CutCell& cell : cells.cutCells) {
    add(palette[cell.zones[0]] | palette[cell.zones[1]]);
  }
  for (const CrossedCell& cell : cells.crossedCells) {
    add(palette[cell.decided] | cell.asked);
  }
  for (const TangledCell& cell : cells.tangledCells) {
    std::uint64_t zones = palette[cell.decided];
    for (std::size_t i = 0; i < std::size_t{2} * cell.numPairs; ++i) {
      zones |= std::uint64_t{1} << cells.decisions[cell.first + i].bit;
    }
    add(zones);
  }
  for (std::uint64_t& zones : palette) {
    zones |= openHeight;
  }
  return palette;
}

// The last phase: gives each cell its code. @return nothing when the grid is larger than it may be
std::optional<Grid> codedGrid(MarkedPlan plan, PlanCells cells, std::uint64_t alwaysAsked) {
  const std::size_t numCodes = cells.palette.sets().size() + cells.cutCells.size() +
                               cells.crossedCells.size() + cells.tangledCells.size();
  if (numCodes > mostCodes) {
    return std::nullopt;
  }
  Grid grid;
  grid.lattice = plan.lattice;
  grid.columns = folded(plan.lattice.x0, plan.lattice.cell, plan.lattice.columns);
  grid.rows = folded(plan.lattice.y0, plan.lattice.cell, plan.lattice.rows);
  grid.alwaysAsked = alwaysAsked;
  grid.palette = paletteOf(cells);
  grid.firstCut = static_cast<std::uint32_t>(cells.palette.sets().size());
  grid.firstCrossed = grid.firstCut + static_cast<std::uint32_t>(cells.cutCells.size());
  grid.firstTangled = grid.firstCrossed + static_cast<std::uint32_t>(cells.crossedCells.size());
  const auto codeOf = [&](const PlanCell& cell) {
    using Kind = PlanCell::Kind;
    const std::uint32_t first = cell.kind == Kind::Decided   ? 0
                                : cell.kind == Kind::Cut     ? grid.firstCut
                                : cell.kind == Kind::Crossed ? grid.firstCrossed
                                                             : grid.firstTangled;
    return static_cast<std::uint16_t>(first + cell.number);
  };
  grid.codes.reserve(cells.cells.size() + 2);
  for (const PlanCell& cell : cells.cells) {
    grid.codes.push_back(codeOf(cell));
  }
  grid.codes.push_back(codeOf(cells.ofNaN));
  grid.codes.push_back(codeOf(cells.farAway));
  grid.curves = std::move(plan.curves);
  grid.cutCells = std::move(cells.cutCells);
  grid.crossedCells = std::move(cells.crossedCells);
  grid.tangledCells = std::move(cells.tangledCells);
  grid.decisions = std::move(cells.decisions);
  if (grid.bytes() > Grid::mostBytes + bytesOf(grid.curves)) {
    return std::nullopt;
  }
  return grid;
}

}  // namespace

std::size_t Grid::bytes() const {
  return bytesOf(codes) + bytesOf(palette) + bytesOf(cutCells) + bytesOf(crossedCells) +
         bytesOf(tangledCells) + bytesOf(decisions) + bytesOf(curves);
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
