// MCAP files, plain or compressed as a whole: any bytes give point clouds or a refusal.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Recordings.h"
#include "recording/McapRecords.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using orvantis::toolkit::mcapMagic;
  std::vector<std::uint8_t> bytes(data, data + size);
  // Sets the first bytes right. A file with other first bytes is refused at once, so changes of them find
  // nothing.
  if (size >= mcapMagic.size() && bytes[0] != 0x28) {
    std::copy(mcapMagic.begin(), mcapMagic.end(), bytes.begin());
  }
  orvantis::fuzz::checkRecording(orvantis::fuzz::bytesOf(bytes.data(), bytes.size()));
  return 0;
}
