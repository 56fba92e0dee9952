#include "recording/Decoders.h"

#include "recording/BuiltInDecoders.h"

namespace orvantis::toolkit {

Decoders builtInDecoders() {
  Decoders decoders;
#ifdef ORVANTIS_HAS_LZ4
  decoders.lz4 = lz4Decoder();
#endif
#ifdef ORVANTIS_HAS_ZSTD
  decoders.zstd = zstdDecoder();
#endif
#ifdef ORVANTIS_HAS_BZIP2
  decoders.bzip2 = bzip2Decoder();
#endif
  return decoders;
}

}  // namespace orvantis::toolkit
