#include "classify/Cells.h"

#include <algorithm>
#include <bit>
#include <limits>

#include <filter/detection/Point.h>

#include "classify/CellMaker.h"

namespace orvantis::filter::classify {
namespace {

constexpr std::size_t mostCodes = std::size_t{1} << 16U;

// Goes through the rows of a column at which strokes begin or end.
class ColumnSweep {
 public:
  ColumnSweep(int numRows, std::uint64_t everywhere, CellMaker& maker)
      : numRows_(static_cast<std::size_t>(numRows)),
        held_(everywhere),
        maker_(maker),
        first_(numRows_ + 1, none),
        changes_(numRows_ / bitsPerWord + 1, 0) {}

  void run(const Stroke* first, const Stroke* end) {
    strokes_ = first;
    next_.resize(2 * static_cast<std::size_t>(end - first));
    for (const Stroke* stroke = first; stroke != end; ++stroke) {
      const auto number = static_cast<std::uint32_t>(stroke - first);
      note(stroke->first, 2 * number);
      note(stroke->last + std::size_t{1}, 2 * number + 1);
    }
    std::size_t row = 0;
    for (std::size_t word = 0; word < changes_.size(); ++word) {
      for (; changes_[word] != 0; changes_[word] &= changes_[word] - 1) {
        const std::size_t next =
            word * bitsPerWord + static_cast<std::size_t>(std::countr_zero(changes_[word]));
        add(next - row);
        row = next;
        for (std::uint32_t change = first_[row]; change != none; change = next_[change]) {
          apply(strokes_[change / 2], change % 2 == 0);
        }
        first_[row] = none;
      }
    }
    add(numRows_ - row);
  }

 private:
  static constexpr std::uint32_t none = ~std::uint32_t{0};
  static constexpr std::size_t bitsPerWord = 64;

  void note(std::size_t row, std::uint32_t change) {
    next_[change] = first_[row];
    first_[row] = change;
    changes_[row / bitsPerWord] |= std::uint64_t{1} << row % bitsPerWord;
  }

  void apply(const Stroke& stroke, bool begins) {
    if (stroke.kind == Stroke::Kind::Inside) {
      held_ ^= std::uint64_t{1} << stroke.bit;
    } else if (begins) {
      borders_.insert(std::lower_bound(borders_.begin(), borders_.end(), &stroke), &stroke);
    } else {
      borders_.erase(std::lower_bound(borders_.begin(), borders_.end(), &stroke));
    }
  }

  void add(std::size_t length) {
    if (length > 0) {
      maker_.cells().runs.push_back({maker_.cellOf(held_, borders_), static_cast<std::uint16_t>(length)});
    }
  }

  std::size_t numRows_;
  std::uint64_t held_;
  CellMaker& maker_;
  const Stroke* strokes_ = nullptr;
  std::vector<const Stroke*> borders_;  // in the order of the strokes
  std::vector<std::uint32_t>
      first_;  // by row, a change there: twice the number of a stroke, plus 1 for its end
  std::vector<std::uint32_t> next_;     // by change, another change in the same row
  std::vector<std::uint64_t> changes_;  // by row, a bit where there is one
};

// A set of zones for points with a NaN coordinate, and a cell that asks every zone.
void makeSpecialCells(const std::vector<OutlinedZone>& zones, std::uint64_t alwaysAsked, CellMaker& maker) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  std::uint64_t every = 0;
  std::uint64_t ofNaN = alwaysAsked;
  for (const OutlinedZone& zone : zones) {
    const std::uint64_t bit = std::uint64_t{1} << zone.zone->bit;
    every |= bit;
    ofNaN |= zone.zone->shape->within(detection::Point(nan, nan)) ? bit : 0;
  }
  maker.cells().ofNaN = maker.cellOf(ofNaN, {});
  maker.cells().farAway = maker.askingCell(alwaysAsked, every);
}

}  // namespace

std::optional<PlanCells> cellsOf(const std::vector<OutlinedZone>& zones, const Strokes& strokes, int numRows,
                                 std::uint64_t alwaysAsked) {
  CellMaker maker(strokes.curves);
  makeSpecialCells(zones, alwaysAsked, maker);
  ColumnSweep sweep(numRows, alwaysAsked, maker);
  for (std::size_t column = 0; column + 1 < strokes.firstOfColumn.size(); ++column) {
    const Stroke* all = strokes.strokes.data();
    sweep.run(all + strokes.firstOfColumn[column], all + strokes.firstOfColumn[column + 1]);
    if (maker.cells().numCodes() > mostCodes) {
      return std::nullopt;
    }
  }
  return std::move(maker.cells());
}

}  // namespace orvantis::filter::classify
