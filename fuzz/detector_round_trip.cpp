// A document that loads is the same detector after it was saved and loaded again.

#include <stdexcept>

#include <boost/property_tree/exceptions.hpp>

#include <filter/detection/ZoneDetector.h>

#include "Check.h"
#include "Documents.h"

using orvantis::SettingsManager;
using orvantis::filter::detection::ZoneDetector;

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
  const std::string saved = save(first);
  if (saved.empty()) {
    return 0;  // a name that is no UTF-8 cannot be written
  }
  std::istringstream in(saved);
  SettingsManager again;
  ORVANTIS_FUZZ_CHECK(again.loadStream(in, SettingsManager::JSON));
  ZoneDetector second;
  ORVANTIS_FUZZ_CHECK(load(second, again));
  ORVANTIS_FUZZ_CHECK(save(second) == saved);
  return 0;
}
