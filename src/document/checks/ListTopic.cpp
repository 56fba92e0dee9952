#include <map>

#include "document/checks/Topics.h"
#include "document/checks/Values.h"

namespace orvantis::toolkit {
namespace {

std::string usedBefore(const std::string& what, const LocatedNode& earlier) {
  return what + " is already used in line " + std::to_string(earlier.value.line);
}

}  // namespace

void checkNames(const CheckedObject& parent, std::string_view list, FindingKind kind, Report& report) {
  std::map<std::string_view, const LocatedNode*> earlier;
  std::size_t index = 0;
  for (const LocatedNode* node : parent.node.all(list)) {
    const std::string path = pathOf(parent, list, index++) + "/name";
    const LocatedNode* name = node->find("name");
    if (name == nullptr || name->kind == LocatedNode::Kind::Object || name->text.empty()) {
      continue;
    }
    if (const auto [first, isNew] = earlier.emplace(name->text, name); !isNew) {
      report.add(kind, name->value, path,
                 usedBefore("name " + quoted(name->text), *first->second) +
                     (kind == FindingKind::RepeatedLine ? "; only the later points would be kept" : ""));
    }
  }
}

void checkIndices(const CheckedObject& parent, std::string_view list, Report& report) {
  std::map<int, const LocatedNode*> earlier;
  std::size_t position = 0;
  for (const LocatedNode* node : parent.node.all(list)) {
    const std::string path = pathOf(parent, list, position++) + "/index";
    const auto index = wholeNumberUnder(*node, "index");
    if (!index) {
      continue;
    }
    const LocatedNode& value = *node->find("index");
    if (const auto [first, isNew] = earlier.emplace(*index, &value); !isNew) {
      report.add(FindingKind::RepeatedIndex, value.value, path,
                 usedBefore("index " + std::to_string(*index), *first->second) +
                     "; only the later entry would be kept");
    }
  }
}

void checkLine(const CheckedObject& line, Report& report) {
  if (const LocatedNode* name = line.node.find("name");
      name != nullptr && name->kind == LocatedNode::Kind::Text && name->text.empty()) {
    report.add(FindingKind::EmptyName, name->value, pathOf(line, "name"),
               "the name is empty; give the line one to tell it from others");
  }
  const LocatedNode* first = line.node.find("first");
  const LocatedNode* second = line.node.find("second");
  if (first == nullptr || second == nullptr) {
    return;
  }
  const auto from = pointOf(*first);
  const auto to = pointOf(*second);
  if (from && to && from->x() == to->x() && from->y() == to->y()) {
    report.add(FindingKind::EmptyLine, line,
               "both ends are " + coordinates(*from) + "; nothing is left or right of the line");
  }
}

}  // namespace orvantis::toolkit
