#include "document/checks/Structure.h"

#include <utility>

#include "document/LocatedJson.h"
#include "document/checks/KeyChecks.h"
#include "document/checks/Report.h"
#include "document/checks/Topics.h"
#include "document/checks/ValueChecks.h"

namespace orvantis::toolkit {
namespace {

void checkObject(const CheckedObject& entry, Report& report);

// Checks the value, or all entries, of one key of an object.
void checkEntries(const CheckedObject& parent, const Key& key, Report& report) {
  std::vector<const LocatedNode*> nodes = parent.node.all(key.name);
  if (!key.isList && nodes.size() > 1) {
    nodes.erase(nodes.begin() + 1, nodes.end());  // the others are not read
  }
  if (key.many && nodes.size() > *key.many) {
    report.add(FindingKind::TooMany, nodes[*key.many]->value, pathOf(parent, key.name, *key.many),
               std::to_string(nodes.size()) + " " + std::string(key.plural) + "; at most " +
                   std::to_string(*key.many) + " are allowed");
  }
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const LocatedNode& node = *nodes[i];
    const std::string path =
        key.isList || node.isElement ? pathOf(parent, key.name, i) : pathOf(parent, key.name);
    checkValue(node, key, path, report);
    if (key.type == ValueType::Object && node.kind == LocatedNode::Kind::Object) {
      checkObject({node, key.holds, path}, report);
    }
  }
}

void checkTopic(const CheckedObject& entry, Report& report) {
  switch (entry.kind) {
    case ObjectKind::Document:
      checkDocument(entry, report);
      checkNames(entry, "Zone3d", FindingKind::RepeatedName, report);
      return;
    case ObjectKind::Detector:
      return checkDetector(entry, report);
    case ObjectKind::Field:
      checkNames(entry, "Zone", FindingKind::RepeatedName, report);
      return checkIndices(entry, "Zone", report);
    case ObjectKind::Zone:
    case ObjectKind::ExclusionZone:
    case ObjectKind::SensorZone:
      return checkZone(entry, report);
    case ObjectKind::Polygon:
      return checkPolygon(entry, report);
    case ObjectKind::Rectangle:
      return checkRectangle(entry, report);
    case ObjectKind::Lines:
      return checkNames(entry, "CounterLine", FindingKind::RepeatedLine, report);
    case ObjectKind::Line:
      return checkLine(entry, report);
    case ObjectKind::SensorList:
      return checkNames(entry, "sensors", FindingKind::RepeatedKey, report);
    case ObjectKind::Sensor:
      return checkSensor(entry, report);
    case ObjectKind::Pose:
    case ObjectKind::Sensors:
    case ObjectKind::Sector:
    case ObjectKind::Point:
      return;
  }
}

void checkObject(const CheckedObject& entry, Report& report) {
  checkKeys(entry, report);
  for (const Key* key : knownKeys(entry)) {
    if (isRead(entry, *key)) {
      checkEntries(entry, *key, report);
    }
  }
  checkTopic(entry, report);
}

}  // namespace

std::vector<Finding> findingsOf(const LocatedNode& root) {
  Report report;
  const CheckedObject document{root, ObjectKind::Document, ""};
  if (root.kind == LocatedNode::Kind::Object) {
    checkObject(document, report);
    if (root.find("ZoneDetector") == nullptr) {
      checkTopic({root, ObjectKind::Detector, ""}, report);
    }
  } else {
    report.add(FindingKind::EmptyDocument, document,
               described(root) + " stands where an object with \"ZoneDetector\" belongs");
  }
  return std::move(report).inOrder();
}

std::vector<Finding> findingsOfSensors(const LocatedNode& root) {
  Report report;
  const CheckedObject list{root, ObjectKind::SensorList, ""};
  if (root.kind == LocatedNode::Kind::Object) {
    checkObject(list, report);
  } else {
    report.add(FindingKind::WrongType, list,
               described(root) + " stands where an object with \"sensors\" belongs");
  }
  return std::move(report).inOrder();
}

}  // namespace orvantis::toolkit
