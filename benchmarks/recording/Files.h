#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "classify/Clouds.h"
#include "recording/FrameReader.h"

namespace orvantis::benchmarks {

/// A file of some kind with the points of a cloud.
struct FrameText {
  std::string name;  ///< with the ending of its kind
  std::string content;
  bool isCompressed = false;
};

/// The cloud in every kind of file that can be read, with a fourth column if the kind has room for it.
std::vector<FrameText> everyKind(const Cloud& cloud);

/// Where x, y and z are in a binary file, to read it without its header.
struct RawLayout {
  std::size_t begin = 0;
  std::size_t stride = 0;  ///< 0 when the points are not floats in the file
};
RawLayout rawLayout(const FrameText& file, std::size_t size);

/// The compressed block of a PCD file, and its unfolded size.
struct CompressedBlock {
  const char* begin = nullptr;
  unsigned size = 0;
  unsigned fullSize = 0;
};
CompressedBlock compressedBlock(const FrameText& file);

}  // namespace orvantis::benchmarks
