#pragma once

#include <memory>
#include <string>
#include <vector>

#include <filter/detection/Zone.h>
#include <orvantis/Api.h>

namespace orvantis::filter::detection {

/// A zone given by its vertices in order.
///
/// The vertices are stored, returned and saved as given: never closed, never reversed, their number
/// unchecked. Every question reads the ring as closed and as the region it bounds, whatever its winding and
/// whether or not the first vertex is repeated at the end; only `area` keeps the sign of the winding. A ring
/// of fewer than 3 vertices, or with a coordinate that is not finite, bounds no region: it contains, meets
/// and overlaps nothing; the same holds for the polygon passed in. Copies are deep; a polygon that was moved
/// from keeps its name and has no vertices. A move copies the name, so it may throw std::bad_alloc.
class ORVANTIS_API Polygon : public Zone {
 public:
  static const std::string TYPE_NAME;           ///< "polygon"
  static const int MIN_NUM_POLYGON_SIDES = 3;   ///< not enforced here
  static const int MAX_NUM_POLYGON_SIDES = 16;  ///< enforced by ZoneDetector::validate, not here

  /// No vertices.
  explicit Polygon(const std::string& name);
  /// Reads the vertices as `load` does. @throws what `load` throws
  Polygon(const std::string& name, SettingsManager& settings);
  Polygon(const std::string& name, const std::vector<Point>& points);
  Polygon(const Polygon&) = default;
  Polygon(Polygon&&) = default;
  Polygon& operator=(const Polygon&) = default;
  Polygon& operator=(Polygon&&) = default;
  ~Polygon() override;

  /// Appends the vertices in stored order; `out` is not cleared.
  void getPolygon(std::vector<Point>& out) const;

  std::shared_ptr<Zone> makeCopy() const override;
  /// Whether the polygon lies inside: it has no part outside, and the two interiors meet. Borders may touch.
  bool within(const polygon& area) const override;
  /// Whether the point is strictly inside. A point on an edge or a vertex is not, and neither is a point with
  /// a coordinate that is not finite.
  ///
  /// Coordinates count as equal within 2^-52 of the larger one (or of 1), and a point as on an edge when
  /// their cross product is at most 2^-52 of the longest difference in it (or of 1): shapes much smaller than
  /// 1e-7 contain nothing. Linear in the number of vertices. Source: the winding test of Boost.Geometry.
  bool within(const Point& point) const override;
  /// Whether the two share any point, borders included.
  bool intersects(const polygon& area) const override;
  /// Whether their interiors meet and each has a part outside the other; one inside the other does not
  /// overlap.
  bool overlaps(const polygon& area) const override;
  /// Positive for a clockwise ring (x to the right, y up), negative for a counterclockwise one. The area is
  /// not finite when a coordinate is not, or when a product of two overflows.
  double area() const override;
  /// Writes "Polygon" with one "Point" of "x" and "y" for each vertex.
  void save(SettingsManager& settings) const override;
  /// Replaces the vertices. After a failed read it has the vertices before the one that failed.
  void load(SettingsManager& settings) override;
  const std::string& type() const override;

 protected:
  polygon polygon_;
};

}  // namespace orvantis::filter::detection
