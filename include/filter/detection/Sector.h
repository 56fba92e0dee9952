#pragma once

#include <memory>
#include <string>

#include <filter/detection/Zone.h>
#include <orvantis/Api.h>

namespace orvantis::filter::detection {

/// The part of a disc between two bearings, in radians from +x towards +y.
///
/// Angles are stored normalised to -pi (inclusive) to pi (exclusive). Angles that differ by less than 0.0001
/// mean the whole disc; a first bearing above the second one means the sector that runs through the -x axis.
/// The radius is not checked: a negative one counts as its amount, and a NaN one keeps no point out. An angle
/// that is not finite is stored as NaN; then all of the disc is within, except perhaps the other bearing.
/// Copies are deep. A move is a copy, so a sector that was moved from is unchanged.
class ORVANTIS_API Sector : public Zone {
 public:
  static const std::string TYPE_NAME;  ///< "sector"

  /// The origin is (0, 0).
  Sector(const std::string& name, double minAngle, double maxAngle, double radius);
  Sector(const std::string& name, double minAngle, double maxAngle, double radius, const Point& origin);
  /// Reads angles and radius as `load` does; the origin is (0, 0). @throws what `load` throws
  Sector(const std::string& name, SettingsManager& settings);
  Sector(const Sector&) = default;
  Sector(Sector&&) = default;
  Sector& operator=(const Sector&) = default;
  Sector& operator=(Sector&&) = default;
  ~Sector() override;

  void setOrigin(double x, double y) noexcept;
  /// The stored, normalised angles and the radius; the origin is not returned.
  void getSector(double& minAngle, double& maxAngle, double& radius) const noexcept;
  const Point& getOrigin() const noexcept { return origin_; }

  /// The copy's origin is (0, 0), whatever this one's is.
  std::shared_ptr<Zone> makeCopy() const override;
  /// Whether every vertex of the outer ring is within; true for an empty ring. Edges and holes are not
  /// checked. This, `intersects` and `overlaps` throw nothing.
  bool within(const polygon& area) const override;
  /// The arc belongs to the sector. The two bearings belong to it, except when the sector runs through the -x
  /// axis. The origin has bearing 0. A point with a NaN coordinate passes the radius test and has no bearing:
  /// it is within a whole disc and within a sector through the -x axis, but not within any other.
  bool within(const Point& point) const override;
  /// Whether some vertices of the outer ring are within and some are not: the polygon straddles the border. A
  /// polygon wholly inside does not intersect. Both numbers of vertices are taken modulo 65536.
  bool intersects(const polygon& area) const override;
  /// The same as `intersects`.
  bool overlaps(const polygon& area) const override;
  /// |maxAngle - minAngle| / 2 * radius^2 of the stored angles: 0 for a whole disc, and the complementary
  /// opening for a sector that runs through the -x axis.
  double area() const override;
  /// Writes "Sector" with "minAngle", "maxAngle" (2 pi more for a whole disc) and "radius", without the
  /// origin.
  void save(SettingsManager& settings) const override;
  /// Keeps the origin. When reading "radius" fails, the angles are the new ones.
  void load(SettingsManager& settings) override;
  const std::string& type() const override;

 private:
  void setAngles(double minAngle, double maxAngle);
  bool isBetweenBearings(double dx, double dy) const;

  double radius_ = 0.0;
  double minAngle_ = 0.0;
  double maxAngle_ = 0.0;
  Point minDirection_{1.0, 0.0};  // of the two angles, one long
  Point maxDirection_{1.0, 0.0};
  Point origin_{0.0, 0.0};
};

}  // namespace orvantis::filter::detection
