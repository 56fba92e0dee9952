#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Check.h"
#include "LiveMemory.h"
#include "points/PointAt.h"
#include "recording/FrameReader.h"
#include "recording/ReadError.h"

namespace orvantis::fuzz {

using Point = std::array<double, 3>;

/// Reads every byte of a view, so that a sanitizer finds one outside of the memory.
inline std::vector<Point> pointsOf(const toolkit::Points& points) {
  std::vector<Point> result;
  std::visit(
      [&](const auto& view) {
        for (std::size_t i = 0; i < view.size; ++i) {
          const auto [x, y, z] = toolkit::pointAt(view, i);
          result.push_back({x, y, z});
        }
      },
      points);
  return result;
}

inline void checkMemory(std::size_t size, std::size_t compressed) {
  constexpr std::size_t header = 1 << 20;
  ORVANTIS_FUZZ_CHECK(peakOfMemory() <= 4 * size + compressed + header);
}

/// Any bytes must give a frame, or a refusal with a place inside of the bytes and a reason that is printable.
/// The reader may use memory for four times the bytes, for their unfolded content, and for a header.
/// @return nothing when the bytes are refused
inline std::optional<std::vector<Point>> checkFrame(std::span<const std::byte> bytes, toolkit::FrameKind kind,
                                                    const toolkit::ColumnNames& names = {},
                                                    std::size_t compressed = 0) {
  std::optional<std::vector<Point>> points;
  forgetPeak();
  toolkit::FrameReader reader;
  try {
    const toolkit::Frame frame = reader.read(bytes, kind, names);
    checkMemory(bytes.size(), compressed);
    ORVANTIS_FUZZ_CHECK(frame.columns.size() >= 3);
    points = pointsOf(frame.points);
  } catch (const toolkit::ReadError& error) {
    checkMemory(bytes.size(), compressed);
    const std::string reason = error.what();
    const auto lines = static_cast<std::uint64_t>(std::count(bytes.begin(), bytes.end(), std::byte{'\n'}));
    ORVANTIS_FUZZ_CHECK(!reason.empty() && error.place().line <= lines + 1);
    ORVANTIS_FUZZ_CHECK(error.place().byte <= bytes.size() && error.place().column <= bytes.size() + 1);
    ORVANTIS_FUZZ_CHECK(
        std::none_of(reason.begin(), reason.end(), [](unsigned char c) { return c < 0x20U || c == 0x7FU; }));
  }
  return points;
}

inline std::span<const std::byte> bytesOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const std::byte*>(data), size};
}

/// Whether two numbers are equal, or both are NaN.
inline bool isSame(double a, double b) {
  return a == b || (a != a && b != b);
}

}  // namespace orvantis::fuzz
