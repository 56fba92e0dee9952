#include "classify/Marking.h"

#include <filter/detection/Point.h>

#include "classify/Grid.h"

namespace orvantis::filter::classify {
namespace {

using detection::Point;

constexpr std::size_t mostMarks = std::size_t{1} << 20U;
// A border has fewer marks than that on the coarsest lattice, which the bound must let pass.
constexpr std::size_t marksPerBorder = 64;

// Rows of one column that a zone's border passes through, or that it does not.
struct Run {
  int first;
  int last;
  bool isMarked;
  bool isInside;
};

class Marker {
 public:
  Marker(MarkedPlan& plan, double safety) : plan_(plan), lattice_(plan.lattice), safety_(safety) {}

  void mark(const OutlinedZone& zone) {
    const Margins margins(zone.outline.bounds, lattice_, safety_);
    for (const Border& border : zone.outline.pieces) {
      std::uint32_t curve = Grid::curveOfZero;  // of a steep border: its zone is asked
      if (!margins.isSteep(border)) {
        curve = static_cast<std::uint32_t>(plan_.curves.size());
        plan_.curves.push_back(margins.curveOf(border));
      }
      spans_.clear();
      margins.cover(border, spans_);
      for (const Span& span : spans_) {
        for (int row = span.first; row <= span.last; ++row) {
          std::uint32_t& first = plan_.firstMark[plan_.index(span.column, row)];
          plan_.marks.push_back({curve, first, static_cast<std::uint8_t>(zone.zone->bit), {}});
          first = static_cast<std::uint32_t>(plan_.marks.size() - 1);
        }
      }
    }
  }

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
            plan_.decided[plan_.index(column, row)] |= std::uint64_t{1} << zone.zone->bit;
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

 private:
  Point centre(int column, int row) const {
    return {lattice_.x0 + (column + 0.5) * lattice_.cell, lattice_.y0 + (row + 0.5) * lattice_.cell};
  }

  Mark& firstMark(int column, int row) { return plan_.marks[plan_.firstMark[plan_.index(column, row)]]; }

  bool isMarkedBy(const OutlinedZone& zone, std::size_t cell) const {
    const std::uint32_t first = plan_.firstMark[cell];
    return first != MarkedPlan::noMark && plan_.marks[first].bit == zone.zone->bit;
  }

  void findRuns(const OutlinedZone& zone, int column) {
    runs_.clear();
    const int lastRow = lattice_.row(zone.outline.bounds.maxY) + 1;
    for (int row = lattice_.row(zone.outline.bounds.minY) - 1; row <= lastRow; ++row) {
      const bool isMarked = isMarkedBy(zone, plan_.index(column, row));
      if (runs_.empty() || runs_.back().isMarked != isMarked) {
        runs_.push_back({row, row, isMarked, false});
      }
      runs_.back().last = row;
    }
  }

  // Where a single curve separates the cells below a run from those above it, their verdicts are those of its
  // sides: nobody need be asked.
  void tellSides(int column, const Run& run, bool isInsideBelow, bool isInsideAbove) {
    const std::uint32_t number = firstMark(column, run.first).curve;
    for (int row = run.first; row <= run.last; ++row) {
      const Mark& mark = firstMark(column, row);
      const bool isAlone = mark.next == MarkedPlan::noMark || plan_.marks[mark.next].bit != mark.bit;
      if (!isAlone || mark.curve != number) {
        return;
      }
    }
    const Curve& curve = plan_.curves[number];
    const Point below = centre(column, run.first - 1);
    const Point above = centre(column, run.last + 1);
    const float valueBelow = valueOf(curve, below.x(), below.y());
    const float valueAbove = valueOf(curve, above.x(), above.y());
    Sides sides;
    if (valueBelow < -1.0F && valueAbove > 1.0F) {
      sides = {Sides::both, (isInsideBelow ? Sides::negative : 0U) | (isInsideAbove ? Sides::positive : 0U)};
    } else if (valueBelow > 1.0F && valueAbove < -1.0F) {
      sides = {Sides::both, (isInsideBelow ? Sides::positive : 0U) | (isInsideAbove ? Sides::negative : 0U)};
    }
    for (int row = run.first; row <= run.last; ++row) {
      firstMark(column, row).sides = sides;
    }
  }

  MarkedPlan& plan_;
  const Lattice& lattice_;
  double safety_;
  std::vector<Span> spans_;
  std::vector<Run> runs_;
};

}  // namespace

std::optional<MarkedPlan> markPlan(const PlannedZones& zones, double cell, double safety) {
  MarkedPlan plan(latticeOver(zones.site, cell));
  const std::size_t numCells =
      static_cast<std::size_t>(plan.lattice.columns) * static_cast<std::size_t>(plan.lattice.rows);
  if (numCells * sizeof(std::uint16_t) > Grid::mostBytes) {
    return std::nullopt;
  }
  plan.decided.assign(numCells, zones.alwaysAsked);
  plan.firstMark.assign(numCells, MarkedPlan::noMark);
  plan.curves.push_back({});  // the one of zero
  Marker marker(plan, safety);
  for (const OutlinedZone& zone : zones.outlined) {
    marker.mark(zone);
    if (plan.marks.size() > mostMarks + marksPerBorder * zone.outline.pieces.size()) {
      return std::nullopt;
    }
    marker.fill(zone);
  }
  return plan;
}

}  // namespace orvantis::filter::classify
