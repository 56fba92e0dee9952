// PCD files: any bytes give points or a refusal.

#include <cstddef>
#include <cstdint>

#include "Frames.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvantis::fuzz;
  // A compressed byte becomes at most 88 bytes, and columns of one byte become floats.
  const auto points = checkFrame(bytesOf(data, size), orvantis::toolkit::FrameKind::Pcd, {}, 5 * 88 * size);
  ORVANTIS_FUZZ_CHECK(!points || points->size() <= 88 * size / 3);
  return 0;
}
