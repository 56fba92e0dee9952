#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "classify/Clouds.h"
#include "recording/FrameReader.h"

namespace orvantis::benchmarks {

/// The same points as a file of some kind.
struct FrameText {
  std::string name;  ///< with the ending of its kind
  std::string content;
  bool isCompressed = false;
};

/// The cloud, with a fourth column where the kind has room for it, in every kind that is read.
std::vector<FrameText> everyKind(const Cloud& cloud);

/// Where x, y and z lie in the binary kinds, for whoever knows it without reading the header.
struct RawLayout {
  std::size_t begin = 0;
  std::size_t stride = 0;  ///< 0: the points do not lie there as floats
};
RawLayout rawLayout(const FrameText& file, std::size_t size);

/// The compressed block of a PCD file, and its size when it is not.
struct CompressedBlock {
  const char* begin = nullptr;
  unsigned size = 0;
  unsigned fullSize = 0;
};
CompressedBlock compressedBlock(const FrameText& file);

}  // namespace orvantis::benchmarks
