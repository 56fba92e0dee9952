// check: any bytes give findings with places inside of the bytes, or a configuration. The configuration is
// the one that the library loads from the same text. It can be drawn and written as JSON.

#include <cstddef>
#include <stdexcept>
#include <string>

#include <boost/json/parse.hpp>

#include <filter/detection/CounterLines.h>

#include "Check.h"
#include "Documents.h"
#include "Findings.h"
#include "document/Check.h"
#include "document/DocumentJson.h"
#include "drawing/SitePlan.h"
#include "text/JsonText.h"

using orvantis::SettingsManager;
using orvantis::filter::detection::CounterLines;
using orvantis::filter::detection::ZoneDetector;
using namespace orvantis::toolkit;

namespace {

std::string saved(const ZoneDetector& detector) {
  SettingsManager settings;
  detector.save(settings);
  return orvantis::fuzz::documentText(settings);
}

void checkConfiguration(const Configuration& configuration, const std::uint8_t* data, std::size_t size) {
  SettingsManager settings;
  ORVANTIS_FUZZ_CHECK(orvantis::fuzz::loadDocument(settings, data, size));
  ZoneDetector detector;
  detector.load(settings);
  ORVANTIS_FUZZ_CHECK(saved(detector) == saved(configuration.detector));
  CounterLines lines;
  lines.load(settings);
  ORVANTIS_FUZZ_CHECK(lines.clone().size() == configuration.lines.size());

  const std::string told = toJson(toObject(configuration));
  ORVANTIS_FUZZ_CHECK(boost::json::parse(told).is_object());
  try {
    const std::string picture = drawPlan(planOf(configuration));
    ORVANTIS_FUZZ_CHECK(picture.substr(0, 5) == "<svg ");
  } catch (const std::runtime_error& error) {
    // The coordinates are too far apart, or too far from the origin.
    ORVANTIS_FUZZ_CHECK(error.what()[0] != '\0');
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const CheckedDocument checked = check(text);
  ORVANTIS_FUZZ_CHECK(checked.configuration.has_value() == (checked.errors() == 0));
  orvantis::fuzz::checkFindings(checked.findings, text);
  if (checked.configuration) {
    checkConfiguration(*checked.configuration, data, size);
  }
  return 0;
}
