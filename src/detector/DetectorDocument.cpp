// The "ZoneDetector" document. Its lists have no gaps; the key "index" of an entry says which slot it fills.

#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

#include "detector/Slots.h"
#include "text/LowerCase.h"

namespace orvantis::filter::detection {
namespace {

bool hasShape(const std::shared_ptr<Zone3dBase>& zone) {
  return zone && zone->getZone2d();
}

std::string nameOr(const std::string& name, const char* kind, int slot) {
  return name.empty() ? defaultName(kind, slot) : name;
}

}  // namespace

void ZoneDetector::load(SettingsManager& settings) {
  if (settings.exists("ZoneDetector")) {
    settings.pathPush("ZoneDetector");
    loadOptions(settings);
  }
  loadExclusionZones(settings);
  loadEvaluationFields(settings);
  settings.pathPop();  // also when nothing was entered: callers count on it
}

void ZoneDetector::loadOptions(SettingsManager& settings) {
  version_ = currentAPIVersion();
  debounceTime_ = Milliseconds(settings.get<int>("debounceTimeMs", debounceTime_.count()));
  minPoints_ = getMinPointsFromSensitivity(settings.get<int>("sensitivity", 10));
  const std::string level = toolkit::lowerCase(settings.get<std::string>("triggerActiveLevel", "high"));
  if (level == "low") {
    triggerZone_ = TriggerZoneValue::LOW;
  } else if (level == "high") {
    triggerZone_ = TriggerZoneValue::HIGH;
  } else {
    logger_.warnStream().write("Unidentified triggerActiveLevel value");
  }
  if (settings.exists("useSoftwareAPICommand")) {
    useSoftwareApiCommand_ = settings.get<bool>("useSoftwareAPICommand");
  }
}

void ZoneDetector::loadExclusionZones(SettingsManager& settings) {
  exclusionZones_.clear();
  for (int k = 0; k < settings.getChildCount("ExclusionZone"); ++k) {
    settings.pathPush("ExclusionZone", k, nullptr);
    settings.get<std::string>("name", defaultName("ExclusionZone", k));  // read only so that it is traced
    const auto zone = std::make_shared<Zone3dBase>();
    zone->load(settings);
    settings.pathPop();
    exclusionZones_.push_back(zone);
  }
}

void ZoneDetector::loadEvaluationFields(SettingsManager& settings) {
  evaluationFields_.fill(nullptr);
  for (int n = 0; n < settings.getChildCount("EvaluationField"); ++n) {
    settings.pathPush("EvaluationField", n, nullptr);
    const int slot = settings.get<int>("index");
    const auto field = std::make_shared<EvaluationField>();
    evaluationFields_[checkedFieldSlot(slot)] = field;
    field->name = settings.get<std::string>("name", defaultName("EvaluationField", slot));
    for (int m = 0; m < settings.getChildCount("Zone"); ++m) {
      settings.pathPush("Zone", m, nullptr);
      const int zoneSlot = settings.get<int>("index");
      const auto zone = std::make_shared<Zone3dBase>();
      field->zones[checkedZoneSlot(zoneSlot)] = zone;
      zone->load(settings);
      settings.pathPop();
    }
    settings.pathPop();
  }
}

void ZoneDetector::save(SettingsManager& settings) const {
  settings.pathPush("ZoneDetector");
  settings.put<std::string>("version", version_);
  settings.put<int>("debounceTimeMs", debounceTime_.count());
  settings.put<int>("sensitivity", getSensitivityFromMinPoints(minPoints_));
  settings.put<std::string>("triggerActiveLevel", triggerZone_ != TriggerZoneValue::LOW ? "high" : "low");
  settings.put<bool>("useSoftwareAPICommand", useSoftwareApiCommand_);
  saveExclusionZones(settings);
  saveEvaluationFields(settings);
  settings.pathPop();
}

// Zone3dBase::save writes "name" again, so the document has no default name for a zone without a name.

void ZoneDetector::saveExclusionZones(SettingsManager& settings) const {
  int k = 0;
  for (const std::shared_ptr<Zone3dBase>& zone : exclusionZones_) {
    if (!hasShape(zone)) {
      continue;
    }
    settings.pathPush("ExclusionZone", k, nullptr);
    settings.put<std::string>("name", nameOr(zone->getName(), "ExclusionZone", k));
    zone->save(settings);
    settings.pathPop();
    ++k;
  }
}

void ZoneDetector::saveEvaluationFields(SettingsManager& settings) const {
  int n = 0;
  for (int slot = 0; slot < NUM_EVAL_FIELDS; ++slot) {
    const std::shared_ptr<EvaluationField> field = getEvaluationField(slot);
    if (!field) {
      continue;
    }
    settings.pathPush("EvaluationField", n, nullptr);
    settings.put<std::string>("name", nameOr(field->name, "EvaluationField", slot));
    settings.put<int>("index", slot);
    int m = 0;
    for (int zoneSlot = 0; zoneSlot < NUM_ZONES_PER_EVAL_FIELD; ++zoneSlot) {
      const std::shared_ptr<Zone3dBase> zone = getZone(slot, zoneSlot);
      if (!hasShape(zone)) {
        continue;
      }
      settings.pathPush("Zone", m, nullptr);
      settings.put<std::string>("name", nameOr(zone->getName(), "Zone", zoneSlot));
      settings.put<int>("index", zoneSlot);
      zone->save(settings);
      settings.pathPop();
      ++m;
    }
    settings.pathPop();
    ++n;
  }
}

}  // namespace orvantis::filter::detection
