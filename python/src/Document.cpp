#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <filter/detection/CounterLines.h>
#include <settings/SettingsManager.h>

#include "Bindings.h"
#include "Content.h"
#include "Log.h"
#include "Site.h"
#include "Text.h"
#include "document/Check.h"
#include "files/AtomicFile.h"
#include "files/Failure.h"

namespace orvantis::python {
namespace {

using toolkit::CheckedDocument;
using toolkit::Configuration;

std::shared_ptr<CheckedDocument> check(const std::string& text) {
  return std::make_shared<CheckedDocument>(toolkit::check(text));
}

py::list findingsOf(const CheckedDocument& document) {
  py::list findings;
  for (const toolkit::Finding& finding : document.findings) {
    findings.append(py::make_tuple(finding.at.line, textOf(finding.path), textOf(finding.text),
                                   finding.at.column, std::string(toolkit::idOf(finding.kind)),
                                   std::string(toolkit::wordOf(finding.severity())),
                                   textOf(finding.excerpt)));
  }
  return findings;
}

std::string written(const Configuration& configuration) {
  SettingsManager settings;
  configuration.detector.save(settings);
  filter::detection::CounterLines lines;
  for (const auto& [name, line] : configuration.lines) {
    lines.insert(line);
  }
  if (lines.size() > 0) {
    lines.save(settings);
  }
  for (std::size_t i = 0; i < configuration.sensorZones.size(); ++i) {
    configuration.sensorZones[i]->save(settings, static_cast<int>(i));
  }
  std::ostringstream out;
  if (!settings.saveStream(out, SettingsManager::JSON)) {
    throw std::invalid_argument("a name is not UTF-8");
  }
  return out.str();
}

// What a document does not keep: everything that loading it again does not give.
std::string lostIn(const Configuration& saved, const Configuration& loaded) {
  const auto& fields = saved.detector.getEvaluationFieldArray();
  const auto& others = loaded.detector.getEvaluationFieldArray();
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (!sameField(fields[i].get(), others[i].get())) {
      return "field " + std::to_string(i);
    }
  }
  const auto& zones = saved.detector.getExclusionZoneVector();
  const auto& otherZones = loaded.detector.getExclusionZoneVector();
  for (std::size_t i = 0; i < zones.size(); ++i) {
    if (i >= otherZones.size() || !sameZone(zones[i].get(), otherZones[i].get())) {
      return "exclusion zone " + std::to_string(i);
    }
  }
  for (std::size_t i = 0; i < saved.sensorZones.size(); ++i) {
    if (i >= loaded.sensorZones.size() ||
        !sameZone(saved.sensorZones[i].get(), loaded.sensorZones[i].get())) {
      return "sensor zone " + std::to_string(i);
    }
  }
  for (const auto& [name, line] : saved.lines) {
    const auto found = loaded.lines.find(name);
    if (found == loaded.lines.end() || !sameLine(line, found->second)) {
      return "counter line \"" + toolkit::printable(name) + "\"";
    }
  }
  return sameContent(saved, loaded) ? "" : "an option";
}

// Told as OSError, without the number that the system gave.
struct Unwritable : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace

void bindDocument(py::module_& module) {
  py::register_exception<Unwritable>(module, "Unwritable", PyExc_OSError);
  module.attr("DOCUMENT_SIZE_LIMIT") = toolkit::documentSizeLimit;
  py::class_<CheckedDocument, std::shared_ptr<CheckedDocument>>(module, "CheckedDocument")
      .def_property_readonly("ok", [](const CheckedDocument& self) { return self.configuration.has_value(); })
      .def_property_readonly("complaint", [](const CheckedDocument& self) { return textOf(self.complaint); })
      .def_property_readonly("findings", &findingsOf)
      .def("give_to",
           [](const CheckedDocument& self, Site& site) {
             site.configuration = std::make_shared<Configuration>(*self.configuration);
           })
      .def("lost", [](const CheckedDocument& self, const Site& site) {
        Configuration loaded = *self.configuration;
        loaded.detector.setEvaluationFieldIndex(site.detector().getEvaluationFieldIndex());
        return textOf(lostIn(*site.configuration, loaded));
      });
  module.def("check", &check, py::arg("text"), Released());
  module.def(
      "write",
      [](const Site& site) {
        const Configuration snapshot = snapshotOf(*site.configuration);
        std::string text;
        {
          const Unlocked released;
          text = written(snapshot);
        }
        return py::bytes(text);
      },
      Logged());
  module.def(
      "write_whole",
      [](const std::string& path, const std::string& content) {
        try {
          toolkit::writeWhole(path, content);
        } catch (const toolkit::Failure& failure) {
          throw Unwritable(failure.what());
        }
      },
      py::arg("path"), py::arg("content"), Released());
  module.def("printable", [](const std::string& text) { return toolkit::printable(text); });
}

}  // namespace orvantis::python
