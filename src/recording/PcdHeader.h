#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "recording/LineCursor.h"
#include "recording/Points.h"

namespace orvantis::toolkit {

enum class PcdData { Ascii, Binary, Compressed };

/// The header of a PCD file.
struct PcdHeader {
  std::vector<Column> fields;
  std::uint64_t fieldsLine = 0;  ///< the line that names the fields
  std::uint64_t points = 0;
  PcdData data = PcdData::Ascii;

  std::uint64_t pointSize() const;  ///< bytes of one point
  std::uint64_t columns() const;    ///< values of one point
};

/// Reads up to the line DATA, and leaves the cursor there.
/// @throws ReadError
PcdHeader readPcdHeader(LineCursor& lines);

}  // namespace orvantis::toolkit
