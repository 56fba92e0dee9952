#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "recording/LineCursor.h"
#include "recording/Points.h"

namespace orvantis::toolkit {

enum class PlyFormat { Ascii, LittleEndian, BigEndian };

struct PlyProperty {
  std::string name;
  NumberType type = NumberType::F4;  ///< of the value, or of each value of a list
  bool isList = false;
  NumberType lengthType = NumberType::U1;  ///< of the length in front of the values of a list
};

struct PlyElement {
  std::string name;
  std::uint64_t count = 0;
  std::uint64_t line = 0;
  std::vector<PlyProperty> properties;

  bool hasList() const;
  std::uint64_t size() const;  ///< bytes of one element without lists
};

/// The header of a PLY file.
struct PlyHeader {
  PlyFormat format = PlyFormat::Ascii;
  std::vector<PlyElement> elements;
};

/// Reads up to the line end_header, and leaves the cursor there.
/// @throws ReadError
PlyHeader readPlyHeader(LineCursor& lines);

}  // namespace orvantis::toolkit
