#pragma once

#include <cstddef>
#include <string>

#include "Recording.h"

namespace orvantis::engine {

/// `Recording` of types.ts without its number, as JSON; reads no more than the index of recordings.
/// @throws Failure when a file cannot be read
std::string describe(const Recording& recording);

/// The objects at a moment of a recording that ran: a list of `TrackedObject` of types.ts.
/// @throws Failure for a moment that the recording does not have
std::string objectsAt(const Recording& recording, std::size_t moment);

}  // namespace orvantis::engine
