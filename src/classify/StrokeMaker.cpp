#include "classify/StrokeMaker.h"

#include <algorithm>
#include <array>
#include <utility>

#include <filter/detection/Point.h>

namespace orvantis::filter::classify {

StrokeMaker::StrokeMaker(const Lattice& lattice, double safety) : lattice_(lattice), safety_(safety) {}

void StrokeMaker::add(const OutlinedZone& zone) {
  if (zone.outline.pieces.empty()) {
    return;
  }
  zone_ = &zone;
  patch_ = lattice_.patchOf(zone.outline.bounds);
  markBorders(Margins(zone.outline.bounds, patch_, safety_));
  sortMarks();
  gapsBefore_.assign(1, {{0, patch_.rows - 1}, false});
  Mark* first = sortedMarks_.data();
  for (std::size_t k = 0; k < ends_.size(); ++k) {
    Mark* const end = sortedMarks_.data() + ends_[k];
    column_ = firstColumn_ + static_cast<int>(k);
    makeColumn(first, end);
    first = end;
  }
}

void StrokeMaker::markBorders(const Margins& margins) {
  marks_.clear();
  for (const Border& border : zone_->outline.pieces) {
    const bool isSteep = margins.isSteep(border);
    const auto curve = static_cast<std::uint32_t>(curves_.size());
    curves_.push_back(margins.curveOf(border));
    spans_.clear();
    margins.cover(border, spans_);
    for (const Span& span : spans_) {
      marks_.push_back({span.column, span.first, span.last, curve, isSteep});
    }
  }
}

// Sorts the marks by column, and keeps their order within a column.
void StrokeMaker::sortMarks() {
  const auto [first, last] = std::minmax_element(
      marks_.begin(), marks_.end(), [](const Mark& a, const Mark& b) { return a.column < b.column; });
  firstColumn_ = first->column;
  ends_.assign(static_cast<std::size_t>(last->column - firstColumn_) + 1, 0);
  for (const Mark& mark : marks_) {
    ++ends_[static_cast<std::size_t>(mark.column - firstColumn_)];
  }
  std::size_t begin = 0;
  for (std::size_t& end : ends_) {
    begin += std::exchange(end, begin);
  }
  sortedMarks_.resize(marks_.size());
  for (const Mark& mark : marks_) {
    sortedMarks_[ends_[static_cast<std::size_t>(mark.column - firstColumn_)]++] = mark;
  }
}

void StrokeMaker::makeColumn(Mark* first, Mark* end) {
  gaps_.clear();
  if (std::any_of(first, end, [](const Mark& mark) { return mark.isSteep; })) {
    // A steep edge may concern every row of the lattice, not only those of the zone's patch.
    append({-patch_.firstRow, lattice_.rows.size() - 1 - patch_.firstRow}, Stroke::Kind::Asked);
    gapsBefore_.clear();
    return;
  }
  std::sort(first, end, [](const Mark& a, const Mark& b) { return a.first < b.first; });
  int nextRow = 0;
  bool isInsideBelow = false;
  while (first != end) {
    gaps_.push_back({{nextRow, first->first - 1}, isInsideBelow});
    Run run{{first->first, first->last}, isInsideBelow, false};
    const Mark* const firstOfRun = first;
    for (; first != end && first->first <= run.rows.last + 1; ++first) {
      run.rows.last = std::max(run.rows.last, first->last);
    }
    nextRow = run.rows.last + 1;
    if (first != end) {
      const Rows above{nextRow, first->first - 1};
      run.isInsideAbove = isInside(above);
      if (run.isInsideAbove) {
        append(above, Stroke::Kind::Inside);
      }
    }
    makeRun(run, firstOfRun, first);
    isInsideBelow = run.isInsideAbove;
  }
  gaps_.push_back({{nextRow, patch_.rows - 1}, false});
  gaps_.swap(gapsBefore_);
}

// A neighbour in the column before that is not marked either has the same verdict, because no border lies
// between. Below the first border of a column and above the last one is the outside.
bool StrokeMaker::isInside(const Rows& rows) const {
  for (const Gap& gap : gapsBefore_) {
    if (gap.rows.first <= rows.last && rows.first <= gap.rows.last) {
      return gap.isInside;
    }
  }
  return zone_->zone->shape->within(detection::Point(middleX(), middleY(rows.first)));
}

void StrokeMaker::makeRun(const Run& run, const Mark* firstOfRun, const Mark* endOfRun) {
  constexpr std::ptrdiff_t mostMarks = 64;
  if (endOfRun - firstOfRun == 1) {
    makePart(run, run.rows, firstOfRun, endOfRun);
    return;
  }
  if (endOfRun - firstOfRun > mostMarks) {
    append(run.rows, Stroke::Kind::Asked);
    return;
  }
  starts_.clear();
  for (const Mark* mark = firstOfRun; mark != endOfRun; ++mark) {
    starts_.push_back(mark->first);
    starts_.push_back(mark->last + 1);
  }
  std::sort(starts_.begin(), starts_.end());
  starts_.erase(std::unique(starts_.begin(), starts_.end()), starts_.end());
  for (std::size_t i = 0; i + 1 < starts_.size(); ++i) {
    makePart(run, {starts_[i], starts_[i + 1] - 1}, firstOfRun, endOfRun);
  }
}

// The same borders pass through all rows of a part.
void StrokeMaker::makePart(const Run& run, const Rows& rows, const Mark* first, const Mark* end) {
  std::array<std::uint32_t, 2> curves{};
  std::size_t numCurves = 0;
  for (const Mark* mark = first; mark != end; ++mark) {
    const bool isHere = mark->first <= rows.first && mark->last >= rows.last;
    // A circle may have two marks in a column.
    const bool isKnown = numCurves > 0 && mark->curve == curves[0];
    if (isHere && !isKnown) {
      curves[std::min<std::size_t>(numCurves, 1)] = mark->curve;
      ++numCurves;
    }
  }
  if (numCurves == 1) {
    append(rows, Stroke::Kind::OneCurve, sidesOf(run, rows, curves_[curves[0]]), curves[0], curves[0]);
  } else if (numCurves == 2) {
    const std::array<const Curve*, 2> both{&curves_[curves[0]], &curves_[curves[1]]};
    append(rows, Stroke::Kind::TwoCurves, sidesOf(run, rows, both), curves[0], curves[1]);
  } else {
    append(rows, Stroke::Kind::Asked);
  }
}

// A part at the lower or upper end of its run has a neighbour whose verdict is known. No border lies between
// them, so the verdict holds in the part too, on the neighbour's side of its curves, and the zone is not
// asked for that side.
template <typename SideAt>
Sides StrokeMaker::toldByNeighbours(const Run& run, const Rows& rows, const SideAt& sideAt) const {
  Sides sides;
  if (rows.first == run.rows.first) {
    sides.tell(sideAt(middleX(), middleY(rows.first - 1)), run.isInsideBelow);
  }
  if (rows.last == run.rows.last) {
    const unsigned side = sideAt(middleX(), middleY(rows.last + 1));
    sides.tell(side & ~sides.known, run.isInsideAbove);
  }
  return sides;
}

Sides StrokeMaker::sidesOf(const Run& run, const Rows& rows, const Curve& curve) const {
  Sides sides = toldByNeighbours(run, rows, [&](double x, double y) { return sideOf(curve, x, y); });
  if (sides.known != Sides::both) {
    askSides(*zone_->zone->shape, boxOf(rows), curve, sides);
  }
  return sides;
}

Sides StrokeMaker::sidesOf(const Run& run, const Rows& rows,
                           const std::array<const Curve*, 2>& curves) const {
  Sides sides = toldByNeighbours(run, rows, [&](double x, double y) { return combinationOf(curves, x, y); });
  askSides(*zone_->zone->shape, boxOf(rows), curves, sides);
  return sides;
}

void StrokeMaker::append(const Rows& rows, Stroke::Kind kind, const Sides& sides, std::uint32_t curve,
                         std::uint32_t otherCurve) {
  const auto column = static_cast<std::uint32_t>(column_ + patch_.firstColumn);
  const auto first = static_cast<std::uint16_t>(rows.first + patch_.firstRow);
  const auto last = static_cast<std::uint16_t>(rows.last + patch_.firstRow);
  const auto bit = static_cast<std::uint8_t>(zone_->zone->bit);
  if (kind == Stroke::Kind::Asked && !strokes_.empty()) {
    Placed& before = strokes_.back();
    if (before.stroke.kind == kind && before.stroke.bit == bit && before.column == column &&
        before.stroke.last + 1 == first) {
      before.stroke.last = last;
      return;
    }
  }
  strokes_.push_back({column,
                      {first,
                       last,
                       bit,
                       kind,
                       static_cast<std::uint8_t>(sides.known & 0xFU),
                       static_cast<std::uint8_t>(sides.inside & 0xFU),
                       {curve, otherCurve}}});
}

Box StrokeMaker::boxOf(const Rows& rows) const {
  return {patch_.x0 + column_ * patch_.cell, patch_.y0 + rows.first * patch_.cell,
          patch_.x0 + (column_ + 1) * patch_.cell, patch_.y0 + (rows.last + 1) * patch_.cell};
}

}  // namespace orvantis::filter::classify
