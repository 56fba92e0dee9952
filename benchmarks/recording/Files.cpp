#include "recording/Files.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <liblzf/lzf.h>

namespace orvantis::benchmarks {
namespace {

template <typename Number>
void put(std::string& bytes, Number number) {
  std::array<char, sizeof(Number)> raw{};
  std::memcpy(raw.data(), &number, sizeof(Number));
  bytes.append(raw.data(), raw.size());
}

float intensity(std::size_t i) {
  return static_cast<float>(i % 256);
}

std::string records(const Cloud& cloud) {
  std::string bytes;
  for (std::size_t i = 0; i < cloud.size(); ++i) {
    for (const float value : {cloud.x[i], cloud.y[i], cloud.z[i], intensity(i)}) {
      put(bytes, value);
    }
  }
  return bytes;
}

std::string rows(const Cloud& cloud, const char* format, int digits) {
  std::string text;
  std::array<char, 200> row{};
  for (std::size_t i = 0; i < cloud.size(); ++i) {
    const int size =
        std::snprintf(row.data(), row.size(), format, digits, static_cast<double>(cloud.x[i]), digits,
                      static_cast<double>(cloud.y[i]), digits, static_cast<double>(cloud.z[i]));
    text.append(row.data(), static_cast<std::size_t>(size));
  }
  return text;
}

std::string pcd(const Cloud& cloud, const std::string& data, bool hasIntensity) {
  const std::string size = std::to_string(cloud.size());
  return std::string("# .PCD v0.7\nVERSION 0.7\nFIELDS x y z") + (hasIntensity ? " intensity" : "") +
         "\nSIZE 4 4 4" + (hasIntensity ? " 4" : "") + "\nTYPE F F F" + (hasIntensity ? " F" : "") +
         "\nCOUNT 1 1 1" + (hasIntensity ? " 1" : "") + "\nWIDTH " + size +
         "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + size + "\nDATA " + data + "\n";
}

std::string ply(const Cloud& cloud, const std::string& format, bool hasIntensity) {
  return "ply\nformat " + format + " 1.0\nelement vertex " + std::to_string(cloud.size()) +
         "\nproperty float x\nproperty float y\nproperty float z\n" +
         (hasIntensity ? "property float intensity\n" : "") + "end_header\n";
}

std::string compressedPcd(const Cloud& cloud) {
  std::string columns;
  for (const std::vector<float>* column : {&cloud.x, &cloud.y, &cloud.z}) {
    for (const float value : *column) {
      put(columns, value);
    }
  }
  for (std::size_t i = 0; i < cloud.size(); ++i) {
    put(columns, intensity(i));
  }
  std::string block(2 * columns.size(), '\0');
  const unsigned size = lzf_compress(columns.data(), static_cast<unsigned>(columns.size()), block.data(),
                                     static_cast<unsigned>(block.size()));
  block.resize(size);
  std::string file = pcd(cloud, "binary_compressed", true);
  put(file, static_cast<std::uint32_t>(size));
  put(file, static_cast<std::uint32_t>(columns.size()));
  return file + block;
}

std::string bigEndian(std::string bytes) {
  for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
    std::swap(bytes[i], bytes[i + 3]);
    std::swap(bytes[i + 1], bytes[i + 2]);
  }
  return bytes;
}

std::string las(const Cloud& cloud) {
  std::string header(227, '\0');
  const auto at = [&](std::size_t place, auto number) {
    std::string bytes;
    put(bytes, number);
    header.replace(place, bytes.size(), bytes);
  };
  header.replace(0, 4, "LASF");
  at(24, std::uint8_t{1});
  at(25, std::uint8_t{2});
  at(94, std::uint16_t{227});
  at(96, std::uint32_t{227});
  at(105, std::uint16_t{20});
  at(107, static_cast<std::uint32_t>(cloud.size()));
  for (std::size_t axis = 0; axis < 3; ++axis) {
    at(131 + 8 * axis, 0.001);
  }
  for (std::size_t i = 0; i < cloud.size(); ++i) {
    for (const float value : {cloud.x[i], cloud.y[i], cloud.z[i]}) {
      put(header, static_cast<std::int32_t>(value * 1000));
    }
    header.append(8, '\0');
  }
  return header;
}

}  // namespace

std::vector<FrameText> everyKind(const Cloud& cloud) {
  const std::string binary = records(cloud);
  return {
      {"binary.pcd", pcd(cloud, "binary", true) + binary},
      {"records.bin", binary},
      {"little.ply", ply(cloud, "binary_little_endian", true) + binary},
      {"big.ply", ply(cloud, "binary_big_endian", true) + bigEndian(binary)},
      {"points.las", las(cloud)},
      {"compressed.pcd", compressedPcd(cloud), true},
      {"ascii.pcd", pcd(cloud, "ascii", false) + rows(cloud, "%.*g %.*g %.*g\n", 8)},
      {"ascii.ply", ply(cloud, "ascii", false) + rows(cloud, "%.*f %.*f %.*f\n", 6)},
      {"points.xyz", rows(cloud, "%.*f %.*f %.*f\n", 4)},
      {"points.csv", "x,y,z\n" + rows(cloud, "%.*f,%.*f,%.*f\n", 6)},
      {"long.xyz", rows(cloud, "%.*g %.*g %.*g\n", 17)},
  };
}

RawLayout rawLayout(const FrameText& file, std::size_t size) {
  const bool isRaw = file.name == "binary.pcd" || file.name == "records.bin" || file.name == "little.ply";
  return isRaw ? RawLayout{file.content.size() - 16 * size, 16} : RawLayout{};
}

CompressedBlock compressedBlock(const FrameText& file) {
  const std::size_t begin = file.content.find("compressed\n") + 11;
  CompressedBlock block;
  std::memcpy(&block.size, file.content.data() + begin, 4);
  std::memcpy(&block.fullSize, file.content.data() + begin + 4, 4);
  block.begin = file.content.data() + begin + 8;
  return block;
}

}  // namespace orvantis::benchmarks
