#include "document/checks/Topics.h"

namespace orvantis::toolkit {
namespace {

void checkNotEmpty(const LocatedNode& text, const std::string& path, Report& report) {
  if (text.kind == LocatedNode::Kind::Text && text.text.empty()) {
    report.add(FindingKind::WrongType, text.value, path, "is empty; give a text of at least one character");
  }
}

}  // namespace

void checkSensor(const CheckedObject& sensor, Report& report) {
  for (const char* const key : {"name", "topic"}) {
    if (const LocatedNode* text = sensor.node.find(key)) {
      checkNotEmpty(*text, pathOf(sensor, key), report);
    }
  }
  std::size_t index = 0;
  for (const LocatedNode* file : sensor.node.all("files")) {
    checkNotEmpty(*file, pathOf(sensor, "files", index++), report);
  }
  if (const LocatedNode::EmptyArray* none = sensor.node.findEmptyArray("files")) {
    report.add(FindingKind::WrongType, none->key, pathOf(sensor, "files"),
               "an empty list stands where a list of files and folders belongs");
  } else if (sensor.node.find("files") == nullptr && sensor.node.find("topic") == nullptr &&
             !report.has(FindingKind::MisspeltKey)) {
    report.add(
        FindingKind::MissingKey, sensor,
        "\"files\" and \"topic\" are both missing; give its frames, or its topic in the recordings of the "
        "command line");
  }
}

}  // namespace orvantis::toolkit
