#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "recording/Points.h"
#include "recording/TopicTable.h"

namespace orvantis::toolkit {

/// The content of a point cloud message of ROS 1 or ROS 2.
struct PointCloud2 {
  struct Field {
    std::string_view name;
    std::uint32_t offset = 0;
    std::uint8_t datatype = 0;  ///< 1 to 8: I1, U1, I2, U2, I4, U4, F4, F8
    std::uint32_t count = 0;
  };

  filter::monitor::Stamp stamp{};
  std::string_view frameId;
  std::uint32_t height = 0;
  std::uint32_t width = 0;
  std::vector<Field> fields;
  bool isBigEndian = false;  ///< of the points, not of the message
  std::uint32_t pointStep = 0;
  std::uint32_t rowStep = 0;
  std::span<const std::byte> data;

  std::uint64_t size() const { return std::uint64_t{height} * width; }
};

/// Reads a message into `cloud`, whose memory is reused; its views are valid as long as the message.
/// @throws ReadError at `place` for a message that is torn, or not of this type
void readPointCloud2(std::span<const std::byte> message, CloudEncoding encoding, std::uint64_t place,
                     PointCloud2& cloud);

/// Where the coordinates of a cloud are.
/// @param axes their columns, in the letter case of the message
/// @throws ReadError at `place` when one of them is missing, there twice, or outside the point, and when the
///         data are shorter than the steps and sizes of the cloud claim
PointLayout layoutOf(const PointCloud2& cloud, std::uint64_t place, const AxisNames& axes = coordinateNames);

/// The columns of the cloud, without those of an unknown type.
void columnsOf(const PointCloud2& cloud, std::vector<Column>& columns);

}  // namespace orvantis::toolkit
