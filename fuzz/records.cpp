// Records of float32 columns. The first byte is the number of columns, or says that the reader must find it.
// Any bytes give points or a refusal; the points are the first three columns.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Frames.h"

namespace {

float at(const std::uint8_t* data, std::size_t i) {
  float number = 0.0F;
  std::memcpy(&number, data + sizeof(float) * i, sizeof(float));
  return number;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvantis;
  using namespace orvantis::fuzz;
  if (size == 0) {
    return 0;
  }
  const std::size_t given = data[0] % 16;
  ++data;
  --size;
  const auto names = given < 3 ? toolkit::ColumnNames() : toolkit::defaultColumnNames(given);
  const auto points = checkFrame(bytesOf(data, size), toolkit::FrameKind::Records, names);
  if (!points || (size > 0 && (data[0] == '#' || data[0] == 'V' || data[0] == 'F'))) {
    return 0;  // may be a PCD file
  }
  const std::size_t columns = size / sizeof(float) / points->size();
  ORVANTIS_FUZZ_CHECK(names.empty() ? columns >= 3 && columns <= 6 : columns == given);
  ORVANTIS_FUZZ_CHECK(points->size() * columns * sizeof(float) == size);
  for (std::size_t i = 0; i < points->size(); ++i) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      ORVANTIS_FUZZ_CHECK(isSame((*points)[i][axis], at(data, i * columns + axis)));
    }
  }
  return 0;
}
