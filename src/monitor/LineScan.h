#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <core/Planar.h>
#include <core/State.h>

#include "monitor/Box.h"
#include "monitor/SidedLine.h"

namespace orvantis::filter::monitor {

/// Tells for one sighting and many lines on which side it is and whether it is clear.
///
/// The answers are exact. Nearly all of them come from one rounded product for each line; the exact test is
/// made only when rounding could change the answer.
class LineScan {
 public:
  /// One bit for each line, 64 to a word.
  struct Bits {
    std::vector<std::uint64_t> left;   ///< the reference point lies strictly left of the line
    std::vector<std::uint64_t> clear;  ///< the sighting is clear of the line, on the side of that point
  };

  /// No lines.
  LineScan() = default;
  explicit LineScan(std::vector<SidedLine> lines);

  const std::vector<SidedLine>& lines() const { return lines_; }
  /// The bits of a word that stand for a line.
  std::uint64_t allLines(std::size_t word) const;

  /// @param reference of the footprint, see `referencePoint`
  /// @param bits overwritten
  void scan(const core::State& footprint, const core::PlanarPoint& reference, Bits& bits) const;

 private:
  // A line as a function of the plan, a x + b y + c: the cross product, above zero on its left.
  struct Functions {
    std::vector<double> a, b, c;
    std::vector<double> length;     // a distance times this is a cross product
    std::vector<double> clearance;  // as a cross product
  };
  struct Word {
    std::uint64_t left = 0;
    std::uint64_t clear = 0;
  };
  struct Beside {
    bool isLeft;
    bool isClear;
  };

  std::size_t numWords() const { return (lines_.size() + 63) / 64; }
  // The lines of a word that the circle around the box is clear of. The bits of the other lines have no
  // meaning.
  Word farLines(std::size_t word, const Box& box, double doubt) const;
  // How the box lies beside the line; nothing when rounding could change the answer.
  std::optional<Beside> besideLine(std::size_t number, const Box& box, double doubt) const;

  std::vector<SidedLine> lines_;
  Functions functions_;
  double largest_ = 0.0;  // the largest coordinate of the lines, without sign
};

}  // namespace orvantis::filter::monitor
