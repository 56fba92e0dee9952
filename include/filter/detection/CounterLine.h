#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <Eigen/Core>
#include <boost/property_tree/ptree_fwd.hpp>

#include <core/Planar.h>
#include <logging/LoggedComponent.h>
#include <orvantis/Api.h>

namespace orvantis::core {
class State;
}

namespace orvantis::filter::detection {

/// The side of a point as seen along a line from its first to its second point, x to the right and y up.
enum class CounterLineDirectionType : std::int32_t { LEFT = 0, RIGHT = 1, ON = 2 };

/// A named, directed segment that objects are counted on. The order of its two points is its direction.
///
/// A value: copies are independent. A line that was moved from holds no points: it reads as a line from (0,
/// 0) to (0, 0) and meets no polygon. Moves throw nothing. One thread at a time. Every test is traced. An
/// operation that does not say what it throws throws std::bad_alloc only.
class ORVANTIS_API CounterLine : public LoggedComponent {
 public:
  using point = core::PlanarPoint;
  using polygon = core::PlanarPolygon;

  static const int POINTS_VECTOR_SIZE = 2;

  /// A line without a name, both points at (0, 0).
  CounterLine();
  /// Swaps the points if `reference` does not lie on the wanted side; so a reference on the line always swaps
  /// them. Without a reference the order is kept and `given_direction` is ignored.
  /// @param reference may be null
  /// @throws std::runtime_error when there is a reference and the wanted side is ON
  CounterLine(const std::string& name, const point& first, const point& second, const point* reference,
              CounterLineDirectionType given_direction);
  /// The same. @throws std::runtime_error also when there are not exactly two points
  CounterLine(const std::string& name, const std::vector<point>& points, const point* reference,
              CounterLineDirectionType given_direction);
  CounterLine(const CounterLine&) = default;
  CounterLine(CounterLine&&) = default;
  CounterLine& operator=(const CounterLine&) = default;
  CounterLine& operator=(CounterLine&&) = default;
  ~CounterLine() override;

  const std::string& getName() const noexcept { return name_; }
  void setName(const std::string& name) { name_ = name; }
  const std::vector<point>& getPoints() const noexcept { return points_; }
  /// Keeps the order as given.
  /// @throws std::runtime_error when there are not exactly two points; the line is then unchanged
  void setPoints(const std::vector<point>& points);

  /// The side by the sign of the cross product of the line and the vector to the point, rounded to single
  /// precision: ON when its magnitude is at most 2^-23. A cross product that is NaN gives RIGHT. Swapping the
  /// line's points swaps LEFT and RIGHT. Allocates nothing while tracing is off.
  CounterLineDirectionType direction(const point& p) const;
  CounterLineDirectionType direction(const Eigen::Matrix<float, 2, 1>& p) const;

  // A polygon is read as the region that its rings bound, whatever their winding and whether or not they
  // repeat their first vertex. No line meets a polygon of fewer than 3 vertices, or with a coordinate that is
  // not finite. A line with such a coordinate meets no polygon.

  /// Whether the segment touches the polygon or lies in it; touching the border counts.
  bool intersects(const polygon& area) const;
  /// Whether both end points lie strictly inside. The part between them is not checked.
  bool within(const polygon& area) const;
  /// The same for the object's footprint.
  bool intersects(const core::State& state) const;
  /// The same for the object's footprint.
  bool within(const core::State& state) const;

  /// Appends "name", "first" and "second" (each with "x" and "y") to the tree, and removes nothing from it. A
  /// coordinate that is not finite is written as text that `deserialize` refuses.
  void serialize(boost::property_tree::ptree& tree) const;
  /// Reads name and points from the tree, and keeps the order of the points.
  /// @throws boost::property_tree::ptree_error for a missing key or one that is not a number. The points are
  ///   then the old ones, the name may be the new one
  void deserialize(const boost::property_tree::ptree& tree);

 private:
  void order(const point* reference, CounterLineDirectionType given_direction);

  std::string name_;
  std::vector<point> points_;
};

}  // namespace orvantis::filter::detection
