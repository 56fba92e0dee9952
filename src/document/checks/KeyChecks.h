#pragma once

#include <vector>

#include "document/checks/Report.h"

namespace orvantis::toolkit {

/// The keys that the library reads in the object. A document without the top node "ZoneDetector" has the
/// detector's too, since its lists are read there.
std::vector<const Key*> knownKeys(const Entry& entry);

/// Whether the library reads what stands under a known key: of the three shapes a zone may hold, one.
bool isRead(const Entry& entry, const Key& key);

/// What keeps the keys of an object from being read: unknown, in the wrong place, repeated, missing.
void checkKeys(const Entry& entry, Report& report);

}  // namespace orvantis::toolkit
