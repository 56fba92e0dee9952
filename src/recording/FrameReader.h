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

/// Reads frames, one file of bytes after the other, and keeps its memory for the next one: at most as much as
/// four times the largest file, and for a compressed PCD file what is in it. One object is for one thread.
class FrameReader {
 public:
  /// The points and columns of one file. The points are valid until the next call, and as long as the bytes.
  /// @param names the columns of a text or of records; none: what the file says, or what records show. The
  /// other kinds name their columns themselves.
  /// @throws ReadError with the place and the reason, std::bad_alloc
  Frame read(std::span<const std::byte> bytes, FrameKind kind, const ColumnNames& names = {});

 private:
  FrameMemory memory_;
};

}  // namespace orvantis::toolkit
