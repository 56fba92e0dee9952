#include "recording/Records.h"

#include <string>
#include <utility>

#include "recording/CoordinateColumns.h"
#include "recording/ReadError.h"
#include "recording/RecordWidth.h"

namespace orvantis::toolkit {
namespace {

ColumnNames namesFound(std::span<const std::byte> bytes) {
  const std::vector<std::size_t> widths = plausibleRecordWidths(bytes);
  if (widths.size() == 1) {
    return defaultColumnNames(widths[0]);
  }
  const std::string size = std::to_string(bytes.size()) + " bytes";
  if (widths.empty()) {
    throw ReadError(atByte(bytes.size()),
                    size +
                        " are not a whole number of plausible records of 3, 4, 5 or 6 float32 columns that "
                        "begin with x, y, z; if the file is whole, say what a record holds with --columns, "
                        "such as --columns 7 or --columns t,x,y,z");
  }
  std::string choice;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    choice += (i == 0 ? "" : i + 1 == widths.size() ? " or " : ", ") + std::to_string(widths[i]);
  }
  throw ReadError(atByte(0), size + " may be records of " + choice +
                                 " float32 columns; say which with --columns " + std::to_string(widths[0]) +
                                 " or --columns " + std::to_string(widths[1]));
}

std::string list(const ColumnNames& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size() && i < 8; ++i) {
    text += (i == 0 ? "" : ", ") + names[i];
  }
  return text + (names.size() > 8 ? ", ..." : "");
}

}  // namespace

Frame readRecords(std::span<const std::byte> bytes, const ColumnNames& names, FrameMemory& memory,
                  const AxisNames& axisNames) {
  std::vector<Column> columns = columnsOf(names.empty() ? namesFound(bytes) : names, NumberType::F4);
  const auto axes = coordinateColumns(columns, atByte(0), axisNames);
  PointLayout layout;
  layout.stride = columns.size() * sizeof(float);
  if (bytes.size() % layout.stride != 0) {
    throw ReadError(atByte(bytes.size()),
                    "the file ends inside point " + std::to_string(bytes.size() / layout.stride + 1) + ": " +
                        std::to_string(bytes.size()) + " bytes are not a whole number of records of " +
                        std::to_string(layout.stride) + " bytes (float32 " + list(names) + ")");
  }
  layout.x = {axes[0] * sizeof(float), NumberType::F4};
  layout.y = {axes[1] * sizeof(float), NumberType::F4};
  layout.z = {axes[2] * sizeof(float), NumberType::F4};
  return {memory.points.view(bytes.data(), bytes.size() / layout.stride, layout), std::move(columns)};
}

}  // namespace orvantis::toolkit
