#include "Site.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include "Bindings.h"
#include "Content.h"
#include "Log.h"
#include "Text.h"

namespace orvantis::python {

using namespace filter::detection;  // NOLINT(google-build-using-namespace)
using ZonePointer = std::shared_ptr<Zone3dBase>;
using FieldPointer = std::shared_ptr<ZoneDetector::EvaluationField>;
using SensorZones = std::vector<std::shared_ptr<Zone3dTarsel>>;
using Level = ZoneDetector::TriggerZoneValue;

namespace {

std::string levelOf(const Site& site) {
  return site.detector().getTriggerZone() == Level::LOW ? "low" : "high";
}

void setLevel(Site& site, const std::string& level) {
  if (level != "low" && level != "high") {
    throw py::value_error("trigger_level is \"" + level + "\"; it must be \"low\" or \"high\"");
  }
  site.detector().setTriggerZone(level == "low" ? Level::LOW : Level::HIGH);
}

void setSensitivity(Site& site, int sensitivity) {
  if (sensitivity < 1 || sensitivity > 10) {
    throw py::value_error("sensitivity is " + std::to_string(sensitivity) + "; 1 to 10 are allowed");
  }
  site.detector().setMinPoints(site.detector().getMinPointsFromSensitivity(sensitivity));
}

void setActiveField(Site& site, int field) {
  if (field < 0 || field >= ZoneDetector::NUM_EVAL_FIELDS) {
    throw py::value_error("active_field is " + std::to_string(field) + "; 0 to 7 are allowed");
  }
  site.detector().setEvaluationFieldIndex(static_cast<unsigned char>(field));
}

py::dict linesOf(const Site& site) {
  py::dict lines;
  for (const auto& [name, line] : site.configuration->lines) {
    lines[textOf(name)] = line;
  }
  return lines;
}

// The zones themselves, so that a zone in two places is still one after a copy.
py::tuple stateOf(const Site& site) {
  const ZoneDetector& detector = site.detector();
  py::list fields;
  for (const FieldPointer& field : detector.getEvaluationFieldArray()) {
    fields.append(field);
  }
  py::list lines;
  for (const auto& [name, line] : site.configuration->lines) {
    lines.append(py::make_tuple(py::bytes(name), line));
  }
  return py::make_tuple(fields, detector.getExclusionZoneVector(), lines, detector.getDebounceTime().count(),
                        detector.getMinPoints(), levelOf(site), detector.useSoftwareAPICommand(),
                        static_cast<int>(detector.getEvaluationFieldIndex()),
                        site.configuration->sensorZones);
}

Site siteOf(const py::tuple& state) {
  Site site;
  ZoneDetector& detector = site.detector();
  const auto fields = state[0].cast<std::vector<FieldPointer>>();
  std::copy_n(fields.begin(), detector.getEvaluationFieldArray().size(),
              detector.getEvaluationFieldArray().begin());
  setExclusionZones(detector, state[1].cast<std::vector<ZonePointer>>(), std::nullopt);
  for (const auto& line : state[2]) {
    const auto pair = line.cast<py::tuple>();
    site.configuration->lines.emplace(pair[0].cast<std::string>(), pair[1].cast<CounterLine>());
  }
  detector.setDebounceTime(ZoneDetector::Milliseconds(state[3].cast<int>()));
  detector.setMinPoints(state[4].cast<int>());
  setLevel(site, state[5].cast<std::string>());
  detector.setUseSoftwareAPICommand(state[6].cast<bool>());
  detector.setEvaluationFieldIndex(state[7].cast<unsigned char>());
  site.configuration->sensorZones = state[8].cast<SensorZones>();
  return site;
}

template <typename Class>
void bindOptions(Class& site) {
  site.def_property(
          "debounce_ms", [](const Site& self) { return self.detector().getDebounceTime().count(); },
          [](Site& self, int ms) { self.detector().setDebounceTime(ZoneDetector::Milliseconds(ms)); },
          "How long a zone must differ to be reported, in milliseconds.")
      .def_property(
          "min_points", [](const Site& self) { return self.detector().getMinPoints(); },
          [](Site& self, int count) { self.detector().setMinPoints(count); },
          "So many points make a zone occupied.")
      .def_property(
          "sensitivity",
          [](const Site& self) {
            return self.detector().getSensitivityFromMinPoints(self.detector().getMinPoints());
          },
          &setSensitivity, "11 - min_points; 1 to 10.")
      .def_property("trigger_level", &levelOf, &setLevel,
                    "\"low\" or \"high\": what an occupied zone drives its output to.")
      .def_property(
          "software_command", [](const Site& self) { return self.detector().useSoftwareAPICommand(); },
          [](Site& self, bool use) { self.detector().setUseSoftwareAPICommand(use); }, "Stored for a host.")
      .def_property(
          "active_field",
          [](const Site& self) { return static_cast<int>(self.detector().getEvaluationFieldIndex()); },
          &setActiveField, "The field that drives the outputs, 0 to 7; not in documents.");
}

}  // namespace

void bindSite(py::module_& module) {
  module.attr("MAX_FIELDS") = static_cast<int>(ZoneDetector::NUM_EVAL_FIELDS);
  module.attr("ZONES_PER_FIELD") = static_cast<int>(ZoneDetector::NUM_ZONES_PER_EVAL_FIELD);
  module.attr("MAX_EXCLUSION_ZONES") = static_cast<int>(ZoneDetector::MAX_NUM_EXCLUSION_ZONES);
  py::class_<Site> site(module, "Site");
  site.def(py::init<>())
      .def("_field", [](const Site& self, int field) { return self.detector().getEvaluationField(field); })
      .def("_set_field", [](Site& self, int index,
                            const FieldPointer& field) { self.detector().setEvaluationField(field, index); })
      .def(
          "zone", [](const Site& self, int field, int zone) { return self.detector().getZone(field, zone); },
          py::arg("field"), py::arg("zone"),
          R"(The zone in a slot, or None; the same object each time while somebody holds it. Raises IndexError.

>>> site = Site()
>>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
>>> site.zone(0, 0).name, site.zone(0, 1)
('gate', None))")
      .def("_exclusion_zones", [](const Site& self) { return self.detector().getExclusionZoneVector(); })
      .def(
          "_set_exclusion_zones",
          [](Site& self, const std::vector<ZonePointer>& zones, std::optional<std::size_t> newOne) {
            setExclusionZones(self.detector(), zones, newOne);
          },
          Logged())
      .def("_sensor_zones", [](const Site& self) { return self.configuration->sensorZones; })
      .def("_set_sensor_zones",
           [](Site& self, const SensorZones& zones) { self.configuration->sensorZones = zones; })
      .def("_lines", &linesOf)
      .def("_set_line",
           [](Site& self, const CounterLine& line) {
             self.configuration->lines.insert_or_assign(line.getName(), line);
           })
      .def("_erase_line",
           [](Site& self, const std::string& name) { return self.configuration->lines.erase(name) != 0; })
      .def(
          "__eq__",
          [](const Site& self, const Site& other) {
            return sameContent(*self.configuration, *other.configuration);
          },
          py::is_operator())
      .def(py::pickle(&stateOf, &siteOf));
  bindOptions(site);
  site.attr("__hash__") = py::none();
}

}  // namespace orvantis::python
