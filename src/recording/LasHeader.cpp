#include "recording/LasHeader.h"

#include <cmath>
#include <string>

#include "recording/Bytes.h"
#include "recording/LineCursor.h"
#include "recording/Quoted.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

// The offsets of values, from the begin of the file.
constexpr std::size_t majorVersionAt = 24;
constexpr std::size_t minorVersionAt = 25;
constexpr std::size_t headerSizeAt = 94;
constexpr std::size_t pointsBeginAt = 96;
constexpr std::size_t formatAt = 104;
constexpr std::size_t recordSizeAt = 105;
constexpr std::size_t shortCountAt = 107;
constexpr std::size_t scaleAt = 131;
constexpr std::size_t offsetAt = 155;
constexpr std::size_t longCountAt = 247;  // since version 1.4

constexpr unsigned lastMinorVersion = 4;
constexpr unsigned lastFormat = 10;

std::size_t leastHeaderSize(unsigned minorVersion) {
  return minorVersion <= 2 ? 227 : minorVersion == 3 ? 235 : 375;
}

// The columns of one record, without extra bytes.
std::vector<Column> columnsOf(unsigned format) {
  using enum NumberType;
  std::vector<Column> columns = {{"x", I4}, {"y", I4}, {"z", I4}, {"intensity", U2}};
  const auto add = [&](const char* name, NumberType type, std::size_t count = 1) {
    columns.push_back({name, type, count});
  };
  const bool isNew = format >= 6;
  add("returns", U1);
  if (isNew) {
    add("flags", U1);
  }
  add("classification", U1);
  if (isNew) {
    add("user_data", U1);
    add("scan_angle", I2);
  } else {
    add("scan_angle", I1);
    add("user_data", U1);
  }
  add("source", U2);
  if (format != 0 && format != 2) {
    add("gps_time", F8);
  }
  if (format == 2 || format == 3 || format == 5 || format == 7 || format == 8 || format == 10) {
    add("rgb", U2, 3);
  }
  if (format == 8 || format == 10) {
    add("near_infrared", U2);
  }
  if (format == 4 || format == 5 || format == 9 || format == 10) {
    add("wave_packet", U1, 29);
  }
  return columns;
}

std::size_t sizeOf(const std::vector<Column>& columns) {
  std::size_t size = 0;
  for (const Column& column : columns) {
    size += column.count * sizeOf(column.type);
  }
  return size;
}

void checkLength(std::span<const std::byte> bytes, std::size_t size) {
  if (bytes.size() < size) {
    throw ReadError(atByte(bytes.size()),
                    "the file ends inside its header of " + std::to_string(size) + " bytes");
  }
}

unsigned minorVersionOf(std::span<const std::byte> bytes) {
  const std::string_view signature = textOf(bytes.subspan(0, std::min<std::size_t>(4, bytes.size())));
  if (signature != "LASF") {
    throw ReadError(atByte(0), "a LAS file begins with \"LASF\", not with " + quoted(signature));
  }
  checkLength(bytes, leastHeaderSize(0));
  const auto major = std::to_integer<unsigned>(bytes[majorVersionAt]);
  const auto minor = std::to_integer<unsigned>(bytes[minorVersionAt]);
  if (major != 1 || minor > lastMinorVersion) {
    throw ReadError(atByte(majorVersionAt), "the version is " + std::to_string(major) + "." +
                                                std::to_string(minor) + "; 1.0 to 1.4 are read");
  }
  checkLength(bytes, leastHeaderSize(minor));
  return minor;
}

std::vector<Column> readColumns(std::span<const std::byte> bytes, std::size_t stride) {
  const auto format = std::to_integer<unsigned>(bytes[formatAt]);
  // Compressed files set the two upper bits.
  if (format > 0x3FU) {
    throw ReadError(atByte(formatAt),
                    "the points are compressed (LAZ), which is not read; decompress the file first, for "
                    "example with \"laszip -i file.laz -o file.las\"");
  }
  if (format > lastFormat) {
    throw ReadError(atByte(formatAt), "the point format is " + std::to_string(format) + "; 0 to 10 are read");
  }
  std::vector<Column> columns = columnsOf(format);
  const std::size_t least = sizeOf(columns);
  if (stride < least) {
    throw ReadError(atByte(recordSizeAt), "a record has " + std::to_string(stride) +
                                              " bytes; one of point format " + std::to_string(format) +
                                              " has " + std::to_string(least) + " at least");
  }
  if (stride > least) {
    columns.push_back({"extra_bytes", NumberType::U1, stride - least});
  }
  return columns;
}

std::uint64_t readCount(std::span<const std::byte> bytes, unsigned minorVersion) {
  const std::uint64_t count = loadLittleEndian<std::uint32_t>(bytes.data() + shortCountAt);
  if (minorVersion < 4) {
    return count;
  }
  // The older count is for old readers. It is 0 when they cannot read the points.
  const auto longCount = loadLittleEndian<std::uint64_t>(bytes.data() + longCountAt);
  if (count != 0 && count != longCount) {
    throw ReadError(atByte(longCountAt), "the header contradicts itself: " + std::to_string(longCount) +
                                             " points here, " + std::to_string(count) + " at byte " +
                                             std::to_string(shortCountAt));
  }
  return longCount;
}

std::array<double, 3> readNumbers(std::span<const std::byte> bytes, std::size_t at, bool isScale) {
  std::array<double, 3> numbers{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::size_t place = at + 8 * axis;
    numbers[axis] = loadLittleEndian<double>(bytes.data() + place);
    if (!std::isfinite(numbers[axis]) || (isScale && numbers[axis] == 0.0)) {
      throw ReadError(atByte(place), std::string(isScale ? "the scale" : "the offset") + " of " +
                                         "xyz"[axis] +
                                         (numbers[axis] == 0.0 ? " is 0" : " is not a finite number"));
    }
  }
  return numbers;
}

}  // namespace

LasHeader readLasHeader(std::span<const std::byte> bytes) {
  const unsigned minorVersion = minorVersionOf(bytes);
  LasHeader header;
  const std::size_t headerSize = loadLittleEndian<std::uint16_t>(bytes.data() + headerSizeAt);
  header.begin = loadLittleEndian<std::uint32_t>(bytes.data() + pointsBeginAt);
  if (headerSize < leastHeaderSize(minorVersion) || header.begin < headerSize) {
    throw ReadError(atByte(headerSizeAt), "the header has " + std::to_string(headerSize) +
                                              " bytes and the points begin at byte " +
                                              std::to_string(header.begin) + "; a header of version 1." +
                                              std::to_string(minorVersion) + " has " +
                                              std::to_string(leastHeaderSize(minorVersion)) + " at least");
  }
  header.stride = loadLittleEndian<std::uint16_t>(bytes.data() + recordSizeAt);
  header.columns = readColumns(bytes, header.stride);
  header.scale = readNumbers(bytes, scaleAt, true);
  header.offset = readNumbers(bytes, offsetAt, false);
  header.points = readCount(bytes, minorVersion);
  const std::uint64_t left = bytes.size() < header.begin ? 0 : bytes.size() - header.begin;
  if (header.points > left / header.stride) {
    throw ReadError(atByte(bytes.size()),
                    "the file ends inside point " + std::to_string(left / header.stride + 1) + " of the " +
                        std::to_string(header.points) + " points of its header, each of " +
                        std::to_string(header.stride) + " bytes");
  }
  return header;
}

}  // namespace orvantis::toolkit
