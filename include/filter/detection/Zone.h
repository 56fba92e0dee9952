#pragma once

#include <memory>
#include <string>

#include <core/Planar.h>
#include <filter/detection/Point.h>
#include <logging/LoggedComponent.h>
#include <orvantis/Api.h>

namespace orvantis {
class SettingsManager;
}

namespace orvantis::filter::detection {

/// A named planar shape. Each derived class says what its answers are on its border.
///
/// Polygons passed in are read as the region that their rings bound, whatever their winding and whether or
/// not they repeat their first vertex. Used by one thread at a time; const calls may run concurrently.
///
/// An operation of a shape that does not say what it throws throws std::bad_alloc only.
class ORVANTIS_API Zone : public LoggedComponent {
 public:
  using polygon = core::PlanarPolygon;

  explicit Zone(const std::string& name);
  // A zone has copies but no move: a derived shape that was moved from keeps its name and its logger.
  Zone(const Zone&) = default;
  Zone& operator=(const Zone&) = default;
  ~Zone() override;

  /// A new shape that shares nothing with this one, never null. Its logger is the default one.
  virtual std::shared_ptr<Zone> makeCopy() const = 0;
  /// Whether the polygon lies inside this zone.
  virtual bool within(const polygon& area) const = 0;
  /// Whether the point lies inside this zone. Allocates and throws nothing.
  virtual bool within(const Point& point) const = 0;
  /// Whether the polygon and this zone meet.
  virtual bool intersects(const polygon& area) const = 0;
  /// Whether the polygon and this zone cover each other in part.
  virtual bool overlaps(const polygon& area) const = 0;
  /// In squared coordinate units. Throws nothing.
  virtual double area() const = 0;
  /// Writes "shape" and a child named after the class at the current path. It removes nothing that is there
  /// already, such as the rest of a longer list: save into a fresh entry. A number that is not finite is
  /// written as text that `load` refuses.
  virtual void save(SettingsManager& settings) const = 0;
  /// Reads the child named after the class at the current path; "shape" is not read.
  /// @throws boost::property_tree::ptree_error for a missing key or one that is not a number; the path then
  ///   stays where the read failed
  virtual void load(SettingsManager& settings) = 0;
  /// The value of the key "shape": the class's TYPE_NAME, the same object on each call. Throws nothing.
  virtual const std::string& type() const = 0;

  /// The references hold as long as the zone.
  std::string& name() noexcept { return name_; }
  const std::string& name() const noexcept { return name_; }
  void setName(std::string name) noexcept;

 private:
  std::string name_;
};

}  // namespace orvantis::filter::detection
