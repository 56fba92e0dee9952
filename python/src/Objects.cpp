#include "Objects.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include <pybind11/numpy.h>

#include "Helper.h"
#include "Outlines.h"
#include "Text.h"

namespace orvantis::python {

using core::State;
using filter::monitor::TrackedObject;

std::vector<TrackedObject> objectsOf(const py::object& objects) {
  const auto parts = helper("orvantis_zones._objects", "parts")(objects).cast<py::tuple>();
  const auto ids = parts[0].cast<py::array_t<std::int32_t, py::array::c_style>>();
  const auto names = parts[1].cast<py::list>();
  const auto numbers = parts[2].cast<py::array_t<double, py::array::c_style>>();
  const auto footprints = parts[3].cast<py::list>();
  const auto id = ids.unchecked<1>();
  const auto box = numbers.unchecked<2>();
  std::vector<TrackedObject> made;
  made.reserve(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto row = static_cast<py::ssize_t>(i);
    const bool isBox = footprints.empty() || footprints[i].is_none();
    made.push_back({id(row),
                    isBox ? State(box(row, 0), box(row, 1), box(row, 2), box(row, 3), box(row, 4))
                          : State(outlineOf(footprints[i])),
                    box(row, 5), box(row, 6), names[i].cast<std::string>()});
  }
  return made;
}

py::object arrayOf(const std::vector<TrackedObject>& objects, const std::vector<toolkit::TrackBox>& boxes) {
  const auto size = static_cast<py::ssize_t>(objects.size());
  py::array_t<std::int32_t> ids(size);
  py::array_t<double> numbers({size, py::ssize_t{7}});
  py::list names;
  auto id = ids.mutable_unchecked<1>();
  auto row = numbers.mutable_unchecked<2>();
  for (py::ssize_t i = 0; i < size; ++i) {
    const TrackedObject& object = objects[static_cast<std::size_t>(i)];
    const toolkit::TrackBox& box = boxes[static_cast<std::size_t>(i)];
    const std::array<double, 7> values = {box.x,       box.y,       box.length, box.width,
                                          box.heading, object.zMin, object.zMax};
    id(i) = object.id;
    std::copy(values.begin(), values.end(), &row(i, 0));
    names.append(textOf(object.className));
  }
  return helper("orvantis_zones._objects", "array_of")(ids, names, numbers);
}

}  // namespace orvantis::python
