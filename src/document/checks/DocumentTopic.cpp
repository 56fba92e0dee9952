#include <filter/detection/ZoneDetector.h>

#include "document/checks/Topics.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::ZoneDetector;

// The first key of the document that belongs in "ZoneDetector".
const LocatedNode* strayKey(const LocatedNode& document) {
  for (const LocatedNode& child : document.children) {
    if (findKey(ObjectKind::Detector, child.name) != nullptr && child.name != "$schema") {
      return &child;
    }
  }
  return nullptr;
}

bool holdsAny(const LocatedNode* parent, std::string_view list) {
  return parent != nullptr && parent->find(list) != nullptr;
}

}  // namespace

void checkDocument(const CheckedObject& document, Report& report) {
  const LocatedNode& root = document.node;
  const LocatedNode* detector = root.find("ZoneDetector");
  if (detector == nullptr) {
    if (const LocatedNode* stray = strayKey(root)) {
      report.add(FindingKind::MissingTopNode, stray->key, document.path,
                 "\"ZoneDetector\" is missing, without which no option is read; put " + quoted(stray->name) +
                     " and what belongs to it into \"ZoneDetector\"");
    }
    detector = &root;
  }
  const bool hasZones = holdsAny(detector, "EvaluationField") || holdsAny(detector, "ExclusionZone") ||
                        holdsAny(&root, "Zone3d");
  // Nothing more is said when there is already a finding about a misplaced or misspelt key.
  if (!hasZones && !holdsAny(root.find("CounterLines"), "CounterLine") &&
      !report.has(FindingKind::MisspeltKey) && !report.has(FindingKind::MisplacedKey)) {
    report.add(FindingKind::EmptyDocument, document,
               "no zone and no counter line; zones belong in \"EvaluationField\" in \"ZoneDetector\"");
  }
}

void checkDetector(const CheckedObject& detector, Report& report) {
  if (const LocatedNode* version = detector.node.find("version");
      version != nullptr && !ZoneDetector::checkVersion(version->text)) {
    report.add(FindingKind::NewerVersion, version->value, pathOf(detector, "version"),
               quoted(version->text) + " is newer than " + ZoneDetector::currentAPIVersion() +
                   ", which this program reads");
  }
  if (holdsAny(&detector.node, "ExclusionZone") && !holdsAny(&detector.node, "EvaluationField")) {
    report.add(FindingKind::NoFields, detector, "no \"EvaluationField\": nothing will be detected");
  }
  checkNames(detector, "ExclusionZone", FindingKind::RepeatedName, report);
  checkNames(detector, "EvaluationField", FindingKind::RepeatedName, report);
  checkIndices(detector, "EvaluationField", report);
}

}  // namespace orvantis::toolkit
