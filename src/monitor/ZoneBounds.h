#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <filter/detection/Zone.h>
#include <filter/monitor/ZoneSlot.h>

#include "monitor/Bounds.h"

namespace orvantis::filter::monitor {

/// The bounding boxes and heights of zones, by slot. They rule out most of the zones that an object is not
/// in.
class ZoneBounds {
 public:
  /// No zones.
  ZoneBounds();

  void set(std::size_t slot, const detection::Zone& shape, double zMin, double zMax);

  /// A bit for each zone whose heights touch the given heights and whose bounding box touches the given
  /// bounds. A range of heights whose lower end is above its upper end, or is not a number, touches nothing.
  std::uint32_t near(const Bounds& bounds, double zMin, double zMax) const;

 private:
  using Numbers = std::array<double, NUM_ZONE_SLOTS>;

  Numbers left_, bottom_, right_, top_, zMin_, zMax_;
};

}  // namespace orvantis::filter::monitor
