#include "recording/FrameReader.h"

#include <array>
#include <utility>

#include "recording/Las.h"
#include "recording/LineCursor.h"
#include "recording/Pcd.h"
#include "recording/Ply.h"
#include "recording/ReadError.h"
#include "recording/Records.h"
#include "recording/TextFrame.h"
#include "text/LowerCase.h"

namespace orvantis::toolkit {
namespace {

// Some files of records are called .pcd.bin, and records have no mark. So a file that begins like a PCD file
// is read as one.
bool isPcd(std::span<const std::byte> bytes) {
  const std::string_view text = textOf(bytes);
  return text.substr(0, 6) == "# .PCD" || text.substr(0, 8) == "VERSION " || text.substr(0, 7) == "FIELDS ";
}

}  // namespace

const char* nameOf(FrameKind kind) noexcept {
  constexpr std::array<const char*, 5> names = {"pcd", "ply", "text", "records", "las"};
  return names[static_cast<std::size_t>(kind)];
}

std::optional<FrameKind> frameKindOf(std::string_view fileName) {
  static constexpr std::array<std::pair<std::string_view, FrameKind>, 9> endings = {
      {{".pcd", FrameKind::Pcd},
       {".ply", FrameKind::Ply},
       {".xyz", FrameKind::Text},
       {".txt", FrameKind::Text},
       {".csv", FrameKind::Text},
       {".pts", FrameKind::Text},
       {".bin", FrameKind::Records},
       {".las", FrameKind::Las},
       {".laz", FrameKind::Las}}};
  const std::string name = lowerCase(fileName);
  for (const auto& [ending, kind] : endings) {
    if (name.size() >= ending.size() &&
        name.compare(name.size() - ending.size(), ending.size(), ending) == 0) {
      return kind;
    }
  }
  return std::nullopt;
}

Frame FrameReader::read(std::span<const std::byte> bytes, FrameKind kind, const ColumnNames& names,
                        const AxisNames& axes) {
  if (bytes.empty()) {
    throw ReadError(atByte(0), "the file is empty");
  }
  switch (kind) {
    case FrameKind::Pcd:
      return readPcd(bytes, memory_, axes);
    case FrameKind::Ply:
      return readPly(bytes, memory_, axes);
    case FrameKind::Text:
      return readText(bytes, names, memory_, axes);
    case FrameKind::Las:
      return readLas(bytes, memory_, axes);
    case FrameKind::Records:
      break;
  }
  return isPcd(bytes) ? readPcd(bytes, memory_, axes) : readRecords(bytes, names, memory_, axes);
}

}  // namespace orvantis::toolkit
