#pragma once

#include <optional>

#include <core/Planar.h>
#include <orvantis/Api.h>

namespace orvantis::core {

/// The footprint of a tracked object on the plan. A value: copies are independent, and a state that was moved
/// from has an empty footprint. Copies throw std::bad_alloc only, moves throw nothing. Const calls may run
/// concurrently. Numbers that are not finite are accepted; such a footprint bounds no region.
class ORVANTIS_API State {
 public:
  /// @param footprint either winding, closed or not; kept clockwise and closed. May be empty.
  /// @throws std::bad_alloc only
  explicit State(PlanarPolygon footprint);

  /// An oriented box.
  /// @param x       of the centre
  /// @param y       of the centre
  /// @param length  extent along the heading
  /// @param width   extent across the heading
  /// @param heading radians, counterclockwise from +x
  /// @throws std::bad_alloc only
  State(double x, double y, double length, double width, double heading);

  /// A copy of the footprint, clockwise and closed.
  /// @throws std::bad_alloc only
  PlanarPolygon getBoostPolygon() const;

  /// The footprint itself; the reference holds until the state is assigned to, moved from or destroyed.
  const PlanarPolygon& polygon() const noexcept { return footprint_; }

  /// The centre that a box was built from, not rounded; empty for a footprint that was given as a polygon.
  const std::optional<PlanarPoint>& centre() const noexcept { return centre_; }

 private:
  PlanarPolygon footprint_;
  std::optional<PlanarPoint> centre_;
};

}  // namespace orvantis::core
