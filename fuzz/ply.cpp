// PLY files: any bytes give vertices or a refusal.

#include <cstddef>
#include <cstdint>

#include "Frames.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvantis::fuzz;
  const auto points = checkFrame(bytesOf(data, size), orvantis::toolkit::FrameKind::Ply);
  ORVANTIS_FUZZ_CHECK(!points || points->size() <= size / 3);
  return 0;
}
