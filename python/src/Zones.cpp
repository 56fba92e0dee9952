#include <memory>
#include <string>
#include <vector>

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <pybind11/stl.h>

#include <filter/detection/Zone3dTarsel.h>
#include <filter/detection/ZoneDetector.h>

#include "Content.h"
#include "Helper.h"
#include "Log.h"
#include "Outlines.h"
#include "Text.h"

namespace orvantis::python {

using namespace filter::detection;  // NOLINT(google-build-using-namespace)
using EvaluationField = ZoneDetector::EvaluationField;
using ShapePointer = std::shared_ptr<Zone>;
using ZonePointer = std::shared_ptr<Zone3dBase>;

namespace {

void name(const ShapePointer& shape, const std::optional<std::string>& name) {
  if (name) {
    shape->setName(*name);
  }
}

boost::uuids::uuid idOf(const std::string& text) {
  try {
    return boost::uuids::string_generator()(text);
  } catch (const std::exception&) {
    throw py::value_error("id is \"" + text + "\"; it must be a UUID");
  }
}

void bindZone(py::module_& module) {
  py::class_<Zone3dBase, ZonePointer> zone(module, "Zone",
                                           R"(A shape between two heights, both included.

Changes write through to every site that the zone is in. == compares content, `is` identity. copy.copy(zone)
shares the shape, copy.deepcopy(zone) has its own. The name is the shape's; a name given here names the shape.

>>> zone = Zone(Rectangle((0, 0), (2, 2)), 0.0, 2.0, name="gate")
>>> zone.contains_xyz(1.0, 1.0, 2.0)
True)");
  zone.def(py::init([](const ShapePointer& shape, double zMin, double zMax,
                       const std::optional<std::string>& text) {
             name(shape, text);
             return std::make_shared<Zone3dBase>(shape, zMin, zMax);
           }),
           py::arg("shape").none(false), py::arg("z_min") = 0.0, py::arg("z_max") = 20.0, py::kw_only(),
           py::arg("name") = py::none())
      .def_property(
          "name", [](const Zone3dBase& self) { return textOf(self.getName()); },
          [](Zone3dBase& self, const std::string& text) { self.setName(text); }, "The shape's name.")
      .def_property(
          "shape", &Zone3dBase::getZone2d,
          py::cpp_function([](Zone3dBase& self, const ShapePointer& shape) { self.setZone2d(shape); },
                           py::arg("self"), py::arg("shape").none(false)),
          "The shape itself, not a copy. It can be replaced, never removed.")
      .def_property("z_min", &Zone3dBase::getZMin, &Zone3dBase::setZMin, "The lower height, included.")
      .def_property("z_max", &Zone3dBase::getZMax, &Zone3dBase::setZMax, "The upper height, included.")
      .def("_contains",
           [](const Zone3dBase& self, double x, double y, double z) { return self.within(x, y, z); })
      .def(
          "intersects",
          [](const Zone3dBase& self, const py::object& area, float zMin, float zMax) {
            return self.intersects(outlineOf(area), zMin, zMax);
          },
          py::arg("footprint"), py::arg("z_min"), py::arg("z_max"),
          R"(Whether an object of that footprint (N, 2) and those heights meets the zone, borders included.

>>> Zone(Rectangle((0, 0), (2, 2)), 0.0, 2.0).intersects([(1, 1), (3, 1), (3, 3)], 1.5, 2.5)
True)")
      .def(
          "__eq__", [](const Zone3dBase& self, const Zone3dBase& other) { return sameZone(&self, &other); },
          py::is_operator())
      .def(py::pickle(
          [](const Zone3dBase& self) {
            return py::make_tuple(self.getZone2d(), self.getZMin(), self.getZMax());
          },
          [](const py::tuple& state) {
            return std::make_shared<Zone3dBase>(state[0].cast<ShapePointer>(), state[1].cast<double>(),
                                                state[2].cast<double>());
          }));
  zone.attr("__hash__") = py::none();
}

void bindSensorZone(py::module_& module) {
  py::class_<Zone3dTarsel, Zone3dBase, std::shared_ptr<Zone3dTarsel>>(
      module, "SensorZone",
      R"(A zone with an identity, a switch and the names of the sensors it is bound to, which are stored, not used.

Such zones stand in Site.sensor_zones. In a field a document does not hold these three: save() refuses it there.

>>> zone = SensorZone(Rectangle((0, 0), (2, 2)), sensors=["roof"], id="5f0c9a3e-8e0b-4f0a-9b61-1d2f3a4b5c6d")
>>> zone.id, zone.enabled, zone.sensors
('5f0c9a3e-8e0b-4f0a-9b61-1d2f3a4b5c6d', True, frozenset({'roof'})))")
      .def(py::init([](const ShapePointer& shape, double zMin, double zMax,
                       const std::optional<std::string>& text, const std::optional<std::string>& id,
                       bool isEnabled, const std::vector<std::string>& sensors) {
             name(shape, text);
             auto zone = std::make_shared<Zone3dTarsel>(shape, zMin, zMax,
                                                        id ? idOf(*id) : boost::uuids::random_generator()());
             zone->setEnabled(isEnabled);
             zone->setSpecificSensors(sensors);
             return zone;
           }),
           py::arg("shape").none(false), py::arg("z_min") = 0.0, py::arg("z_max") = 20.0, py::kw_only(),
           py::arg("name") = py::none(), py::arg("id") = py::none(), py::arg("enabled") = true,
           py::arg("sensors") = std::vector<std::string>(), Logged())
      .def_property_readonly(
          "id", [](const Zone3dTarsel& self) { return to_string(self.getId()); },
          "A UUID; a new random one unless given.")
      .def_property("enabled", &Zone3dTarsel::enabled, &Zone3dTarsel::setEnabled,
                    "On or off; stored, not used.")
      .def_property(
          "sensors",
          [](const Zone3dTarsel& self) { return py::frozenset(py::cast(self.getSpecificSensors())); },
          [](Zone3dTarsel& self, const py::iterable& sensors) {
            self.setSpecificSensors(py::list(sensors).cast<std::vector<std::string>>());
          },
          "The names of the sensors.")
      .def(py::pickle(
          [](const Zone3dTarsel& self) {
            return py::make_tuple(self.getZone2d(), self.getZMin(), self.getZMax(), to_string(self.getId()),
                                  self.enabled(), self.getSpecificSensors());
          },
          [](const py::tuple& state) {
            auto zone =
                std::make_shared<Zone3dTarsel>(state[0].cast<ShapePointer>(), state[1].cast<double>(),
                                               state[2].cast<double>(), idOf(state[3].cast<std::string>()));
            zone->setEnabled(state[4].cast<bool>());
            zone->setSpecificSensors(py::list(state[5]).cast<std::vector<std::string>>());
            return zone;
          }));
}

std::size_t slotOf(py::ssize_t index) {
  constexpr auto size = static_cast<py::ssize_t>(ZoneDetector::NUM_ZONES_PER_EVAL_FIELD);
  const py::ssize_t slot = index < 0 ? index + size : index;
  if (slot < 0 || slot >= size) {
    throw py::index_error("zone " + std::to_string(index) + " is not in a field; it has 0 to 2");
  }
  return static_cast<std::size_t>(slot);
}

void bindField(py::module_& module) {
  py::class_<EvaluationField, std::shared_ptr<EvaluationField>> field(
      module, "Field",
      R"(A field of a site: a name and three zone slots, of which any may be None. Assigning to a slot shares the zone.

>>> field = Field([Zone(Rectangle((0, 0), (2, 2), name="gate"))], name="day")
>>> field[0].name, field[1]
('gate', None))");
  field
      .def(py::init([](const std::vector<ZonePointer>& zones, const std::string& text) {
             constexpr auto most = static_cast<std::size_t>(ZoneDetector::NUM_ZONES_PER_EVAL_FIELD);
             if (zones.size() > most) {
               throw py::value_error("a field has 3 zones; " + std::to_string(zones.size()) + " were given");
             }
             auto made = std::make_shared<EvaluationField>();
             made->name = text;
             std::copy(zones.begin(), zones.end(), made->zones.begin());
             return made;
           }),
           py::arg("zones") = std::vector<ZonePointer>(), py::arg("name") = "")
      .def_property(
          "name", [](const EvaluationField& self) { return textOf(self.name); },
          [](EvaluationField& self, const std::string& text) { self.name = text; }, "The name.")
      .def("__len__", [](const EvaluationField& self) { return self.zones.size(); })
      .def("__getitem__",
           [](const EvaluationField& self, py::ssize_t index) { return self.zones[slotOf(index)]; })
      .def("__setitem__", [](EvaluationField& self, py::ssize_t index,
                             const ZonePointer& zone) { self.zones[slotOf(index)] = zone; })
      .def(
          "__eq__",
          [](const EvaluationField& self, const EvaluationField& other) { return sameField(&self, &other); },
          py::is_operator())
      .def(py::pickle(
          [](const EvaluationField& self) {
            return py::make_tuple(py::bytes(self.name), self.zones[0], self.zones[1], self.zones[2]);
          },
          [](const py::tuple& state) {
            auto made = std::make_shared<EvaluationField>();
            made->name = state[0].cast<std::string>();
            for (std::size_t i = 0; i < made->zones.size(); ++i) {
              made->zones[i] = state[i + 1].cast<ZonePointer>();
            }
            return made;
          }));
  field.attr("__hash__") = py::none();
}

}  // namespace

void bindZones(py::module_& module) {
  bindZone(module);
  bindSensorZone(module);
  bindField(module);
}

}  // namespace orvantis::python
