#pragma once

#include <vector>

#include "document/Finding.h"

namespace orvantis::toolkit {

struct LocatedNode;

/// All findings about a document that is JSON, in the order of the document.
std::vector<Finding> findingsOf(const LocatedNode& root);
/// The same for a list of sensors.
std::vector<Finding> findingsOfSensors(const LocatedNode& root);

}  // namespace orvantis::toolkit
