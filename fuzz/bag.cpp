// ROS bags: any bytes give point clouds or a refusal.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Recordings.h"
#include "recording/BagRecords.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using orvantis::toolkit::bagMagic;
  std::vector<std::uint8_t> bytes(data, data + size);
  // Sets the first bytes right. A bag with other first bytes is refused at once, so changes of them find
  // nothing.
  if (size >= bagMagic.size()) {
    std::copy(bagMagic.begin(), bagMagic.end(), bytes.begin());
  }
  orvantis::fuzz::checkRecording(orvantis::fuzz::bytesOf(bytes.data(), bytes.size()));
  return 0;
}
