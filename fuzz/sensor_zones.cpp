// A zone that is bound to sensors is the same after it was saved and loaded again.

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <boost/property_tree/exceptions.hpp>

#include <filter/detection/Zone3dTarsel.h>

#include "Check.h"
#include "Documents.h"

using orvantis::SettingsManager;
using orvantis::filter::detection::Zone3dTarsel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SettingsManager document;
  if (!orvantis::fuzz::loadDocument(document, data, size)) {
    return 0;
  }
  try {
    Zone3dTarsel zone(document, 0);
    ORVANTIS_FUZZ_CHECK(!zone.getId().is_nil());
    if (!zone.getZone2d()) {
      return 0;  // without a shape it is saved without an id, so it cannot be loaded again
    }
    SettingsManager saved;
    zone.save(saved, 0);
    const Zone3dTarsel again(saved, 0);
    ORVANTIS_FUZZ_CHECK(again == zone);
    ORVANTIS_FUZZ_CHECK(again.enabled() == zone.enabled());
    ORVANTIS_FUZZ_CHECK(again.getSpecificSensors() == zone.getSpecificSensors());
    ORVANTIS_FUZZ_CHECK(again.getName() == zone.getName());
  } catch (const boost::property_tree::ptree_error&) {
  } catch (const boost::bad_lexical_cast&) {
  }
  return 0;
}
