// LAS files: any bytes give points or a refusal. The points are the same as from a second, simple reader.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Frames.h"

namespace {

template <typename Number>
Number at(const std::uint8_t* data, std::size_t offset) {
  Number number{};
  std::memcpy(&number, data + offset, sizeof(Number));
  return number;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvantis::fuzz;
  const auto points = checkFrame(bytesOf(data, size), orvantis::toolkit::FrameKind::Las);
  if (!points) {
    return 0;
  }
  const std::size_t count =
      data[25] < 4 ? at<std::uint32_t>(data, 107) : static_cast<std::size_t>(at<std::uint64_t>(data, 247));
  ORVANTIS_FUZZ_CHECK(points->size() == count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t record = at<std::uint32_t>(data, 96) + i * at<std::uint16_t>(data, 105);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double scaled = at<std::int32_t>(data, record + 4 * axis) * at<double>(data, 131 + 8 * axis);
      ORVANTIS_FUZZ_CHECK(isSame((*points)[i][axis], scaled + at<double>(data, 155 + 8 * axis)));
    }
  }
  return 0;
}
