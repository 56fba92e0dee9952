// The check of an untrusted document before it is loaded: fixed limits, the first fault ends it.

#include <cstddef>
#include <exception>
#include <istream>
#include <sstream>
#include <stdexcept>

#include <filter/detection/Polygon.h>
#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>
#include <settings/SettingsPathManager.h>

#include "detector/Limits.h"
#include "text/LowerCase.h"

namespace orvantis::filter::detection {
namespace {

using utils::SettingsPathManager;

static_assert(maxEvaluationFields == ZoneDetector::NUM_EVAL_FIELDS);
static_assert(maxZonesPerField == ZoneDetector::NUM_ZONES_PER_EVAL_FIELD);
static_assert(maxExclusionZones == ZoneDetector::MAX_NUM_EXCLUSION_ZONES);
static_assert(maxPolygonVertices == Polygon::MAX_NUM_POLYGON_SIDES);

// The bytes of the stream. There must be fewer than the limit: when the limit is read in full, the stream has
// not seen its end.
std::string readLimited(std::istream& input) {
  std::string bytes(documentSizeLimit, '\0');
  try {
    input.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  } catch (const std::exception&) {
    // A stream may be set to throw, also at the end of a short document. Its state tells what happened.
  }
  if (!input.eof()) {
    throw std::runtime_error("Input file size exceeds maximum allowable size of " +
                             std::to_string(documentSizeLimit) + " bytes.");
  }
  bytes.resize(static_cast<std::size_t>(input.gcount()));
  return bytes;
}

// Every exception becomes a std::runtime_error, since that is all that `validate` may throw for a document.
void parse(const std::string& bytes, SettingsManager& settings) {
  bool isParsed = false;
  try {
    std::istringstream document(bytes);
    isParsed = settings.loadStream(document, SettingsManager::JSON);
  } catch (const std::exception& error) {
    throw std::runtime_error(error.what());
  }
  if (!isParsed) {
    throw std::runtime_error(settings.getLoadError());
  }
}

// Checks the vertices of the zone entry at the current path, when it is a polygon. `zone` is how the fault
// names it.
void checkVertices(SettingsManager& settings, const std::string& zone) {
  if (toolkit::lowerCase(settings.get<std::string>("shape")) != Polygon::TYPE_NAME) {
    return;
  }
  const SettingsPathManager polygon(settings, "Polygon", -1);
  if (settings.getChildCount("Point") > Polygon::MAX_NUM_POLYGON_SIDES) {
    throw std::runtime_error("Cannot load configuration file.\nMaximum of " +
                             std::to_string(Polygon::MAX_NUM_POLYGON_SIDES) +
                             " zone Polygon vertices exceeded in Zone '" + zone + "'.");
  }
}

void validateZone(SettingsManager& settings, const std::string& fieldName) {
  const auto name = settings.get<std::string>("name");
  if (!ZoneDetector::validateZoneNameLength(name)) {
    throw std::runtime_error("Zone " + name + " in eval field " + fieldName +
                             " name string length is outside the limits.");
  }
  checkVertices(settings, fieldName + ": " + name);
}

void validateEvaluationField(SettingsManager& settings) {
  const auto name = settings.get<std::string>("name");
  if (!ZoneDetector::validateZoneNameLength(name)) {
    throw std::runtime_error("Evaluation Field " + name + " name string length is outside the limits.");
  }
  const std::string field = "<EvaluationField> index " + std::to_string(settings.get<int>("index"));
  const int numZones = settings.getChildCount("Zone");
  if (numZones < 1) {
    throw std::runtime_error(field + " does not contain any <Zone> entries");
  }
  if (numZones > ZoneDetector::NUM_ZONES_PER_EVAL_FIELD) {
    throw std::runtime_error(field + " contains more than " +
                             std::to_string(ZoneDetector::NUM_ZONES_PER_EVAL_FIELD) + " <Zone> nodes");
  }
  for (int j = 0; j < numZones; ++j) {
    const SettingsPathManager zone(settings, "Zone", j);
    validateZone(settings, name);
  }
}

void validateEvaluationFields(SettingsManager& settings) {
  const int numFields = settings.getChildCount("EvaluationField");
  if (numFields > ZoneDetector::NUM_EVAL_FIELDS) {
    throw std::runtime_error("File contains more than " + std::to_string(ZoneDetector::NUM_EVAL_FIELDS) +
                             " <EvaluationField> nodes");
  }
  for (int i = 0; i < numFields; ++i) {
    const SettingsPathManager field(settings, "EvaluationField", i);
    validateEvaluationField(settings);
  }
}

void validateDetector(SettingsManager& settings) {
  ZoneDetector::validateExclusionZone(settings);
  validateEvaluationFields(settings);
}

}  // namespace

void ZoneDetector::validate(std::istream& input) {
  SettingsManager settings;
  parse(readLimited(input), settings);
  if (settings.exists("ZoneDetector")) {
    const SettingsPathManager detector(settings, "ZoneDetector", -1);
    validateDetector(settings);
  } else {
    validateDetector(settings);
  }
}

void ZoneDetector::validateExclusionZone(SettingsManager& settings) {
  const int numZones = settings.getChildCount("ExclusionZone");
  if (numZones > MAX_NUM_EXCLUSION_ZONES) {
    throw std::runtime_error("File contains " + std::to_string(numZones) +
                             "zones outside the range of allowed zones");
  }
  for (int i = 0; i < numZones; ++i) {
    const SettingsPathManager zone(settings, "ExclusionZone", i);
    const auto name = settings.get<std::string>("name");
    if (!validateZoneNameLength(name)) {
      throw std::runtime_error("Exclusion Zone name (" + name + ") length is outside the limits.");
    }
    checkVertices(settings, name);
  }
}

bool ZoneDetector::validateZoneNameLength(const std::string& name) noexcept {
  return !name.empty() && name.size() <= maxNameLength;
}

}  // namespace orvantis::filter::detection
