#include "Frames.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "Arrays.h"
#include "Content.h"
#include "Helper.h"
#include "Log.h"
#include "Objects.h"
#include "Site.h"
#include "Stamps.h"
#include "Text.h"
#include "files/Failure.h"
#include "input/FrameInput.h"

namespace orvantis::python {
namespace {

using toolkit::Failure;

// A new array (N, 3), in the precision of the file.
template <typename Real>
py::object copyOf(const filter::classify::PointsView<Real>& view) {
  const auto size = static_cast<py::ssize_t>(view.size);
  py::array_t<Real> array({size, py::ssize_t{3}});
  auto* const bytes = reinterpret_cast<char*>(array.mutable_data());
  const Unlocked released;
  std::size_t place = 0;
  for (std::size_t i = 0; i < view.size; ++i) {
    for (const void* column : {view.x, view.y, view.z}) {
      const char* const from = static_cast<const char*>(column) + i * view.stride;
      std::copy(from, from + sizeof(Real), bytes + place);
      place += sizeof(Real);
    }
  }
  return array;
}

py::object copyOf(const toolkit::Points& points) {
  return std::visit([](const auto& view) { return copyOf(view); }, points);
}

toolkit::Recording recordingOf(const py::dict& given) {
  toolkit::Recording recording;
  recording.clouds = given["clouds"].cast<std::vector<std::string>>();
  recording.rate = given["rate"].cast<std::optional<double>>();
  recording.sensors = given["sensors"].cast<std::string>();
  recording.window = stampOf(given["window"]);
  recording.stamps = given["stamps"].cast<std::string>();
  recording.tracks = given["tracks"].cast<std::string>();
  recording.tracksFormat = given["tracks_format"].cast<std::string>() == "kitti"
                               ? toolkit::TracksFormat::Kitti
                               : toolkit::TracksFormat::Csv;
  return recording;
}

py::object next(Frames& frames) {
  std::optional<toolkit::Moment> moment;
  {
    const Unlocked released;
    moment = frames.next();
  }
  if (!moment) {
    return py::none();
  }
  py::object objects = py::none();
  if (moment->objects) {
    objects = arrayOf(*moment->objects, moment->boxes);
  }
  return py::make_tuple(moment->stamp.count(),
                        moment->frame ? copyOf(moment->frame->points) : py::object(py::none()), objects);
}

py::object readPoints(const std::string& path) {
  toolkit::FrameInput input({path}, {});
  std::optional<toolkit::InputFrame> frame;
  {
    const Unlocked released;
    frame = input.next();
  }
  if (!frame || frame->stamp) {
    throw Failure(path, "is a recording of any number of frames; Recording reads them");
  }
  return copyOf(frame->points);
}

// As the package's own error, which has the place in parts.
void translate(std::exception_ptr thrown) {
  try {
    std::rethrow_exception(std::move(thrown));
  } catch (const Failure& failure) {
    const auto known = [](std::size_t number) {
      return number == 0 ? py::object(py::none()) : py::object(py::int_(number));
    };
    const py::object type = helper("orvantis_zones._recording", "RecordingError");
    const py::object error = type(textOf(failure.path()), known(failure.line()), known(failure.column()),
                                  textOf(failure.reason()));
    PyErr_SetObject(type.ptr(), error.ptr());
  }
}

}  // namespace

void bindFrames(py::module_& module) {
  py::register_exception_translator(&translate);
  py::class_<Frames>(module, "Frames")
      .def(py::init([](const py::dict& given, const Site& site) {
             const toolkit::Recording recording = recordingOf(given);
             const toolkit::Configuration snapshot = snapshotOf(*site.configuration);
             const Unlocked released;
             return std::make_unique<Frames>(recording, snapshot);
           }),
           Logged())
      .def_property_readonly("count", &Frames::count)
      .def("next", &next, Logged());
  module.def("read_points", &readPoints, Logged());
  module.def(
      "files_of", [](const std::string& folder) { return toolkit::filesOf({folder}, {}); }, Released());
}

}  // namespace orvantis::python
