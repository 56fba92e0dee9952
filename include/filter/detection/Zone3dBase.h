#pragma once

#include <memory>
#include <string>

#include <filter/detection/Zone.h>
#include <logging/LoggedComponent.h>
#include <orvantis/Api.h>

namespace orvantis::filter::detection {

/// A prism: a planar shape between two heights, both bounds included.
///
/// Heights are in the unit of the plan; a bound may be infinite, and a NaN height passes no height test. A
/// zone with its bounds swapped contains nothing, but an object that reaches both bounds may intersect it. A
/// zone without a shape contains and meets nothing. Copies share the shape on purpose: a change of the shape
/// or its name through one copy shows in all; `getZone2d()->makeCopy()` makes an independent shape. The zone
/// locks nothing; const calls may run concurrently.
///
/// An operation that does not say what it throws throws std::bad_alloc, and what a host's own shape throws.
/// Copying a zone throws nothing.
class ORVANTIS_API Zone3dBase : public LoggedComponent {
 public:
  using polygon = core::PlanarPolygon;

  static const float DEFAULT_Z_MIN;  ///< 0
  static const float DEFAULT_Z_MAX;  ///< 20

  /// Shares the shape, which may be null. @throws what LoggingManager::getLogger throws
  Zone3dBase(std::shared_ptr<Zone> zone = nullptr, double zMin = DEFAULT_Z_MIN, double zMax = DEFAULT_Z_MAX);
  Zone3dBase(const Zone3dBase&) = default;
  Zone3dBase& operator=(const Zone3dBase&) = default;
  ~Zone3dBase() override;

  /// The shape itself, not a copy; may be null.
  std::shared_ptr<Zone> getZone2d() const noexcept { return zone2d_; }
  /// Shares the shape. A null pointer is ignored: a shape can be replaced but not removed.
  void setZone2d(std::shared_ptr<Zone> zone) noexcept;
  double getZMin() const noexcept { return zMin_; }
  double getZMax() const noexcept { return zMax_; }
  void setZMin(double zMin) noexcept { zMin_ = zMin; }
  void setZMax(double zMax) noexcept { zMax_ = zMax; }
  /// Upper bound minus lower bound; may be negative.
  double getHeight() const noexcept { return zMax_ - zMin_; }
  /// The shape's name; empty without a shape.
  std::string getName() const;
  /// Names the shape; does nothing without one.
  void setName(const std::string& name);

  /// Whether the height is between the bounds and the shape contains the point. Allocates and throws nothing.
  bool within(double x, double y, double z) const;
  /// Whether the object's heights lie between the bounds and its outline within the shape.
  bool within(polygon outline, float zMin, float zMax) const;
  /// Whether the height ranges touch and the outline intersects the shape.
  bool intersects(polygon outline, float zMin, float zMax) const;
  /// Whether the object's heights lie between the bounds, as for `within`, and its outline overlaps the
  /// shape.
  bool overlaps(polygon outline, float zMin, float zMax) const;

  /// Reads "name", "shape" (in any letter case) and its geometry, "zMin" (default 0) and "zMax" (default 20)
  /// at the current path. An unknown shape is logged as a warning and leaves the shape as it was. After a
  /// rectangle that does not have two points the path stays inside "Rectangle" (see Rectangle::load), so the
  /// heights are not found there and get their defaults.
  /// @throws boost::property_tree::ptree_error for a missing or mistyped name, shape or geometry; the zone is
  ///   then unchanged, and the path stays where the read failed
  virtual void load(SettingsManager& settings);
  /// Writes what `load` reads. Writes nothing for a zone without a shape. A bound that is not finite is
  /// written as text that `load` reads as the default.
  virtual void save(SettingsManager& settings);

 protected:
  /// Reads the shape that "shape" names at the current path; an unknown one is logged and changes nothing.
  /// @throws as `load`
  void loadShape(SettingsManager& settings);

 private:
  bool containsHeights(double zMin, double zMax) const;

  std::shared_ptr<Zone> zone2d_;
  double zMin_;
  double zMax_;
};

}  // namespace orvantis::filter::detection
