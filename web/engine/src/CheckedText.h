#pragma once

#include <string_view>

#include "document/Check.h"

namespace orvantis::engine {

/// The document of a text. The last one is kept, so that counts, findings and a run that follow one edit
/// parse and check its text once. Valid until the next call. Only for one thread. @throws std::bad_alloc
const toolkit::CheckedDocument& checked(std::string_view text);

/// @throws std::invalid_argument for a document with errors: a page asks only with one that was checked
const toolkit::Configuration& configurationOf(std::string_view text);

}  // namespace orvantis::engine
