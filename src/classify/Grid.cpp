#include "classify/Grid.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "classify/Cells.h"
#include "classify/Flags.h"
#include "classify/Lattice.h"
#include "classify/Strokes.h"

namespace orvantis::filter::classify {
namespace {

std::size_t numCellsOf(const Lattice& lattice) {
  return static_cast<std::size_t>(lattice.columns.size()) * static_cast<std::size_t>(lattice.rows.size());
}

template <typename T>
std::size_t bytesOf(const std::vector<T>& values) {
  return values.size() * sizeof(T);
}

// By code, the zones that some point in a cell of that code may be in.
std::vector<std::uint64_t> paletteOf(const PlanCells& cells) {
  std::vector<std::uint64_t> palette = cells.palette.sets();
  const auto add = [&palette](std::uint64_t zones, unsigned deciding) {
    palette.push_back(zones | openCell | decidedWhile(deciding));
  };
  for (const CutCell& cell : cells.cutCells) {
    add(palette[cell.zones[0]] | palette[cell.zones[1]], cell.zone);
  }
  for (const CrossedCell& cell : cells.crossedCells) {
    add(palette[cell.decided] | cell.asked, always);
  }
  for (const TangledCell& cell : cells.tangledCells) {
    std::uint64_t zones = palette[cell.decided];
    for (std::size_t i = 0; i < std::size_t{2} * cell.numPairs; ++i) {
      zones |= std::uint64_t{1} << cells.decisions[cell.first + i].bit;
    }
    add(zones, always);
  }
  for (std::uint64_t& zones : palette) {
    zones |= openHeight;
  }
  return palette;
}

// The last phase: gives each cell its code.
Grid codedGrid(const Lattice& lattice, PlanCells cells, std::uint64_t alwaysAsked) {
  Grid grid;
  grid.columns = lattice.columns.folding();
  grid.rows = lattice.rows.folding();
  grid.alwaysAsked = alwaysAsked;
  grid.palette = paletteOf(cells);
  grid.firstCut = static_cast<std::uint32_t>(cells.palette.sets().size());
  grid.firstCrossed = grid.firstCut + static_cast<std::uint32_t>(cells.cutCells.size());
  grid.firstTangled = grid.firstCrossed + static_cast<std::uint32_t>(cells.crossedCells.size());
  const std::array<std::uint32_t, 4> first{0, grid.firstCut, grid.firstCrossed, grid.firstTangled};
  const auto codeOf = [&](const PlanCell& cell) {
    return static_cast<std::uint16_t>(first[static_cast<std::size_t>(cell.kind)] + cell.number);
  };
  grid.codes.resize(numCellsOf(lattice) + 2);
  std::uint16_t* next = grid.codes.data();
  for (const CellRun& run : cells.runs) {
    next = std::fill_n(next, run.length, codeOf(run.cell));
  }
  grid.codes[grid.cellOfNaN()] = codeOf(cells.ofNaN);
  grid.codes[grid.cellFarAway()] = codeOf(cells.farAway);
  grid.curves = std::move(cells.curves);
  grid.cutCells = std::move(cells.cutCells);
  grid.crossedCells = std::move(cells.crossedCells);
  grid.tangledCells = std::move(cells.tangledCells);
  grid.decisions = std::move(cells.decisions);
  return grid;
}

std::optional<Grid> gridOn(const Lattice& lattice, const std::vector<OutlinedZone>& zones,
                           std::uint64_t alwaysAsked, double safety) {
  if (numCellsOf(lattice) * sizeof(std::uint16_t) > Grid::mostBytes) {
    return std::nullopt;
  }
  const std::optional<Strokes> strokes = strokesOf(zones, lattice, safety);
  if (!strokes) {
    return std::nullopt;
  }
  std::optional<PlanCells> cells = cellsOf(zones, *strokes, lattice.rows.size(), alwaysAsked);
  if (!cells) {
    return std::nullopt;
  }
  Grid grid = codedGrid(lattice, std::move(*cells), alwaysAsked);
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
  std::vector<OutlinedZone> outlined;
  std::vector<Bounds> bounds;
  std::uint64_t alwaysAsked = 0;
  for (const FrozenZone& zone : zones) {
    if (std::optional<Outline> outline = outlineOf(*zone.shape)) {
      if (!outline->pieces.empty()) {
        bounds.push_back(outline->bounds);
      }
      outlined.push_back({&zone, std::move(*outline)});
    } else {
      alwaysAsked |= std::uint64_t{1} << zone.bit;
    }
  }
  const Lattices lattices(bounds);
  for (double factor = 1.0;; factor *= 1.5) {
    std::optional<Grid> grid = gridOn(lattices.coarser(factor), outlined, alwaysAsked, safety);
    if (grid) {
      return std::move(*grid);
    }
  }
}

}  // namespace orvantis::filter::classify
