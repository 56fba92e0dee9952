#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "recording/Points.h"

namespace orvantis::toolkit {

/// The header of a LAS file.
struct LasHeader {
  std::vector<Column> columns;  ///< of one record, from its begin to its end
  std::uint64_t points = 0;
  std::uint32_t begin = 0;  ///< the byte where the points begin
  std::uint16_t stride = 0;
  std::array<double, 3> scale{};
  std::array<double, 3> offset{};
};

/// @throws ReadError unless the bytes are an uncompressed LAS file with all its points
LasHeader readLasHeader(std::span<const std::byte> bytes);

}  // namespace orvantis::toolkit
