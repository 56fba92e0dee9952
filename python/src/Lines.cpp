#include <string>

#include <filter/detection/CounterLine.h>

#include "Content.h"
#include "Helper.h"
#include "Log.h"
#include "Outlines.h"
#include "Text.h"

namespace orvantis::python {

using filter::detection::CounterLine;
using filter::detection::CounterLineDirectionType;

namespace {

CounterLine::point planar(const py::handle& pair, const char* what) {
  const auto p = pointOf(pair, what);
  return {p.x(), p.y()};
}

py::tuple end(const CounterLine& line, std::size_t number) {
  const CounterLine::point& p = line.getPoints().at(number);
  return py::make_tuple(p.x(), p.y());
}

}  // namespace

void bindLines(py::module_& module) {
  py::class_<CounterLine> line(
      module, "CounterLine",
      R"(A directed segment that objects are counted on. Left and right are seen from first to second. A value.

>>> CounterLine((0, 0), (0, 5), "door").second
(0.0, 5.0))");
  line.def(py::init([](const py::object& first, const py::object& second, const std::string& name) {
             return CounterLine(name, planar(first, "first"), planar(second, "second"), nullptr,
                                CounterLineDirectionType::LEFT);
           }),
           py::arg("first"), py::arg("second"), py::arg("name") = "")
      .def_static("_with_left",
                  [](const py::object& first, const py::object& second, const py::object& left,
                     const std::string& name) {
                    const CounterLine::point reference = planar(left, "left_of");
                    return CounterLine(name, planar(first, "first"), planar(second, "second"), &reference,
                                       CounterLineDirectionType::LEFT);
                  })
      .def_property_readonly(
          "name", [](const CounterLine& self) { return textOf(self.getName()); },
          "The name; in a site, the key it is stored under.")
      .def_property_readonly(
          "first", [](const CounterLine& self) { return end(self, 0); }, "(x, y)")
      .def_property_readonly(
          "second", [](const CounterLine& self) { return end(self, 1); }, "(x, y)")
      .def(
          "_side",
          [](const CounterLine& self, double x, double y) {
            return static_cast<int>(self.direction(CounterLine::point(x, y)));
          },
          Logged())
      .def(
          "intersects",
          [](const CounterLine& self, const py::object& area) { return self.intersects(outlineOf(area)); },
          py::arg("footprint"), R"(Whether the segment touches the (N, 2) ring or lies in it.

>>> CounterLine((0, 0), (0, 5)).intersects([(-1, 1), (1, 1), (1, 2)])
True)",
          Logged())
      .def("_renamed",
           [](const CounterLine& self, const std::string& name) {
             CounterLine copy = self;
             copy.setName(name);
             return copy;
           })
      .def(
          "__eq__", [](const CounterLine& self, const CounterLine& other) { return sameLine(self, other); },
          py::is_operator())
      .def(py::pickle(
          [](const CounterLine& self) {
            return py::make_tuple(py::bytes(self.getName()), end(self, 0), end(self, 1));
          },
          [](const py::tuple& state) {
            return CounterLine(state[0].cast<std::string>(), planar(state[1], "first"),
                               planar(state[2], "second"), nullptr, CounterLineDirectionType::LEFT);
          }));
  line.attr("__hash__") = py::none();
}

}  // namespace orvantis::python
