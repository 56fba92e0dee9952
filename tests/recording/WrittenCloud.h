#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace orvantis::testing {

/// A point cloud message to be written.
struct WrittenCloud {
  struct Field {
    std::string name;
    std::uint32_t offset = 0;
    std::uint8_t datatype = 0;
    std::uint32_t count = 1;
  };

  std::int64_t stamp = 0;  ///< nanoseconds
  std::string frameId = "lidar";
  std::uint32_t height = 1;
  std::uint32_t width = 0;
  std::vector<Field> fields;
  std::uint8_t isBigEndian = 0;  ///< says so; the data are as they are
  std::uint32_t pointStep = 0;
  std::uint32_t rowStep = 0;
  std::string data;
};

using Point3 = std::array<double, 3>;

/// x, y and z as float32 and an intensity in records of 16 bytes.
WrittenCloud floatCloud(const std::vector<Point3>& points, std::int64_t stamp);

/// The message of ROS 2 (CDR) and of ROS 1.
std::string asCdr(const WrittenCloud& cloud, bool isBigEndian = false);
std::string asRos1(const WrittenCloud& cloud);

}  // namespace orvantis::testing
