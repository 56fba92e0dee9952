#pragma once

#include <core/Planar.h>
#include <orvantis/Api.h>

namespace orvantis::core {

/// The footprint of a tracked object on the plan. A value: copies are independent; const calls may run
/// concurrently. Numbers that are not finite are accepted; such a footprint bounds no region.
class ORVANTIS_API State {
 public:
  /// @param footprint either winding, closed or not; kept clockwise and closed. May be empty.
  explicit State(PlanarPolygon footprint);

  /// An oriented box.
  /// @param x       of the centre
  /// @param y       of the centre
  /// @param length  extent along the heading
  /// @param width   extent across the heading
  /// @param heading radians, counterclockwise from +x
  State(double x, double y, double length, double width, double heading);

  /// A copy of the footprint, clockwise and closed.
  PlanarPolygon getBoostPolygon() const;

 private:
  PlanarPolygon footprint_;
};

}  // namespace orvantis::core
