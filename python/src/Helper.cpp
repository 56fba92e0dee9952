#include "Helper.h"

#include <pybind11/numpy.h>

namespace orvantis::python {

using filter::detection::Point;

namespace {

using Doubles = py::array_t<double, py::array::c_style>;

}  // namespace

std::vector<Point> ringOf(const py::handle& vertices, const char* what) {
  const auto array = helper("orvantis_zones._arrays", "ring")(vertices, what).cast<Doubles>();
  const auto rows = array.unchecked<2>();
  std::vector<Point> points;
  points.reserve(static_cast<std::size_t>(rows.shape(0)));
  for (py::ssize_t i = 0; i < rows.shape(0); ++i) {
    points.emplace_back(rows(i, 0), rows(i, 1));
  }
  return points;
}

Point pointOf(const py::handle& pair, const char* what) {
  const auto array = helper("orvantis_zones._arrays", "pair")(pair, what).cast<Doubles>();
  return {array.at(0), array.at(1)};
}

py::object arrayOf(const std::vector<Point>& points) {
  Doubles array({static_cast<py::ssize_t>(points.size()), py::ssize_t{2}});
  auto rows = array.mutable_unchecked<2>();
  for (py::ssize_t i = 0; i < rows.shape(0); ++i) {
    rows(i, 0) = points[static_cast<std::size_t>(i)].x();
    rows(i, 1) = points[static_cast<std::size_t>(i)].y();
  }
  return array;
}

}  // namespace orvantis::python
