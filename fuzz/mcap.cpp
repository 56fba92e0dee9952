// MCAP files, plain or compressed as a whole: any bytes are point clouds, or a refusal.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Recordings.h"
#include "recording/McapRecords.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using orvantis::toolkit::mcapMagic;
  std::vector<std::uint8_t> bytes(data, data + size);
  // Others are refused by these bytes alone, and a changed byte of them teaches nothing.
  if (size >= mcapMagic.size() && bytes[0] != 0x28) {
    std::copy(mcapMagic.begin(), mcapMagic.end(), bytes.begin());
  }
  orvantis::fuzz::checkRecording(orvantis::fuzz::bytesOf(bytes.data(), bytes.size()));
  return 0;
}
