#include "classify/Grid.h"

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <unordered_map>

#include <filter/detection/Point.h>

namespace orvantis::filter::classify {
namespace {

using detection::Point;

constexpr std::size_t cellsPerBlock = Lattice::blockSide * Lattice::blockSide;
constexpr std::size_t mostBytes = std::size_t{1} << 20U;
constexpr std::size_t mostMarks = std::size_t{1} << 20U;
// In one block of cells, that many marks for an edge are the most there can be.
constexpr std::size_t marksPerCurve = cellsPerBlock;
constexpr std::size_t mostCodes = std::size_t{1} << 16U;

std::uint64_t bitOf(int zone) {
  return std::uint64_t{1} << zone;
}

struct OutlinedZone {
  const FrozenZone* zone;
  Outline outline;
};

// Makes the grid for one cell size.
class GridBuilder {
 public:
  GridBuilder(const std::vector<OutlinedZone>& zones, std::uint64_t alwaysAsked, const Bounds& site,
              double cell, double safety)
      : zones_(zones), lattice_(latticeOver(site, cell)), margins_(site, lattice_, safety) {
    grid_.lattice = lattice_;
    grid_.alwaysAsked = alwaysAsked;
  }

  // Nothing when the grid would be larger than it may be.
  std::optional<Grid> build() {
    const std::size_t numCells =
        static_cast<std::size_t>(lattice_.columns) * static_cast<std::size_t>(lattice_.rows);
    decided_.assign(numCells, grid_.alwaysAsked);
    firstMark_.assign(numCells, noMark);
    for (const OutlinedZone& zone : zones_) {
      mark(zone);
      if (marks_.size() > mostMarks + marksPerCurve * zone.outline.pieces.size()) {
        return std::nullopt;
      }
      fill(zone);
    }
    makeCells();
    if (grid_.palette.size() + grid_.cutCells.size() + grid_.crossedCells.size() > mostCodes) {
      return std::nullopt;
    }
    makeBlocks();
    if (grid_.bytes() > mostBytes + grid_.curves.size() * sizeof(Curve)) {
      return std::nullopt;
    }
    return std::move(grid_);
  }

 private:
  static constexpr std::uint32_t noMark = std::numeric_limits<std::uint32_t>::max();
  static constexpr std::uint32_t steepCurve = std::numeric_limits<std::uint32_t>::max();

  // A curve of a zone in a cell; the marks of a cell form a list, those of one zone in succession.
  struct Mark {
    std::uint32_t curve;
    std::uint32_t next;
    std::uint8_t bit;
  };

  // What a cell is before its code is known.
  enum class Kind : std::uint8_t { Decided, Cut, Crossed };
  struct Cell {
    std::uint32_t number;  // in the palette, the cut cells or the crossed cells
    Kind kind;
  };

  std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(column) * static_cast<std::size_t>(lattice_.rows) +
           static_cast<std::size_t>(row);
  }
  Point centre(int column, int row) const {
    return {lattice_.x0 + (column + 0.5) * lattice_.cell, lattice_.y0 + (row + 0.5) * lattice_.cell};
  }

  void mark(const OutlinedZone& zone) {
    for (const Border& border : zone.outline.pieces) {
      std::uint32_t curve = steepCurve;
      if (!margins_.isSteep(border)) {
        curve = static_cast<std::uint32_t>(grid_.curves.size());
        grid_.curves.push_back(margins_.curveOf(border));
      }
      spans_.clear();
      margins_.cover(border, spans_);
      for (const Span& span : spans_) {
        for (int row = span.first; row <= span.last; ++row) {
          std::uint32_t& first = firstMark_[index(span.column, row)];
          marks_.push_back({curve, first, static_cast<std::uint8_t>(zone.zone->bit)});
          first = static_cast<std::uint32_t>(marks_.size() - 1);
        }
      }
    }
  }

  bool isMarkedBy(const OutlinedZone& zone, std::size_t cell) const {
    return firstMark_[cell] != noMark && marks_[firstMark_[cell]].bit == zone.zone->bit;
  }

  // Between two marked cells of a column no border is crossed: one verdict holds for the run. Below the first
  // and above the last one lies the outside.
  void fill(const OutlinedZone& zone) {
    const Bounds& bounds = zone.outline.bounds;
    if (zone.outline.pieces.empty()) {
      return;
    }
    const int lastColumn = lattice_.column(bounds.maxX);
    const int firstRow = lattice_.row(bounds.minY);
    const int lastRow = lattice_.row(bounds.maxY);
    for (int column = lattice_.column(bounds.minX); column <= lastColumn; ++column) {
      bool seenBorder = false;
      for (int row = firstRow; row <= lastRow; ++row) {
        if (isMarkedBy(zone, index(column, row))) {
          seenBorder = true;
          continue;
        }
        int end = row + 1;
        while (end <= lastRow && !isMarkedBy(zone, index(column, end))) {
          ++end;
        }
        const bool isEnclosed = seenBorder && end <= lastRow;
        if (isEnclosed && zone.zone->shape->within(centre(column, row))) {
          for (int inner = row; inner < end; ++inner) {
            decided_[index(column, inner)] |= bitOf(zone.zone->bit);
          }
        }
        row = end - 1;
      }
    }
  }

  void makeCells() {
    shapes_.fill(nullptr);
    for (const OutlinedZone& zone : zones_) {
      shapes_[static_cast<std::size_t>(zone.zone->bit)] = zone.zone;
    }
    cutsByCurve_.resize(grid_.curves.size());
    makeSpecialCells();
    cells_.reserve(decided_.size());
    for (int column = 0; column < lattice_.columns; ++column) {
      for (int row = 0; row < lattice_.rows; ++row) {
        const std::size_t cell = index(column, row);
        cells_.push_back(firstMark_[cell] == noMark ? decidedCell(decided_[cell]) : markedCell(column, row));
      }
    }
    grid_.firstCut = static_cast<std::uint32_t>(grid_.palette.size());
    grid_.firstCrossed = grid_.firstCut + static_cast<std::uint32_t>(grid_.cutCells.size());
    grid_.codeOfFarAway = grid_.firstCrossed;
    grid_.palette.resize(grid_.palette.size() + grid_.cutCells.size() + grid_.crossedCells.size(),
                         ~std::uint64_t{0});
  }

  // The first crossed cell, which is nowhere, asks every zone. The bits that a NaN has are the same whichever
  // coordinate it is.
  void makeSpecialCells() {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    std::uint64_t ofNaN = grid_.alwaysAsked;
    grid_.crossedCells.push_back({grid_.alwaysAsked, 0, static_cast<std::uint32_t>(zones_.size())});
    for (const OutlinedZone& zone : zones_) {
      grid_.decisions.push_back({0, 0, 0, 0, static_cast<std::uint8_t>(zone.zone->bit)});
      if (zone.zone->shape->within(Point(nan, nan))) {
        ofNaN |= bitOf(zone.zone->bit);
      }
    }
    grid_.codeOfNaN = decidedCell(ofNaN).number;
  }

  Cell decidedCell(std::uint64_t mask) {
    if (lastDecided_ && grid_.palette[*lastDecided_] == mask) {
      return {*lastDecided_, Kind::Decided};
    }
    const auto [entry, isNew] =
        paletteIndex_.try_emplace(mask, static_cast<std::uint32_t>(grid_.palette.size()));
    if (isNew) {
      grid_.palette.push_back(mask);
    }
    lastDecided_ = entry->second;
    return {entry->second, Kind::Decided};
  }

  Cell markedCell(int column, int row) {
    const std::size_t cell = index(column, row);
    const std::uint32_t first = firstMark_[cell];
    const bool hasOneMark = marks_[first].next == noMark;
    if (hasOneMark && marks_[first].curve != steepCurve) {
      if (const std::optional<Cell> cut = cutCell(column, row, marks_[first])) {
        return *cut;
      }
    }
    return crossedCell(column, row);
  }

  std::optional<Cell> cutCell(int column, int row, const Mark& mark) {
    const std::uint64_t bit = bitOf(mark.bit);
    const std::uint64_t rest = decided_[index(column, row)] & ~bit;
    const Decision decision = decide(column, row, {mark.curve}, 1, mark.bit);
    constexpr std::uint16_t bothSides = 0b11;
    if (decision.known != bothSides) {
      return std::nullopt;
    }
    const std::uint64_t negative = rest | ((decision.inside & 0b01) != 0 ? bit : 0);
    const std::uint64_t positive = rest | ((decision.inside & 0b10) != 0 ? bit : 0);
    for (const std::uint32_t number : cutsByCurve_[mark.curve]) {
      if (grid_.cutCells[number].negative == negative && grid_.cutCells[number].positive == positive) {
        return Cell{number, Kind::Cut};
      }
    }
    const auto number = static_cast<std::uint32_t>(grid_.cutCells.size());
    grid_.cutCells.push_back({grid_.curves[mark.curve], negative, positive});
    grid_.cutZones.push_back(mark.bit);
    cutsByCurve_[mark.curve].push_back(number);
    return Cell{number, Kind::Cut};
  }

  Cell crossedCell(int column, int row) {
    const std::size_t cell = index(column, row);
    const auto firstDecision = static_cast<std::uint32_t>(grid_.decisions.size());
    std::uint64_t undecided = 0;
    for (std::uint32_t at = firstMark_[cell]; at != noMark;) {
      const std::uint8_t bit = marks_[at].bit;
      std::array<std::uint32_t, Decision::mostCurves> curves{};
      std::size_t numCurves = 0;
      bool hasTable = true;
      for (; at != noMark && marks_[at].bit == bit; at = marks_[at].next) {
        if (marks_[at].curve == steepCurve || numCurves == Decision::mostCurves) {
          hasTable = false;
        } else {
          curves[numCurves++] = marks_[at].curve;
        }
      }
      Decision decision{0, 0, 0, 0, bit};
      if (hasTable) {
        decision = decide(column, row, curves, numCurves, bit);
        decision.firstCurve = static_cast<std::uint32_t>(grid_.decisionCurves.size());
        grid_.decisionCurves.insert(grid_.decisionCurves.end(), curves.begin(), curves.begin() + numCurves);
      }
      grid_.decisions.push_back(decision);
      undecided |= bitOf(bit);
    }
    const auto numDecisions = static_cast<std::uint32_t>(grid_.decisions.size()) - firstDecision;
    grid_.crossedCells.push_back({decided_[cell] & ~undecided, firstDecision, numDecisions});
    return {static_cast<std::uint32_t>(grid_.crossedCells.size() - 1), Kind::Crossed};
  }

  // Asks the zone for one point of each combination of sides that a sample of the cell shows.
  Decision decide(int column, int row, const std::array<std::uint32_t, Decision::mostCurves>& curves,
                  std::size_t numCurves, std::uint8_t bit) const {
    Decision decision{0, 0, 0, static_cast<std::uint8_t>(numCurves), bit};
    const int steps = numCurves == 1 ? 1 : 4;
    for (int i = 0; i <= steps; ++i) {
      for (int j = 0; j <= steps; ++j) {
        const double x = lattice_.x0 + (column + static_cast<double>(i) / steps) * lattice_.cell;
        const double y = lattice_.y0 + (row + static_cast<double>(j) / steps) * lattice_.cell;
        unsigned sides = 0;
        bool isClear = true;
        for (std::size_t k = 0; k < numCurves; ++k) {
          const double value = grid_.curves[curves[k]](x, y);
          sides |= value > 0.0 ? 1U << k : 0U;
          isClear = isClear && std::abs(value) > 1.0;
        }
        const unsigned combination = 1U << sides;
        if (isClear && (decision.known & combination) == 0) {
          decision.known = static_cast<std::uint16_t>(decision.known | combination);
          if (shapes_[bit]->shape->within(Point(x, y))) {
            decision.inside = static_cast<std::uint16_t>(decision.inside | combination);
          }
        }
      }
    }
    return decision;
  }

  std::uint16_t codeOf(const Cell& cell) const {
    const std::uint32_t first = cell.kind == Kind::Decided ? 0
                                : cell.kind == Kind::Cut   ? grid_.firstCut
                                                           : grid_.firstCrossed;
    return static_cast<std::uint16_t>(first + cell.number);
  }

  void makeBlocks() {
    constexpr int side = Lattice::blockSide;
    grid_.blocksPerRow = lattice_.columns / side;
    // Uniform blocks share these, one for each code of the palette that is a set of zones.
    for (std::uint32_t code = 0; code < grid_.firstCut; ++code) {
      grid_.codes.push_back(static_cast<std::uint16_t>(code));
    }
    for (int row = 0; row < lattice_.rows; row += side) {
      for (int column = 0; column < lattice_.columns; column += side) {
        std::array<std::uint16_t, cellsPerBlock> block{};
        bool isUniform = true;
        for (int j = 0; j < side; ++j) {
          for (int i = 0; i < side; ++i) {
            const std::uint16_t code = codeOf(cells_[index(column + i, row + j)]);
            block[static_cast<std::size_t>(j * side + i)] = code;
            isUniform = isUniform && code == block[0];
          }
        }
        if (isUniform && block[0] < grid_.firstCut) {
          grid_.blocks.push_back(static_cast<std::uint32_t>(block[0]) << 6U);
        } else {
          grid_.blocks.push_back(static_cast<std::uint32_t>(grid_.codes.size()) << 6U | (cellsPerBlock - 1U));
          grid_.codes.insert(grid_.codes.end(), block.begin(), block.end());
        }
      }
    }
    grid_.codes.resize(grid_.codes.size() + 2, 0);
  }

  const std::vector<OutlinedZone>& zones_;
  Lattice lattice_;
  Margins margins_;
  Grid grid_;

  std::vector<std::uint64_t> decided_;  // by cell
  std::vector<std::uint32_t> firstMark_;
  std::vector<Mark> marks_;
  std::vector<Span> spans_;
  std::vector<Cell> cells_;
  std::array<const FrozenZone*, 64> shapes_{};
  std::vector<std::vector<std::uint32_t>> cutsByCurve_;
  std::unordered_map<std::uint64_t, std::uint32_t> paletteIndex_;
  std::optional<std::uint32_t> lastDecided_;
};

template <typename T>
std::size_t bytesOf(const std::vector<T>& values) {
  return values.size() * sizeof(T);
}

}  // namespace

std::size_t Grid::bytes() const {
  return bytesOf(blocks) + bytesOf(codes) + bytesOf(palette) + bytesOf(cutCells) + bytesOf(cutZones) +
         bytesOf(crossedCells) + bytesOf(decisions) + bytesOf(decisionCurves) + bytesOf(curves);
}

Grid gridOf(const std::vector<FrozenZone>& zones, double safety) {
  std::vector<OutlinedZone> outlined;
  std::uint64_t alwaysAsked = 0;
  Bounds site;
  for (const FrozenZone& zone : zones) {
    if (std::optional<Outline> outline = outlineOf(*zone.shape)) {
      site.include(outline->bounds);
      outlined.push_back({&zone, std::move(*outline)});
    } else {
      alwaysAsked |= bitOf(zone.bit);
    }
  }
  for (double cell = suitableCell(site);; cell *= 2.0) {
    std::optional<Grid> grid = GridBuilder(outlined, alwaysAsked, site, cell, safety).build();
    if (grid) {
      return std::move(*grid);
    }
  }
}

}  // namespace orvantis::filter::classify
