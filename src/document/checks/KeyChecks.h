#pragma once

#include <vector>

#include "document/checks/Report.h"

namespace orvantis::toolkit {

/// The keys that the library reads in the object. In a document without the top node "ZoneDetector" these are
/// also the detector's keys, since its lists are read there.
std::vector<const Key*> knownKeys(const CheckedObject& entry);

/// Whether the library reads the value of a known key: of the three shapes of a zone, it reads only one.
bool isRead(const CheckedObject& entry, const Key& key);

/// Reports the keys of an object that are unknown, misplaced, repeated or missing.
void checkKeys(const CheckedObject& entry, Report& report);

}  // namespace orvantis::toolkit
