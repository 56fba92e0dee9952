#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "classify/Borders.h"
#include "classify/FrozenZones.h"
#include "classify/Lattice.h"
#include "classify/Sides.h"

namespace orvantis::filter::classify {

struct OutlinedZone {
  const FrozenZone* zone;
  Outline outline;
};

/// The zones that the tables of the plan decide, and those that are asked for every point at their height.
struct PlannedZones {
  std::vector<OutlinedZone> outlined;
  std::uint64_t alwaysAsked = 0;
  Bounds site;
};

/// A curve of a zone in a cell; the marks of a cell form a list, those of one zone in succession.
struct Mark {
  std::uint32_t curve;
  std::uint32_t next;
  std::uint8_t bit;
  Sides sides;  ///< of the curve, when it is the zone's only one here and they are known
};

/// The cells of a lattice: which zones hold them whole, and whose borders pass through them.
struct MarkedPlan {
  static constexpr std::uint32_t noMark = std::numeric_limits<std::uint32_t>::max();

  explicit MarkedPlan(const Lattice& cells) : lattice(cells) {}

  std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(column) * static_cast<std::size_t>(lattice.rows) +
           static_cast<std::size_t>(row);
  }

  Lattice lattice;
  std::vector<Curve> curves;
  std::vector<std::uint64_t> decided;    ///< by cell, column by column
  std::vector<std::uint32_t> firstMark;  ///< by cell
  std::vector<Mark> marks;
};

/// The first phase of making a grid.
/// @param safety see Margins
/// @return nothing when there would be more cells or marks than a grid may have
std::optional<MarkedPlan> markPlan(const PlannedZones& zones, double cell, double safety);

}  // namespace orvantis::filter::classify
