#pragma once

#include <memory>
#include <string>
#include <vector>

#include <filter/detection/Polygon.h>
#include <orvantis/Api.h>

namespace orvantis::filter::detection {

/// A zone given by two opposite corners of an axis-aligned rectangle, turned about its centre.
///
/// It answers as the Polygon of its four turned corners: (x1, y1), (x1, y2), (x2, y2), (x2, y1). The corners
/// need not be ordered; when one axis alone is swapped the ring runs counterclockwise and the area is
/// negative. When a corner, the sum of both or the rotation is not finite, it bounds no region. Copies are
/// deep; a rectangle that was moved from keeps its name, corners and rotation, and has no vertices.
class ORVANTIS_API Rectangle : public Polygon {
 public:
  static const std::string TYPE_NAME;  ///< "rectangle"

  /// @param corners two points; any other number is logged as an error and leaves a rectangle without
  ///   vertices
  /// @param rotation degrees, counterclockwise
  Rectangle(const std::string& name, const std::vector<Point>& corners, double rotation);
  /// Reads corners and rotation as `load` does. @throws what `load` throws
  Rectangle(const std::string& name, SettingsManager& settings);
  Rectangle(const Rectangle&) = default;
  Rectangle(Rectangle&&) = default;
  Rectangle& operator=(const Rectangle&) = default;
  Rectangle& operator=(Rectangle&&) = default;
  ~Rectangle() override;

  /// Appends the two defining corners (not the turned ones, which `getPolygon` gives) and sets the rotation
  /// in degrees.
  void getRectangle(std::vector<Point>& corners, double& rotation) const;

  std::shared_ptr<Zone> makeCopy() const override;
  /// Writes "Rectangle" with "rotation" and two "Point" entries, the corners as they were given.
  void save(SettingsManager& settings) const override;
  /// A number of "Point" entries other than two is logged as an error: the rectangle then has no vertices,
  /// its rotation is the new one, its corners are the old ones, and the path stays inside "Rectangle". After
  /// a read that throws it has no vertices either, and its rotation and first corner may be the new ones.
  void load(SettingsManager& settings) override;
  const std::string& type() const override;

 private:
  void setPolygonCorners();

  Point firstCorner_{0.0, 0.0};
  Point secondCorner_{0.0, 0.0};
  double rotation_ = 0.0;
};

}  // namespace orvantis::filter::detection
