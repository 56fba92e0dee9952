#include "detector/Slots.h"

#include <stdexcept>

#include <filter/detection/ZoneDetector.h>

namespace orvantis::filter::detection {
namespace {

std::size_t checkedSlot(const char* what, int index, int size) {
  if (index < 0 || index >= size) {
    throw std::out_of_range(std::string(what) + " index " + std::to_string(index) + " is outside 0.." +
                            std::to_string(size - 1));
  }
  return static_cast<std::size_t>(index);
}

}  // namespace

std::size_t checkedFieldSlot(int field) {
  return checkedSlot("evaluation field", field, ZoneDetector::NUM_EVAL_FIELDS);
}

std::size_t checkedZoneSlot(int zone) {
  return checkedSlot("zone", zone, ZoneDetector::NUM_ZONES_PER_EVAL_FIELD);
}

std::string defaultName(const char* kind, int slot) {
  return kind + std::to_string(slot);
}

}  // namespace orvantis::filter::detection
