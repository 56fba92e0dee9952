#pragma once

#include <string>

#include "document/Check.h"

namespace orvantis::engine {

/// What was found in a document and what it holds, as JSON: `Check` of types.ts.
std::string toJson(const toolkit::CheckedDocument& document);

}  // namespace orvantis::engine
