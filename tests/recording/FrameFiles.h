#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "recording/FrameReader.h"
#include "recording/ReadError.h"

namespace orvantis::testing {

/// The bytes of small files, and what readers make of them.
using Point = std::array<double, 3>;

inline std::span<const std::byte> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::byte*>(text.data()), text.size()};
}

inline std::vector<Point> pointsOf(const toolkit::Points& points) {
  std::vector<Point> result;
  std::visit(
      [&]<typename Real>(const filter::classify::PointsView<Real>& view) {
        const auto value = [&](const void* first, std::size_t i) {
          Real number{};
          std::memcpy(&number, static_cast<const char*>(first) + i * view.stride, sizeof(Real));
          return static_cast<double>(number);
        };
        for (std::size_t i = 0; i < view.size; ++i) {
          result.push_back({value(view.x, i), value(view.y, i), value(view.z, i)});
        }
      },
      points);
  return result;
}

inline bool areFloats(const toolkit::Points& points) {
  return std::holds_alternative<filter::classify::PointsView<float>>(points);
}

/// "line 3, column 4: reason", or nothing when the file is read.
inline std::string refusal(std::string_view file, toolkit::FrameKind kind, const std::string& columns = "") {
  toolkit::FrameReader reader;
  try {
    reader.read(bytesOf(file), kind,
                columns.empty() ? toolkit::ColumnNames() : toolkit::parseColumnNames(columns));
  } catch (const toolkit::ReadError& error) {
    return toText(error.place()) + ": " + error.what();
  }
  return "";
}

inline std::vector<Point> readPoints(std::string_view file, toolkit::FrameKind kind,
                                     const std::string& columns = "") {
  toolkit::FrameReader reader;
  return pointsOf(reader
                      .read(bytesOf(file), kind,
                            columns.empty() ? toolkit::ColumnNames() : toolkit::parseColumnNames(columns))
                      .points);
}

/// A number as it lies in a file.
template <typename Number>
std::string raw(Number number, bool isBigEndian = false) {
  std::string bytes(sizeof(Number), '\0');
  std::memcpy(bytes.data(), &number, sizeof(Number));
  return isBigEndian ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
}

template <typename Number>
std::string raw(const std::vector<Number>& numbers, bool isBigEndian = false) {
  std::string bytes;
  for (const Number number : numbers) {
    bytes += raw(number, isBigEndian);
  }
  return bytes;
}

}  // namespace orvantis::testing
