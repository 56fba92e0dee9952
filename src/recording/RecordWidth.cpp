#include "recording/RecordWidth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "recording/Bytes.h"

namespace orvantis::toolkit {
namespace {

constexpr std::array<std::size_t, 4> widths = {3, 4, 5, 6};
constexpr std::size_t mostWidth = 16;

// The kinds of a value: its sign and its size in steps of two octaves from 2^-6 to 2^6, or zero, or not
// finite.
constexpr std::size_t numKinds = 18;

std::uint32_t bitsAt(std::span<const std::byte> bytes, std::size_t i) {
  return loadLittleEndian<std::uint32_t>(bytes.data() + sizeof(float) * i);
}

std::size_t kindOf(std::uint32_t bits) {
  const int exponent = static_cast<int>(bits >> 23U & 0xFFU);
  if (exponent == 0 || exponent == 0xFF) {
    return exponent == 0 ? 16 : 17;
  }
  constexpr int lowest = 127 - 8;
  const int size = std::clamp((exponent - lowest) / 2, 0, 7);
  return static_cast<std::size_t>(size) + ((bits >> 31U) != 0 ? 8 : 0);
}

// Consecutive values: the number of the first one in the file, and the kind of each.
struct Part {
  std::size_t begin = 0;
  std::vector<std::uint8_t> kinds;
};

// All values of a small file, else parts from all over the file.
std::vector<Part> sampleOf(std::span<const std::byte> bytes) {
  constexpr std::size_t numParts = 4;
  constexpr std::size_t partSize = 256;
  const std::size_t size = bytes.size() / sizeof(float);
  std::vector<Part> sample;
  const auto take = [&](std::size_t begin, std::size_t end) {
    Part& part = sample.emplace_back();
    part.begin = begin;
    for (std::size_t i = begin; i < end; ++i) {
      part.kinds.push_back(static_cast<std::uint8_t>(kindOf(bitsAt(bytes, i))));
    }
  };
  if (size <= numParts * partSize) {
    take(0, size);
    return sample;
  }
  for (std::size_t i = 0; i < numParts; ++i) {
    const std::size_t begin = (size - partSize) / (numParts - 1) * i;
    take(begin, begin + partSize);
  }
  return sample;
}

double timesLog(std::size_t count) {
  return count == 0 ? 0.0 : static_cast<double>(count) * std::log2(static_cast<double>(count));
}

// How much the place in a record of `width` values tells about the kind of a value, in bits.
double information(const std::vector<Part>& sample, std::size_t width) {
  std::array<std::array<std::uint32_t, numKinds>, mostWidth> counts{};
  std::size_t size = 0;
  for (const Part& part : sample) {
    std::size_t place = part.begin % width;
    for (const std::uint8_t kind : part.kinds) {
      ++counts[place][kind];
      place = place + 1 == width ? 0 : place + 1;
    }
    size += part.kinds.size();
  }
  std::array<std::size_t, numKinds> ofKind{};
  double sum = timesLog(size);
  for (std::size_t place = 0; place < width; ++place) {
    std::size_t ofPlace = 0;
    for (std::size_t kind = 0; kind < numKinds; ++kind) {
      sum += timesLog(counts[place][kind]);
      ofPlace += counts[place][kind];
      ofKind[kind] += counts[place][kind];
    }
    sum -= timesLog(ofPlace);
  }
  std::size_t kinds = 0;
  for (const std::size_t count : ofKind) {
    sum -= timesLog(count);
    kinds += count != 0 ? 1 : 0;
  }
  // What chance gives on average (Miller and Madow).
  const double chance = static_cast<double>((kinds - 1) * (width - 1)) / (2.0 * std::log(2.0));
  return std::max(0.0, sum - chance) / static_cast<double>(size);
}

// Calls `look` with some records of this width, evenly from the whole file, until it returns false.
template <typename Look>
void forSomeRecords(std::span<const std::byte> bytes, std::size_t width, Look look) {
  constexpr std::size_t most = 256;
  const std::size_t size = sizeof(float) * width;
  const std::size_t step = std::max<std::size_t>(1, bytes.size() / size / most);
  for (std::size_t begin = 0; begin + size <= bytes.size(); begin += size * step) {
    std::array<float, mostWidth> values{};
    for (std::size_t i = 0; i < width; ++i) {
      values[i] = loadLittleEndian<float>(bytes.data() + begin + sizeof(float) * i);
    }
    if (!look(values)) {
      return;
    }
  }
}

// Whether x, y and z can be metres.
bool areCoordinates(std::span<const std::byte> bytes, std::size_t width) {
  constexpr float farthest = 1e7F;
  bool arePlausible = true;
  std::size_t finite = 0;
  std::size_t notFinite = 0;
  forSomeRecords(bytes, width, [&](const auto& values) {
    bool isFinite = true;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const float value = values[axis];
      isFinite = isFinite && std::isfinite(value);
      // A small whole number has the bits of a subnormal float, which is smaller than any distance.
      arePlausible = arePlausible && std::fpclassify(value) != FP_SUBNORMAL &&
                     !(std::isfinite(value) && std::fabs(value) > farthest);
    }
    ++(isFinite ? finite : notFinite);
    return arePlausible;
  });
  return arePlausible && finite >= notFinite;
}

// Whether columns 4 and 5 of six often point in the same direction as columns 1 and 2. Then six columns are
// two points of beams that fire together.
bool areTwoPoints(std::span<const std::byte> bytes) {
  std::size_t same = 0;
  std::size_t other = 0;
  forSomeRecords(bytes, 6, [&](const auto& v) {
    const double along = static_cast<double>(v[0]) * v[3] + static_cast<double>(v[1]) * v[4];
    const double across = static_cast<double>(v[0]) * v[4] - static_cast<double>(v[1]) * v[3];
    ++(std::fabs(across) < 0.1 * along ? same : other);
    return true;
  });
  return 2 * same > other;
}

// The widths that tell nearly as much as the best period.
std::vector<std::size_t> tellingWidths(std::span<const std::byte> bytes,
                                       const std::vector<std::size_t>& fitting) {
  const std::vector<Part> sample = sampleOf(bytes);
  std::array<double, mostWidth + 1> told{};
  double most = 0.0;
  for (std::size_t width = 2; width <= mostWidth; ++width) {
    told[width] = information(sample, width);
    most = std::max(most, told[width]);
  }
  // In real frames, the right width tells at least 0.4 bits, and at least 0.9 of what the best period tells.
  // A wrong width tells at most 0.6 of it.
  constexpr double least = 0.25;
  constexpr double share = 0.75;
  if (most < least) {
    return fitting;
  }
  std::vector<std::size_t> telling;
  for (const std::size_t width : fitting) {
    if (told[width] >= share * most) {
      telling.push_back(width);
    }
  }
  if (telling == std::vector<std::size_t>{3, 6}) {
    return {3};  // columns 4 to 6 are another point
  }
  if (telling == std::vector<std::size_t>{6} && fitting.front() == 3 && areTwoPoints(bytes)) {
    return {3, 6};
  }
  return telling;
}

}  // namespace

std::vector<std::size_t> plausibleRecordWidths(std::span<const std::byte> bytes) {
  std::vector<std::size_t> fitting;
  for (const std::size_t width : widths) {
    if (bytes.size() % (sizeof(float) * width) == 0 && areCoordinates(bytes, width)) {
      fitting.push_back(width);
    }
  }
  constexpr std::size_t fewValues = 240;
  return fitting.empty() || bytes.size() / sizeof(float) < fewValues ? fitting
                                                                     : tellingWidths(bytes, fitting);
}

}  // namespace orvantis::toolkit
