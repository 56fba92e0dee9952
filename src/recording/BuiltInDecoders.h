#pragma once

#include "recording/Decoders.h"

namespace orvantis::toolkit {

// One file for each, compiled where the library is there.
Decoder lz4Decoder();
Decoder zstdDecoder();
Decoder bzip2Decoder();

}  // namespace orvantis::toolkit
