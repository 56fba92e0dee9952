#include <cstddef>
#include <cstdlib>
#include <utility>

#include <filter/detection/ZoneDetector.h>

#include "detector/Slots.h"

namespace orvantis::filter::detection {
namespace {

// An independent zone; null when the zone has no shape. The copy of a derived class is a plain Zone3dBase.
std::shared_ptr<Zone3dBase> cloneZone(const std::shared_ptr<Zone3dBase>& zone) {
  const std::shared_ptr<Zone> shape = zone ? zone->getZone2d() : nullptr;
  return shape ? std::make_shared<Zone3dBase>(shape->makeCopy(), zone->getZMin(), zone->getZMax()) : nullptr;
}

}  // namespace

const std::uint32_t ZoneDetector::CURRENT_API_MAJOR_VERSION;
const std::uint32_t ZoneDetector::CURRENT_API_MINOR_VERSION;
const std::int32_t ZoneDetector::NUM_EVAL_FIELDS;
const std::int32_t ZoneDetector::NUM_ZONES_PER_EVAL_FIELD;
const std::int32_t ZoneDetector::MAX_NUM_EXCLUSION_ZONES;
const std::int32_t ZoneDetector::MAX_NUM_ZONES;
const std::string ZoneDetector::DEFAULT_FILE_NAME = "object_detection_settings.json";

ZoneDetector::ZoneDetector() : version_(currentAPIVersion()) {
  for (int sensitivity = 1; sensitivity <= 10; ++sensitivity) {
    minPointsBySensitivity_[sensitivity] = 11 - sensitivity;
  }
}

ZoneDetector::ZoneDetector(const EvaluationFieldArray& fields) : ZoneDetector() {
  evaluationFields_ = fields;
}

ZoneDetector::ZoneDetector(const ZoneDetector&) = default;

ZoneDetector& ZoneDetector::operator=(const ZoneDetector& other) {
  if (this == &other) {
    return *this;
  }
  version_ = other.getVersion();
  debounceTime_ = other.debounceTime_;
  minPoints_ = other.minPoints_;
  triggerZone_ = other.triggerZone_;

  exclusionZones_.clear();
  for (const std::shared_ptr<Zone3dBase>& zone : other.exclusionZones_) {
    if (std::shared_ptr<Zone3dBase> clone = cloneZone(zone)) {
      exclusionZones_.push_back(std::move(clone));
    }
  }

  EvaluationFieldArray fields;
  for (std::size_t field = 0; field < fields.size(); ++field) {
    if (const std::shared_ptr<EvaluationField>& source = other.evaluationFields_[field]) {
      fields[field] = std::make_shared<EvaluationField>();
      fields[field]->name = source->name;
      for (std::size_t zone = 0; zone < source->zones.size(); ++zone) {
        fields[field]->zones[zone] = cloneZone(source->zones[zone]);
      }
    }
  }
  evaluationFields_ = fields;
  return *this;
}

ZoneDetector::~ZoneDetector() = default;

int ZoneDetector::getMinPointsFromSensitivity(int sensitivity) const noexcept {
  const auto entry = minPointsBySensitivity_.find(sensitivity);
  return entry != minPointsBySensitivity_.end() ? entry->second : 1;
}

int ZoneDetector::getSensitivityFromMinPoints(int minPoints) const noexcept {
  for (const auto& [sensitivity, points] : minPointsBySensitivity_) {
    if (points == minPoints) {
      return sensitivity;
    }
  }
  return 10;
}

std::shared_ptr<ZoneDetector::EvaluationField> ZoneDetector::getEvaluationField(int field) const {
  return evaluationFields_[checkedFieldSlot(field)];
}

void ZoneDetector::setEvaluationField(const std::shared_ptr<EvaluationField>& evaluationField, int field) {
  const std::size_t slot = checkedFieldSlot(field);
  for (ZoneState& state : zoneStates_[slot]) {
    state.value = -1;
  }
  evaluationFields_[slot] = evaluationField;
  if (evaluationField && evaluationField->name.empty()) {
    evaluationField->name = defaultName("EvaluationField", field);
  }
}

std::shared_ptr<Zone3dBase> ZoneDetector::getZone(int field, int zone) const {
  const std::size_t slot = checkedZoneSlot(zone);
  const std::shared_ptr<EvaluationField>& evaluationField = evaluationFields_[checkedFieldSlot(field)];
  return evaluationField ? evaluationField->zones[slot] : nullptr;
}

void ZoneDetector::setZone(const std::shared_ptr<Zone3dBase>& zone3d, int field, int zone) {
  const std::size_t slot = checkedZoneSlot(zone);
  std::shared_ptr<EvaluationField>& evaluationField = evaluationFields_[checkedFieldSlot(field)];
  if (!evaluationField) {
    evaluationField = std::make_shared<EvaluationField>();
    evaluationField->name = defaultName("EvaluationField", field);
  }
  if (zone3d && zone3d->getName().empty()) {
    zone3d->setName(defaultName("Zone", zone));
  }
  evaluationField->zones[slot] = zone3d;
}

std::string ZoneDetector::currentAPIVersion() {
  return std::to_string(CURRENT_API_MAJOR_VERSION) + "." + std::to_string(CURRENT_API_MINOR_VERSION);
}

bool ZoneDetector::checkVersion(const std::string& version) noexcept {
  // Only the major number decides; a text that begins with no number reads as 0.
  return std::strtoul(version.c_str(), nullptr, 10) <= CURRENT_API_MAJOR_VERSION;
}

}  // namespace orvantis::filter::detection
