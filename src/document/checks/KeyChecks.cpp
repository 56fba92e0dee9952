#include "document/checks/KeyChecks.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

#include "document/Spelling.h"
#include "document/checks/Values.h"
#include "text/LowerCase.h"

namespace orvantis::toolkit {
namespace {

bool isShape(const Key& key) {
  return key.holds == ObjectKind::Polygon || key.holds == ObjectKind::Rectangle ||
         key.holds == ObjectKind::Sector;
}

// Where a misplaced key belongs, in words.
std::string_view homeOf(std::string_view key, ObjectKind kind) {
  if (kind == ObjectKind::SensorList || kind == ObjectKind::Sensor || kind == ObjectKind::Pose) {
    return {};  // a list of sensors has no keys of a zone document
  }
  static const std::map<ObjectKind, std::string_view> names = {
      {ObjectKind::Document, "at the top of the document"},
      {ObjectKind::Detector, "in \"ZoneDetector\""},
      {ObjectKind::Field, "in an entry of \"EvaluationField\""},
      {ObjectKind::Zone, "in a zone"},
      {ObjectKind::SensorZone, "in an entry of \"Zone3d\""},
      {ObjectKind::Sensors, "in \"Sensors\""},
      {ObjectKind::Polygon, "in \"Polygon\" or \"Rectangle\""},
      {ObjectKind::Rectangle, "in \"Rectangle\""},
      {ObjectKind::Sector, "in \"Sector\""},
      {ObjectKind::Point, "in a point"},
      {ObjectKind::Lines, "in \"CounterLines\""},
      {ObjectKind::Line, "in an entry of \"CounterLine\""},
  };
  for (const auto& [object, name] : names) {
    const Key* found = findKey(object, key);
    if (found != nullptr && !found->isLabel) {
      return name;
    }
  }
  return {};
}

class KeyCheck {
 public:
  KeyCheck(const CheckedObject& entry, Report& report)
      : entry_(entry), report_(report), known_(knownKeys(entry)) {
    for (const Key* key : known_) {
      names_.push_back(key->name);
      if (entry.node.find(key->name) == nullptr && !isOtherShape(*key)) {
        absent_.push_back(key->name);
      }
    }
  }

  void run() {
    std::map<std::string_view, std::size_t> counts;
    for (const LocatedNode& child : entry_.node.children) {
      const std::size_t index = counts[child.name]++;
      const auto key = std::find_if(known_.begin(), known_.end(),
                                    [&child](const Key* k) { return k->name == child.name; });
      if (key == known_.end()) {
        if (index == 0) {
          checkUnknown(child);
        }
      } else if (!(*key)->isList) {
        checkSingle(child, **key, index);
      }
    }
    checkMissing();
  }

 private:
  void checkUnknown(const LocatedNode& child) {
    const std::string path = pathOf(entry_, child.name);
    const std::string_view home = homeOf(child.name, entry_.kind);
    if (const std::string_view hidden = nearest(child.name, absent_); home.empty() && !hidden.empty()) {
      meant_.insert(hidden);
      report_.add(FindingKind::MisspeltKey, child.key, path,
                  "unknown key; did you mean " + quoted(hidden) + "?");
    } else if (!home.empty()) {
      report_.add(FindingKind::MisplacedKey, child.key, path,
                  "is not read here; it belongs " + std::string(home));
    } else {
      const std::string_view known = nearest(child.name, names_);
      report_.add(FindingKind::UnknownKey, child.key, path,
                  known.empty() ? "unknown key; nothing reads it"
                                : "unknown key; did you mean " + quoted(known) + "?");
    }
  }

  void checkSingle(const LocatedNode& child, const Key& key, std::size_t index) {
    const std::string path = child.isElement ? pathOf(entry_, child.name, index) : pathOf(entry_, child.name);
    if (index > 0) {
      report_.add(FindingKind::RepeatedKey, child.isElement ? child.value : child.key, path,
                  "is given again, and only the first one is read; remove one");
    } else if (child.isElement && entry_.node.all(child.name).size() == 1) {
      report_.add(FindingKind::NeedlessList, child.key, path, "is a list of one; remove its brackets");
    }
    if (index == 0 && isOtherShape(key)) {
      report_.add(FindingKind::UnreadShape, child.key, path,
                  "is not read, because \"shape\" is " + quoted(entry_.node.find("shape")->text));
    }
  }

  void checkMissing() {
    for (const Key* key : known_) {
      const bool isAsked = isShape(*key) && isRead(entry_, *key);
      if (entry_.node.find(key->name) != nullptr || meant_.contains(key->name)) {
        continue;
      }
      if (const auto* empty = entry_.node.findEmptyArray(key->name); empty != nullptr) {
        checkEmptyArray(*empty, *key, isAsked);
      } else if (isAsked) {
        report_.add(FindingKind::MissingKey, entry_,
                    quoted(key->name) + " is missing, which \"shape\" asks for; give " + allowed(*key));
      } else if (key->isRequired) {
        report_.add(FindingKind::MissingKey, entry_,
                    quoted(key->name) + " is missing; give " + allowed(*key));
      }
    }
  }

  // The settings store keeps nothing of it, so for the library the key is missing.
  void checkEmptyArray(const LocatedNode::EmptyArray& array, const Key& key, bool isAsked) {
    if (!key.isList || key.isRequired || isAsked) {
      report_.add(FindingKind::WrongType, array.key, pathOf(entry_, key.name),
                  "an empty list stands where " + allowed(key) + " belongs");
    }
  }

  // Whether "shape" names another shape than this key.
  bool isOtherShape(const Key& key) const {
    return isShape(key) && !isRead(entry_, key) &&
           std::any_of(known_.begin(), known_.end(),
                       [this](const Key* other) { return isShape(*other) && isRead(entry_, *other); });
  }

  const CheckedObject& entry_;
  Report& report_;
  std::vector<const Key*> known_;
  std::vector<std::string_view> names_;
  std::vector<std::string_view> absent_;
  std::set<std::string_view> meant_;  // the missing keys that were found misspelt
};

}  // namespace

std::vector<const Key*> knownKeys(const CheckedObject& entry) {
  std::vector<const Key*> keys;
  for (const Key& key : keysOf(entry.kind)) {
    keys.push_back(&key);
  }
  if (entry.kind == ObjectKind::Document && entry.node.find("ZoneDetector") == nullptr) {
    for (const Key& key : keysOf(ObjectKind::Detector)) {
      if (findKey(ObjectKind::Document, key.name) == nullptr) {
        keys.push_back(&key);
      }
    }
  }
  return keys;
}

bool isRead(const CheckedObject& entry, const Key& key) {
  if (!isShape(key)) {
    return true;
  }
  const auto shape = wordUnder(entry.node, "shape");
  return shape && *shape == lowerCase(key.name);
}

void checkKeys(const CheckedObject& entry, Report& report) {
  KeyCheck(entry, report).run();
}

}  // namespace orvantis::toolkit
