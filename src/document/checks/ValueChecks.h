#pragma once

#include <string>

#include "document/checks/Report.h"

namespace orvantis::toolkit {

/// Reports a value that does not have the key's type or is outside of what the table allows. Of an object it
/// checks only that it is an object.
void checkValue(const LocatedNode& node, const Key& key, const std::string& path, Report& report);

/// A value in the words of a finding: "front", 7, an object, a list.
std::string described(const LocatedNode& node);

}  // namespace orvantis::toolkit
