// A detector from a document is the same after it was saved and loaded again.

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>

#include <boost/property_tree/exceptions.hpp>

#include <filter/detection/Sector.h>
#include <filter/detection/ZoneDetector.h>

#include "Check.h"
#include "Documents.h"

using orvantis::SettingsManager;
using namespace orvantis::filter::detection;

namespace {

bool load(ZoneDetector& detector, SettingsManager& settings) {
  try {
    detector.load(settings);
    return true;
  } catch (const boost::property_tree::ptree_error&) {
  } catch (const std::out_of_range&) {
  }
  return false;
}

// A whole disc is saved with a full turn added to its second bearing, which rounds it. The points in a whole
// disc do not depend on its bearings, so this gives it two bearings that need no rounding.
void settleWholeDisc(Zone3dBase& zone) {
  const auto sector = std::dynamic_pointer_cast<Sector>(zone.getZone2d());
  if (!sector) {
    return;
  }
  double first = 0.0;
  double second = 0.0;
  double radius = 0.0;
  sector->getSector(first, second, radius);
  if (std::abs(first - second) < 0.0001) {
    zone.setZone2d(std::make_shared<Sector>(sector->name(), 0.0, 0.0, radius));
  }
}

void settleWholeDiscs(ZoneDetector& detector) {
  for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
    for (int zone = 0; zone < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++zone) {
      if (const auto found = detector.getZone(field, zone)) {
        settleWholeDisc(*found);
      }
    }
  }
  for (const auto& zone : detector.getExclusionZoneVector()) {
    settleWholeDisc(*zone);
  }
}

std::string save(const ZoneDetector& detector) {
  SettingsManager settings;
  detector.save(settings);
  return orvantis::fuzz::documentText(settings);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SettingsManager document;
  ZoneDetector first;
  if (!orvantis::fuzz::loadDocument(document, data, size) || !load(first, document)) {
    return 0;
  }
  settleWholeDiscs(first);
  const std::string saved = save(first);
  if (saved.empty()) {
    return 0;  // a name that is not UTF-8 cannot be written
  }
  std::istringstream in(saved);
  SettingsManager again;
  ORVANTIS_FUZZ_CHECK(again.loadStream(in, SettingsManager::JSON));
  ZoneDetector second;
  ORVANTIS_FUZZ_CHECK(load(second, again));
  ORVANTIS_FUZZ_CHECK(save(second) == saved);
  return 0;
}
