#include "classify/Grid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <unordered_map>

#include <filter/detection/Point.h>

namespace orvantis::filter::classify {
namespace {

using detection::Point;

constexpr std::size_t mostBytes = std::size_t{1} << 20U;
constexpr std::size_t mostMarks = std::size_t{1} << 20U;
// A border has fewer marks than that on the coarsest lattice, which the bound must let pass.
constexpr std::size_t marksPerBorder = 64;
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
    grid_.curves.push_back({});
  }

  // Nothing when the grid would be larger than it may be.
  std::optional<Grid> build() {
    const std::size_t numCells =
        static_cast<std::size_t>(lattice_.columns) * static_cast<std::size_t>(lattice_.rows);
    if (numCells * sizeof(std::uint16_t) > mostBytes) {
      return std::nullopt;
    }
    decided_.assign(numCells, grid_.alwaysAsked);
    firstMark_.assign(numCells, noMark);
    for (const OutlinedZone& zone : zones_) {
      mark(zone);
      if (marks_.size() > mostMarks + marksPerBorder * zone.outline.pieces.size()) {
        return std::nullopt;
      }
      fill(zone);
    }
    makeCells();
    if (grid_.palette.size() + grid_.cutCells.size() + grid_.cellDecisions.size() > mostCodes) {
      return std::nullopt;
    }
    makeCodes();
    if (grid_.bytes() > mostBytes + grid_.curves.size() * sizeof(Curve)) {
      return std::nullopt;
    }
    return std::move(grid_);
  }

 private:
  static constexpr std::uint32_t noMark = std::numeric_limits<std::uint32_t>::max();
  static constexpr std::uint32_t mostTabled = std::numeric_limits<std::uint16_t>::max();

  // The verdicts on the combinations of sides of up to two curves; see Decision.
  struct Sides {
    unsigned known = 0;
    unsigned inside = 0;
  };
  // Of a single curve, taken twice.
  static constexpr unsigned negativeSide = 0b0001;
  static constexpr unsigned positiveSide = 0b1000;
  static constexpr unsigned bothSides = negativeSide | positiveSide;

  // A curve of a zone in a cell; the marks of a cell form a list, those of one zone in succession.
  struct Mark {
    std::uint32_t curve;
    std::uint32_t next;
    std::uint8_t bit;
    Sides sides;  // of the curve, when it is the zone's only one here and they are known
  };

  // What a cell is before its code is known.
  enum class Kind : std::uint8_t { Decided, Cut, Crossed, Tangled };
  struct Cell {
    std::uint32_t number;  // of its kind; of a decided one in the palette
    Kind kind;
  };

  std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(column) * static_cast<std::size_t>(lattice_.rows) +
           static_cast<std::size_t>(row);
  }
  Point centre(int column, int row) const {
    return {lattice_.x0 + (column + 0.5) * lattice_.cell, lattice_.y0 + (row + 0.5) * lattice_.cell};
  }

  float valueOf(std::uint32_t curve, double x, double y) const {
    return grid_.curves[curve](static_cast<float>(x - lattice_.middleX()),
                               static_cast<float>(y - lattice_.middleY()));
  }

  void mark(const OutlinedZone& zone) {
    for (const Border& border : zone.outline.pieces) {
      std::uint32_t curve = Grid::curveOfZero;  // of a steep border: its zone is asked
      if (!margins_.isSteep(border)) {
        curve = static_cast<std::uint32_t>(grid_.curves.size());
        grid_.curves.push_back(margins_.curveOf(border));
      }
      spans_.clear();
      margins_.cover(border, spans_);
      for (const Span& span : spans_) {
        for (int row = span.first; row <= span.last; ++row) {
          std::uint32_t& first = firstMark_[index(span.column, row)];
          marks_.push_back({curve, first, static_cast<std::uint8_t>(zone.zone->bit), {}});
          first = static_cast<std::uint32_t>(marks_.size() - 1);
        }
      }
    }
  }

  bool isMarkedBy(const OutlinedZone& zone, std::size_t cell) const {
    return firstMark_[cell] != noMark && marks_[firstMark_[cell]].bit == zone.zone->bit;
  }

  // Rows of one column that the zone's border passes through, or that it does not.
  struct Run {
    int first;
    int last;
    bool isMarked;
    bool isInside;
  };

  // Between two marked cells of a column no border is crossed: one verdict holds for the run. Below the first
  // and above the last one lies the outside.
  void fill(const OutlinedZone& zone) {
    if (zone.outline.pieces.empty()) {
      return;
    }
    const int lastColumn = lattice_.column(zone.outline.bounds.maxX);
    for (int column = lattice_.column(zone.outline.bounds.minX); column <= lastColumn; ++column) {
      findRuns(zone, column);
      for (std::size_t i = 0; i < runs_.size(); ++i) {
        Run& run = runs_[i];
        const bool isEnclosed = i > 0 && i + 1 < runs_.size();
        if (!run.isMarked && isEnclosed && zone.zone->shape->within(centre(column, run.first))) {
          run.isInside = true;
          for (int row = run.first; row <= run.last; ++row) {
            decided_[index(column, row)] |= bitOf(zone.zone->bit);
          }
        }
      }
      for (std::size_t i = 0; i < runs_.size(); ++i) {
        if (runs_[i].isMarked) {
          const bool isInsideBelow = i > 0 && runs_[i - 1].isInside;
          const bool isInsideAbove = i + 1 < runs_.size() && runs_[i + 1].isInside;
          tellSides(column, runs_[i], isInsideBelow, isInsideAbove);
        }
      }
    }
  }

  void findRuns(const OutlinedZone& zone, int column) {
    runs_.clear();
    const int lastRow = lattice_.row(zone.outline.bounds.maxY) + 1;
    for (int row = lattice_.row(zone.outline.bounds.minY) - 1; row <= lastRow; ++row) {
      const bool isMarked = isMarkedBy(zone, index(column, row));
      if (runs_.empty() || runs_.back().isMarked != isMarked) {
        runs_.push_back({row, row, isMarked, false});
      }
      runs_.back().last = row;
    }
  }

  // Where a single curve separates the cells below a run from those above it, their verdicts are those of its
  // sides: nobody need be asked.
  void tellSides(int column, const Run& run, bool isInsideBelow, bool isInsideAbove) {
    const std::uint32_t curve = marks_[firstMark_[index(column, run.first)]].curve;
    for (int row = run.first; row <= run.last; ++row) {
      const Mark& mark = marks_[firstMark_[index(column, row)]];
      const bool isAlone = mark.next == noMark || marks_[mark.next].bit != mark.bit;
      if (!isAlone || mark.curve != curve) {
        return;
      }
    }
    const Point below = centre(column, run.first - 1);
    const Point above = centre(column, run.last + 1);
    const float valueBelow = valueOf(curve, below.x(), below.y());
    const float valueAbove = valueOf(curve, above.x(), above.y());
    Sides sides;
    if (valueBelow < -1.0F && valueAbove > 1.0F) {
      sides = {bothSides, (isInsideBelow ? negativeSide : 0U) | (isInsideAbove ? positiveSide : 0U)};
    } else if (valueBelow > 1.0F && valueAbove < -1.0F) {
      sides = {bothSides, (isInsideBelow ? positiveSide : 0U) | (isInsideAbove ? negativeSide : 0U)};
    }
    for (int row = run.first; row <= run.last; ++row) {
      marks_[firstMark_[index(column, row)]].sides = sides;
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
    grid_.palette.push_back(~std::uint64_t{0});
    grid_.cellDecisions.insert(grid_.cellDecisions.end(), tangledCells_.begin(), tangledCells_.end());
  }

  // The first tangled cell, which is nowhere, asks every zone. The bits that a NaN has are the same whichever
  // coordinate it is.
  void makeSpecialCells() {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    std::uint64_t ofNaN = grid_.alwaysAsked;
    for (const OutlinedZone& zone : zones_) {
      grid_.decisions.push_back(asking(static_cast<std::uint8_t>(zone.zone->bit)));
      if (zone.zone->shape->within(Point(nan, nan))) {
        ofNaN |= bitOf(zone.zone->bit);
      }
    }
    farAway_ = addCell(0, grid_.alwaysAsked);
    grid_.codeOfNaN = decidedCell(ofNaN).number;
  }

  static Decision asking(std::uint8_t bit) { return {{Grid::curveOfZero, Grid::curveOfZero}, bit, 0, 0}; }

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
    if (marks_[first].next == noMark) {
      if (const std::optional<Cell> cut = cutCell(column, row, marks_[first])) {
        return *cut;
      }
    }
    return crossedCell(column, row);
  }

  std::optional<Cell> cutCell(int column, int row, const Mark& mark) {
    const Sides sides = sidesOf(column, row, mark, {mark.curve, mark.curve});
    if (sides.known != bothSides) {
      return std::nullopt;
    }
    const std::uint64_t bit = bitOf(mark.bit);
    const std::uint64_t rest = decided_[index(column, row)];
    const std::array<std::uint16_t, 2> zones = {
        codeOfSet(rest | ((sides.inside & negativeSide) != 0 ? bit : 0)),
        codeOfSet(rest | ((sides.inside & positiveSide) != 0 ? bit : 0))};
    for (const std::uint32_t number : cutsByCurve_[mark.curve]) {
      if (grid_.cutCells[number].zones == zones) {
        return Cell{number, Kind::Cut};
      }
    }
    const auto number = static_cast<std::uint32_t>(grid_.cutCells.size());
    grid_.cutCells.push_back({grid_.curves[mark.curve], zones, mark.bit});
    cutsByCurve_[mark.curve].push_back(number);
    return Cell{number, Kind::Cut};
  }

  Cell crossedCell(int column, int row) {
    const std::size_t cell = index(column, row);
    const auto firstDecision = static_cast<std::uint32_t>(grid_.decisions.size());
    for (std::uint32_t at = firstMark_[cell]; at != noMark;) {
      const Mark& first = marks_[at];
      std::uint32_t numCurves = 0;
      std::array<std::uint32_t, Decision::numCurves> curves{first.curve, first.curve};
      bool hasTable = true;
      for (; at != noMark && marks_[at].bit == first.bit; at = marks_[at].next) {
        const std::uint32_t curve = marks_[at].curve;
        hasTable = hasTable && numCurves < Decision::numCurves && curve <= mostTabled;
        if (hasTable) {
          curves[numCurves++] = curve;
        }
      }
      grid_.decisions.push_back(hasTable ? decision(column, row, first, curves) : asking(first.bit));
    }
    return addCell(firstDecision, decided_[cell]);
  }

  // The cell of the last decisions.
  Cell addCell(std::uint32_t firstDecision, std::uint64_t decided) {
    const std::optional<CrossedCell> crossed = combined(firstDecision, decided);
    if (grid_.decisions.size() % 2 != 0) {
      grid_.decisions.emplace_back(grid_.decisions.back());
    }
    const std::size_t numPairs = (grid_.decisions.size() - firstDecision) / 2;
    std::vector<CellDecisions>& decisions = crossed ? grid_.cellDecisions : tangledCells_;
    decisions.push_back({firstDecision, static_cast<std::uint16_t>(numPairs), codeOfSet(decided)});
    if (crossed) {
      grid_.crossedCells.push_back(*crossed);
    }
    return {static_cast<std::uint32_t>(decisions.size() - 1), crossed ? Kind::Crossed : Kind::Tangled};
  }

  std::uint16_t codeOfSet(std::uint64_t zones) {
    return static_cast<std::uint16_t>(decidedCell(zones).number);
  }

  // Tells the zones on each combination of sides from the last cell's decisions together.
  std::optional<CrossedCell> combined(std::uint32_t firstDecision, std::uint64_t decided) {
    const std::span<const Decision> decisions = std::span(grid_.decisions).subspan(firstDecision);
    std::array<std::uint16_t, CrossedCell::numCurves> curves{};
    if (!collectCurves(decisions, curves)) {
      return std::nullopt;
    }
    CrossedCell cell;
    cell.zonesOn.fill(CrossedCell::noSet);
    for (std::size_t k = 0; k < curves.size(); ++k) {
      const Curve& curve = grid_.curves[curves[k]];
      cell.q[k] = curve.q;
      cell.a[k] = curve.a;
      cell.b[k] = curve.b;
      cell.c[k] = curve.c;
    }
    for (unsigned sides = 0; sides < cell.zonesOn.size(); ++sides) {
      const auto sideOf = [&](std::uint16_t curve) {
        return sides >> (std::ranges::find(curves, curve) - curves.begin()) & 1U;
      };
      // A curve that stands several times has one side.
      unsigned possible = 0;
      for (std::size_t k = 0; k < curves.size(); ++k) {
        possible |= sideOf(curves[k]) << k;
      }
      bool isKnown = possible == sides;
      std::uint64_t zones = decided;
      for (const Decision& decision : decisions) {
        const unsigned combination = sideOf(decision.curves[0]) | sideOf(decision.curves[1]) << 1U;
        isKnown = isKnown && (decision.known >> combination & 1U) != 0;
        zones |= (decision.inside >> combination & 1U) != 0 ? bitOf(decision.bit) : 0;
      }
      if (isKnown) {
        cell.zonesOn[sides] = codeOfSet(zones);
      }
    }
    return cell;
  }

  // @return false when the decisions have more curves than that, or none
  static bool collectCurves(std::span<const Decision> decisions,
                            std::array<std::uint16_t, CrossedCell::numCurves>& curves) {
    std::size_t size = 0;
    for (const Decision& decision : decisions) {
      for (const std::uint16_t curve : decision.curves) {
        const auto known = std::span(curves).first(size);
        if (std::ranges::find(known, curve) != known.end()) {
          continue;
        }
        if (curve == Grid::curveOfZero || size == curves.size()) {
          return false;
        }
        curves[size++] = curve;
      }
    }
    std::fill(curves.begin() + static_cast<std::ptrdiff_t>(size), curves.end(), curves[0]);
    return size > 0;
  }

  Decision decision(int column, int row, const Mark& mark, const std::array<std::uint32_t, 2>& curves) const {
    const Sides sides = sidesOf(column, row, mark, curves);
    return {{static_cast<std::uint16_t>(curves[0]), static_cast<std::uint16_t>(curves[1])},
            mark.bit,
            static_cast<std::uint8_t>(sides.known & 0xFU),
            static_cast<std::uint8_t>(sides.inside & 0xFU)};
  }

  Sides sidesOf(int column, int row, const Mark& mark, const std::array<std::uint32_t, 2>& curves) const {
    return mark.sides.known != 0 ? mark.sides : verdicts(column, row, mark.bit, curves);
  }

  // Asks the zone for one point of each combination of sides that a sample of the cell shows.
  Sides verdicts(int column, int row, std::uint8_t bit, const std::array<std::uint32_t, 2>& curves) const {
    Sides sides;
    const int steps = curves[0] == curves[1] ? 1 : 4;
    for (int i = 0; i <= steps; ++i) {
      for (int j = 0; j <= steps; ++j) {
        const double x = lattice_.x0 + (column + static_cast<double>(i) / steps) * lattice_.cell;
        const double y = lattice_.y0 + (row + static_cast<double>(j) / steps) * lattice_.cell;
        const float first = valueOf(curves[0], x, y);
        const float second = valueOf(curves[1], x, y);
        const bool isClear = std::abs(first) > 1.0F && std::abs(second) > 1.0F;
        const unsigned combination = 1U << ((first > 0.0F ? 1U : 0U) | (second > 0.0F ? 2U : 0U));
        if (isClear && (sides.known & combination) == 0) {
          sides.known |= combination;
          sides.inside |= shapes_[bit]->shape->within(Point(x, y)) ? combination : 0U;
        }
      }
    }
    return sides;
  }

  std::uint16_t codeOf(const Cell& cell) const {
    const auto firstTangled = grid_.firstCrossed + static_cast<std::uint32_t>(grid_.crossedCells.size());
    const std::uint32_t first = cell.kind == Kind::Decided   ? 0
                                : cell.kind == Kind::Cut     ? grid_.firstCut
                                : cell.kind == Kind::Crossed ? grid_.firstCrossed
                                                             : firstTangled;
    return static_cast<std::uint16_t>(first + cell.number);
  }

  void makeCodes() {
    grid_.codeOfFarAway = codeOf(farAway_);
    for (const Cell& cell : cells_) {
      grid_.codes.push_back(codeOf(cell));
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
  std::vector<Run> runs_;
  std::vector<Cell> cells_;
  std::vector<CellDecisions> tangledCells_;
  Cell farAway_{};
  std::array<const FrozenZone*, numBits> shapes_{};
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
  return bytesOf(codes) + bytesOf(palette) + bytesOf(cutCells) + bytesOf(crossedCells) +
         bytesOf(cellDecisions) + bytesOf(decisions) + bytesOf(curves);
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
