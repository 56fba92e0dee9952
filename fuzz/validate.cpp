// ZoneDetector::validate accepts any bytes, or refuses them with an exception that has a text.

#include <stdexcept>

#include <filter/detection/ZoneDetector.h>

#include "Check.h"
#include "Documents.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  try {
    orvantis::filter::detection::ZoneDetector::validate(in);
  } catch (const std::runtime_error& error) {
    ORVANTIS_FUZZ_CHECK(error.what()[0] != '\0');
  }
  return 0;
}
