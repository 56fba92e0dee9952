#pragma once

#include <string>

#include "document/checks/Report.h"

namespace orvantis::toolkit {

/// Whether the value is of the key's type and within what the table allows; an object is only told from what
/// is none.
void checkValue(const LocatedNode& node, const Key& key, const std::string& path, Report& report);

/// What a value is, for a text: "front", 7, an object, a list.
std::string described(const LocatedNode& node);

}  // namespace orvantis::toolkit
