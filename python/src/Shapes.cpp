#include "document/Shapes.h"

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

#include "Content.h"
#include "Helper.h"
#include "Outlines.h"
#include "Text.h"
#include "drawing/Outline.h"

namespace orvantis::python {

using namespace filter::detection;  // NOLINT(google-build-using-namespace)

namespace {

struct Angles {
  double from;
  double to;
  double radius;
};

Angles anglesOf(const Sector& sector) {
  Angles angles{};
  sector.getSector(angles.from, angles.to, angles.radius);
  return angles;
}

std::vector<Point> verticesOf(const Polygon& polygon) {
  std::vector<Point> points;
  polygon.getPolygon(points);
  return points;
}

std::pair<std::vector<Point>, double> cornersOf(const Rectangle& rectangle) {
  std::pair<std::vector<Point>, double> corners;
  rectangle.getRectangle(corners.first, corners.second);
  return corners;
}

// An angle that is stored as the given one, which is one that was stored: the library brings angles into a
// range first, and what comes out need not come out again.
double storedAs(double angle) {
  const auto stored = [](double a) { return anglesOf(Sector("", a, a, 0.0)).from; };
  double below = angle;
  double above = angle;
  for (int i = 0; i < 16; ++i) {
    for (const double candidate : {below, above}) {
      if (same(stored(candidate), angle)) {
        return candidate;
      }
    }
    below = std::nextafter(below, -std::numeric_limits<double>::infinity());
    above = std::nextafter(above, std::numeric_limits<double>::infinity());
  }
  throw py::value_error("a sector's angle of " + std::to_string(angle) + " is not between -pi and pi");
}

py::tuple boundsOf(const Zone& shape) {
  constexpr double most = std::numeric_limits<double>::infinity();
  std::array<double, 4> bounds = {most, most, -most, -most};
  for (const Point& p : toolkit::outline(shape)) {
    bounds[0] = std::fmin(bounds[0], p.x());
    bounds[1] = std::fmin(bounds[1], p.y());
    bounds[2] = std::fmax(bounds[2], p.x());
    bounds[3] = std::fmax(bounds[3], p.y());
  }
  return py::make_tuple(bounds[0], bounds[1], bounds[2], bounds[3]);
}

void bindShape(py::module_& module) {
  py::class_<Zone, std::shared_ptr<Zone>> shape(module, "_Shape",
                                                "A named shape on the plan. Its geometry does not change.");
  shape
      .def_property(
          "name", [](const Zone& self) { return textOf(self.name()); },
          [](Zone& self, const std::string& name) { self.setName(name); },
          "The name, which zones of this shape share.")
      .def_property_readonly(
          "area", [](const Zone& self) { return toolkit::coveredArea(self); },
          "Covered area in square units: positive whatever the winding, right for every "
          "sector.")
      .def_property_readonly(
          "vertices", [](const Zone& self) { return arrayOf(toolkit::outline(self)); },
          "A copy, float64 (N, 2), as given; for a sector its drawn outline.")
      .def_property_readonly("bounds", &boundsOf,
                             "(x_min, y_min, x_max, y_max) of the vertices; for a sector of its outline.")
      .def(
          "contains", [](const Zone& self, const py::object& area) { return self.within(outlineOf(area)); },
          py::arg("footprint"), R"(Whether no part of the (N, 2) ring is outside; borders may touch.

>>> Rectangle((0, 0), (4, 4)).contains([(1, 1), (2, 1), (2, 2)])
True)")
      .def(
          "intersects",
          [](const Zone& self, const py::object& area) { return self.intersects(outlineOf(area)); },
          py::arg("footprint"),
          R"(Whether the (N, 2) ring shares any point with the shape, borders included.

For a sector: whether some of its vertices are inside and some are not.

>>> Rectangle((0, 0), (4, 4)).intersects([(4, 1), (6, 1), (6, 2)])
True)")
      .def(
          "overlaps", [](const Zone& self, const py::object& area) { return self.overlaps(outlineOf(area)); },
          py::arg("footprint"), R"(Whether the interiors meet and each has a part outside the other.

>>> Rectangle((0, 0), (4, 4)).overlaps([(3, 1), (6, 1), (6, 2)])
True)")
      .def("_contains", [](const Zone& self, double x, double y) { return self.within(Point(x, y)); })
      .def(
          "__eq__", [](const Zone& self, const Zone& other) { return sameShape(&self, &other); },
          py::is_operator());
  shape.attr("__hash__") = py::none();
}

void bindPolygon(py::module_& module) {
  py::class_<Polygon, Zone, std::shared_ptr<Polygon>>(
      module, "Polygon",
      R"(A polygon by its vertices (N, 2): 3 to 16 in a document, any number here; either winding, closed or not.

>>> Polygon([(0, 0), (4, 0), (0, 3)], "corner").area
6.0)")
      .def(py::init([](const py::object& vertices, const std::string& name) {
             return std::make_shared<Polygon>(name, ringOf(vertices, "vertices"));
           }),
           py::arg("vertices"), py::arg("name") = "")
      .def(py::pickle(
          [](const Polygon& self) {
            return py::make_tuple(py::bytes(self.name()), arrayOf(verticesOf(self)));
          },
          [](const py::tuple& state) {
            return std::make_shared<Polygon>(state[0].cast<std::string>(), ringOf(state[1], "vertices"));
          }));
}

void bindRectangle(py::module_& module) {
  py::class_<Rectangle, Polygon, std::shared_ptr<Rectangle>>(
      module, "Rectangle",
      R"(A rectangle by two opposite corners, before it is turned counterclockwise about its centre.

>>> Rectangle((0, 0), (4, 2), rotation_deg=90.0, name="door").corners.tolist()
[[0.0, 0.0], [4.0, 2.0]])")
      .def(py::init([](const py::object& corner, const py::object& opposite, double rotation,
                       const std::string& name) {
             const std::vector<Point> corners = {pointOf(corner, "corner"), pointOf(opposite, "opposite")};
             return std::make_shared<Rectangle>(name, corners, rotation);
           }),
           py::arg("corner"), py::arg("opposite"), py::arg("rotation_deg") = 0.0, py::arg("name") = "")
      .def_property_readonly(
          "corners", [](const Rectangle& self) { return arrayOf(cornersOf(self).first); },
          "The two corners before it is turned, float64 (2, 2).")
      .def_property_readonly(
          "rotation_deg", [](const Rectangle& self) { return cornersOf(self).second; },
          "Counterclockwise, in degrees.")
      .def(py::pickle(
          [](const Rectangle& self) {
            const auto [corners, rotation] = cornersOf(self);
            return py::make_tuple(py::bytes(self.name()), arrayOf(corners), rotation);
          },
          [](const py::tuple& state) {
            return std::make_shared<Rectangle>(state[0].cast<std::string>(), ringOf(state[1], "corners"),
                                               state[2].cast<double>());
          }));
}

void bindSector(py::module_& module) {
  py::class_<Sector, Zone, std::shared_ptr<Sector>>(
      module, "Sector",
      R"(Part of a disc, from min_angle counterclockwise to max_angle, in radians from +x; equal angles: all of it.

The origin is not in documents: save() refuses another than (0, 0).

>>> Sector(-0.5, 0.5, 10.0).contains_xy(5, 0)
True)")
      .def(py::init(
               [](double from, double to, double radius, const py::object& origin, const std::string& name) {
                 return std::make_shared<Sector>(name, from, to, radius, pointOf(origin, "origin"));
               }),
           py::arg("min_angle"), py::arg("max_angle"), py::arg("radius"),
           py::arg("origin") = py::make_tuple(0.0, 0.0), py::arg("name") = "")
      .def_property_readonly(
          "min_angle", [](const Sector& self) { return anglesOf(self).from; }, "Radians, -pi to pi.")
      .def_property_readonly(
          "max_angle", [](const Sector& self) { return anglesOf(self).to; }, "Radians, -pi to pi.")
      .def_property_readonly(
          "radius", [](const Sector& self) { return anglesOf(self).radius; }, "In the unit of the plan.")
      .def_property_readonly(
          "origin",
          [](const Sector& self) { return py::make_tuple(self.getOrigin().x(), self.getOrigin().y()); },
          "The centre of the disc, (x, y).")
      .def(py::pickle(
          [](const Sector& self) {
            const Angles angles = anglesOf(self);
            return py::make_tuple(py::bytes(self.name()), angles.from, angles.to, angles.radius,
                                  self.getOrigin().x(), self.getOrigin().y());
          },
          [](const py::tuple& state) {
            return std::make_shared<Sector>(state[0].cast<std::string>(), storedAs(state[1].cast<double>()),
                                            storedAs(state[2].cast<double>()), state[3].cast<double>(),
                                            Point(state[4].cast<double>(), state[5].cast<double>()));
          }));
}

}  // namespace

void bindShapes(py::module_& module) {
  bindShape(module);
  bindPolygon(module);
  bindRectangle(module);
  bindSector(module);
}

}  // namespace orvantis::python
