#include "session/ZoneCells.h"

namespace orvantis::toolkit {

std::vector<std::string> ZoneCells::next(int field, const std::string& fieldName, int zone,
                                         const std::string& zoneName) {
  const bool isNew = field != lastField_;
  lastField_ = field;
  return {isNew ? std::to_string(field) + " " + fieldName : "", std::to_string(zone) + " " + zoneName};
}

}  // namespace orvantis::toolkit
