#include "recording/PointCloud2.h"

#include <array>
#include <optional>

#include "recording/Cursor.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

constexpr const char* cloudName = "a point cloud message";

// No sensor writes more, and a message with that many columns needs little memory.
constexpr std::uint32_t mostFields = 1024;

std::optional<NumberType> numberType(std::uint8_t datatype) {
  constexpr std::array types = {NumberType::I1, NumberType::U1, NumberType::I2, NumberType::U2,
                                NumberType::I4, NumberType::U4, NumberType::F4, NumberType::F8};
  return datatype >= 1 && datatype <= types.size() ? std::optional(types[datatype - 1U]) : std::nullopt;
}

// Takes the parts of a message. In CDR, texts end with a zero, and numbers are at multiples of their size.
class Parts {
 public:
  Parts(Cursor cursor, bool isCdr) : cursor_(cursor), isCdr_(isCdr) {}

  template <typename Number>
  Number take() {
    if (isCdr_) {
      cursor_.align(sizeof(Number));
    }
    return cursor_.take<Number>();
  }

  std::string_view takeText() {
    std::string_view text = cursor_.takeText(take<std::uint32_t>());
    if (isCdr_ && text.ends_with('\0')) {
      text.remove_suffix(1);
    }
    return text;
  }

  std::span<const std::byte> takeBytes() { return cursor_.take(take<std::uint32_t>()); }

 private:
  Cursor cursor_;
  bool isCdr_;
};

// CDR begins with two bytes for its kind and two for options. Everything is aligned relative to the byte
// after them.
Parts cdrParts(std::span<const std::byte> message, std::uint64_t place) {
  Cursor cursor(message, place, cloudName);
  const auto first = cursor.take<std::uint8_t>();
  const auto kind = cursor.take<std::uint8_t>();
  cursor.take<std::uint16_t>();
  if (first != 0 || kind > 1) {
    throw ReadError(atByte(place), "a point cloud message begins with " + std::to_string(first) + ", " +
                                       std::to_string(kind) +
                                       "; CDR begins with 0, 0 (big-endian) or 0, 1 (little-endian)");
  }
  return {Cursor(message.subspan(cursor.position()), place, cloudName, kind == 0), true};
}

void readHeader(Parts& parts, bool isCdr, std::uint64_t place, PointCloud2& cloud) {
  std::int64_t seconds = 0;
  if (isCdr) {
    seconds = parts.take<std::int32_t>();
  } else {
    parts.take<std::uint32_t>();  // a running number, which is not used
    seconds = parts.take<std::uint32_t>();
  }
  const auto nanoseconds = parts.take<std::uint32_t>();
  if (nanoseconds >= 1'000'000'000) {
    throw ReadError(atByte(place), "the stamp of a point cloud message has " + std::to_string(nanoseconds) +
                                       " nanoseconds; less than 1000000000 are allowed");
  }
  cloud.stamp = std::chrono::seconds(seconds) + std::chrono::nanoseconds(nanoseconds);
  cloud.frameId = parts.takeText();
}

void readFields(Parts& parts, std::uint64_t place, PointCloud2& cloud) {
  const auto count = parts.take<std::uint32_t>();
  if (count > mostFields) {
    throw ReadError(atByte(place), "a point cloud message has " + std::to_string(count) +
                                       " columns; at most " + std::to_string(mostFields) + " are allowed");
  }
  cloud.fields.clear();
  for (std::uint32_t i = 0; i < count; ++i) {
    PointCloud2::Field field;
    field.name = parts.takeText();
    field.offset = parts.take<std::uint32_t>();
    field.datatype = parts.take<std::uint8_t>();
    field.count = parts.take<std::uint32_t>();
    cloud.fields.push_back(field);
  }
}

std::string othersInWords(const PointCloud2& cloud) {
  constexpr std::size_t most = 20;
  if (cloud.fields.size() > most) {
    return "; it has " + std::to_string(cloud.fields.size()) + " columns";
  }
  std::string names;
  for (const PointCloud2::Field& field : cloud.fields) {
    names += (names.empty() ? "; it has " : ", ") + printable(field.name);
  }
  return names;
}

Coordinate coordinate(const PointCloud2& cloud, std::string_view name, std::uint64_t place) {
  const PointCloud2::Field* found = nullptr;
  for (const PointCloud2::Field& field : cloud.fields) {
    if (field.name != name) {
      continue;
    }
    if (found != nullptr) {
      throw ReadError(atByte(place), "a point cloud has two columns " + std::string(name));
    }
    found = &field;
  }
  if (found == nullptr) {
    throw ReadError(atByte(place), "a point cloud has no column " + std::string(name) + othersInWords(cloud));
  }
  const std::optional<NumberType> type = numberType(found->datatype);
  if (!type || found->count > 1) {
    throw ReadError(atByte(place), "the column " + std::string(name) + " of a point cloud has type " +
                                       std::to_string(found->datatype) + " and count " +
                                       std::to_string(found->count) +
                                       "; types 1 to 8 and one value are allowed");
  }
  if (std::uint64_t{found->offset} + sizeOf(*type) > cloud.pointStep) {
    throw ReadError(atByte(place), "the column " + std::string(name) + " of a point cloud ends at byte " +
                                       std::to_string(std::uint64_t{found->offset} + sizeOf(*type)) +
                                       " of a point of " + std::to_string(cloud.pointStep) + " bytes");
  }
  return {found->offset, *type};
}

// The row step of a single row is not checked, because many drivers write a wrong one.
void checkSizes(const PointCloud2& cloud, std::uint64_t place) {
  const std::uint64_t row = std::uint64_t{cloud.width} * cloud.pointStep;
  if (cloud.height > 1 && cloud.rowStep < row) {
    throw ReadError(atByte(place), "a row of a point cloud has " + counted(cloud.rowStep, "byte") + "; " +
                                       counted(cloud.width, "point") + " of " +
                                       counted(cloud.pointStep, "byte") + " need " + std::to_string(row));
  }
  const std::uint64_t needed = std::uint64_t{cloud.height - 1} * cloud.rowStep + row;
  if (needed > cloud.data.size()) {
    throw ReadError(atByte(place), "a point cloud message is torn: its " + std::to_string(cloud.height) +
                                       " x " + std::to_string(cloud.width) + " points need " +
                                       counted(needed, "byte") + ", and it has " +
                                       std::to_string(cloud.data.size()));
  }
}

}  // namespace

void readPointCloud2(std::span<const std::byte> message, CloudEncoding encoding, std::uint64_t place,
                     PointCloud2& cloud) {
  const bool isCdr = encoding == CloudEncoding::cdr;
  Parts parts = isCdr ? cdrParts(message, place) : Parts(Cursor(message, place, cloudName), false);
  readHeader(parts, isCdr, place, cloud);
  cloud.height = parts.take<std::uint32_t>();
  cloud.width = parts.take<std::uint32_t>();
  readFields(parts, place, cloud);
  const auto isBigEndian = parts.take<std::uint8_t>();
  if (isBigEndian > 1) {
    throw ReadError(atByte(place), "the byte order of a point cloud is " + std::to_string(isBigEndian) +
                                       "; 0 (little-endian) and 1 (big-endian) are allowed");
  }
  cloud.isBigEndian = isBigEndian == 1;
  cloud.pointStep = parts.take<std::uint32_t>();
  cloud.rowStep = parts.take<std::uint32_t>();
  cloud.data = parts.takeBytes();
  parts.take<std::uint8_t>();  // whether all points are finite, which is checked anyway
}

PointLayout layoutOf(const PointCloud2& cloud, std::uint64_t place, const AxisNames& axes) {
  PointLayout layout;
  layout.stride = cloud.pointStep;
  layout.isBigEndian = cloud.isBigEndian;
  if (cloud.size() == 0) {
    return layout;  // a cloud without points needs no columns
  }
  layout.x = coordinate(cloud, axes[0], place);
  layout.y = coordinate(cloud, axes[1], place);
  layout.z = coordinate(cloud, axes[2], place);
  const std::size_t needed = sizeOf(layout.x.type) + sizeOf(layout.y.type) + sizeOf(layout.z.type);
  if (needed > cloud.pointStep) {
    throw ReadError(atByte(place), "the columns x, y and z of a point cloud need " + std::to_string(needed) +
                                       " bytes, and its points have " + std::to_string(cloud.pointStep));
  }
  checkSizes(cloud, place);
  return layout;
}

void columnsOf(const PointCloud2& cloud, std::vector<Column>& columns) {
  std::size_t used = 0;
  for (const PointCloud2::Field& field : cloud.fields) {
    const std::optional<NumberType> type = numberType(field.datatype);
    if (!type) {
      continue;
    }
    if (used == columns.size()) {
      columns.emplace_back();
    }
    Column& column = columns[used++];
    column.name = field.name;
    column.type = *type;
    column.count = field.count;
  }
  columns.resize(used);
}

}  // namespace orvantis::toolkit
