#pragma once

#include "recording/Decoders.h"

namespace orvantis::toolkit {

// Each has its own source file, which is compiled only if the library is installed.
Decoder lz4Decoder();
Decoder zstdDecoder();
Decoder bzip2Decoder();

}  // namespace orvantis::toolkit
