#include "Compressors.h"

#include <cstdlib>

#include <bzlib.h>
#include <lz4frame.h>
#include <zstd.h>

namespace orvantis::testing {

std::string bzip2Of(const std::string& bytes) {
  std::string out(bytes.size() + bytes.size() / 100 + 700, '\0');
  auto size = static_cast<unsigned>(out.size());
  std::string in = bytes;
  if (BZ2_bzBuffToBuffCompress(out.data(), &size, in.data(), static_cast<unsigned>(in.size()), 1, 0, 0) !=
      BZ_OK) {
    std::abort();
  }
  out.resize(size);
  return out;
}

std::string zstdOf(const std::string& bytes, bool hasChecksum, bool saysSize) {
  ZSTD_CCtx* const context = ZSTD_createCCtx();
  ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, hasChecksum ? 1 : 0);
  ZSTD_CCtx_setParameter(context, ZSTD_c_contentSizeFlag, saysSize ? 1 : 0);
  std::string out(ZSTD_compressBound(bytes.size()), '\0');
  const std::size_t size = ZSTD_compress2(context, out.data(), out.size(), bytes.data(), bytes.size());
  ZSTD_freeCCtx(context);
  if (ZSTD_isError(size) != 0) {
    std::abort();
  }
  out.resize(size);
  return out;
}

std::string lz4Of(const std::string& bytes, bool hasLinkedBlocks, bool hasChecksum) {
  LZ4F_preferences_t preferences{};
  preferences.frameInfo.blockSizeID = LZ4F_max64KB;
  preferences.frameInfo.blockMode = hasLinkedBlocks ? LZ4F_blockLinked : LZ4F_blockIndependent;
  preferences.frameInfo.contentChecksumFlag =
      hasChecksum ? LZ4F_contentChecksumEnabled : LZ4F_noContentChecksum;
  std::string out(LZ4F_compressFrameBound(bytes.size(), &preferences), '\0');
  const std::size_t size =
      LZ4F_compressFrame(out.data(), out.size(), bytes.data(), bytes.size(), &preferences);
  if (LZ4F_isError(size) != 0) {
    std::abort();
  }
  out.resize(size);
  return out;
}

}  // namespace orvantis::testing
