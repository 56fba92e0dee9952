#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <filter/classify/Points.h>

namespace orvantis::toolkit {

/// The type of a number in memory: signed and unsigned integers and IEEE floats, with their size in bytes.
enum class NumberType : std::uint8_t { I1, U1, I2, U2, I4, U4, I8, U8, F4, F8 };

/// In bytes.
constexpr std::size_t sizeOf(NumberType type) noexcept {
  constexpr std::array<std::size_t, 10> sizes = {1, 1, 2, 2, 4, 4, 8, 8, 4, 8};
  return sizes[static_cast<std::size_t>(type)];
}

/// "I1" to "F8".
constexpr const char* nameOf(NumberType type) noexcept {
  constexpr std::array<const char*, 10> names = {"I1", "U1", "I2", "U2", "I4", "U4", "I8", "U8", "F4", "F8"};
  return names[static_cast<std::size_t>(type)];
}

using filter::classify::Points;
using filter::classify::sizeOf;

/// The names of the columns that are read as the coordinates of points, in any letter case.
using AxisNames = std::array<std::string_view, 3>;
inline constexpr AxisNames coordinateNames = {"x", "y", "z"};

/// A column of a file.
struct Column {
  std::string name;
  NumberType type = NumberType::F4;
  std::size_t count = 1;  ///< values for each point; 0 for a list, whose length varies
};

/// One coordinate of a record.
struct Coordinate {
  std::size_t offset = 0;  ///< bytes from the begin of the record
  NumberType type = NumberType::F4;
};

/// Where the coordinates of a point are in memory.
struct PointLayout {
  std::size_t stride = 0;  ///< bytes from one record to the next
  bool isBigEndian = false;
  Coordinate x;
  Coordinate y;
  Coordinate z;
};

}  // namespace orvantis::toolkit
