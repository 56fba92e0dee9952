#pragma once

#include "recording/Decoders.h"

namespace orvantis::engine {

/// What unfolds the compressions of recordings: in a page the host does it, elsewhere the libraries of the
/// build.
toolkit::Decoders decoders();

}  // namespace orvantis::engine
