#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "recording/ColumnNames.h"
#include "recording/Frame.h"
#include "recording/FrameMemory.h"

namespace orvantis::toolkit {

enum class FrameKind : std::uint8_t { Pcd, Ply, Text, Records, Las };

/// "pcd", "ply", "text", "records" or "las". noexcept
const char* nameOf(FrameKind kind) noexcept;

/// The kind of a file by the ending of its name, in any letter case: .pcd, .ply, .xyz, .txt, .csv, .pts,
/// .bin, .las and .laz.
std::optional<FrameKind> frameKindOf(std::string_view fileName);

/// Reads frames, one file after the other, and uses its memory again for the next one: at most four times the
/// size of the largest file, or of its content for a compressed PCD file. One object is for one thread.
class FrameReader {
 public:
  /// The points and columns of one file. The points are valid until the next call, and as long as the bytes.
  /// @param names the columns of a text or of records; empty: those that a text names, or that records show.
  ///   Files of other kinds always name their columns
  /// @param axes the columns that are read as coordinates: another one in place of z gives its values, such
  /// as
  ///   intensities. Of a LAS file then all three are as the file has them, without its scale and offset
  /// @throws ReadError with the place and the reason, std::bad_alloc
  Frame read(std::span<const std::byte> bytes, FrameKind kind, const ColumnNames& names = {},
             const AxisNames& axes = coordinateNames);

 private:
  FrameMemory memory_;
};

}  // namespace orvantis::toolkit
