#include "CloudReader.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <ios>
#include <new>

#include <open3d/geometry/PointCloud.h>
#include <open3d/io/PointCloudIO.h>
#include <open3d/utility/Logging.h>

#include "CloudCheck.h"
#include "Console.h"
#include "files/File.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

std::string ending(const std::string& path) {
  std::string text = std::filesystem::path(path).extension().string();
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

// Open3D's messages, without its colours and marks, instead of on the standard output.
class Open3dMessages {
 public:
  Open3dMessages() {
    logger().SetVerbosityLevel(open3d::utility::VerbosityLevel::Warning);
    logger().SetPrintFunction([this](const std::string& message) {
      const std::size_t begin = message.find("] ");
      const std::size_t end = message.find("\033[0");
      text_ += text_.empty() ? "" : "; ";
      text_ += begin == std::string::npos ? message : message.substr(begin + 2, end - begin - 2);
    });
  }
  Open3dMessages(const Open3dMessages&) = delete;
  Open3dMessages& operator=(const Open3dMessages&) = delete;
  ~Open3dMessages() { logger().ResetPrintFunction(); }

  const std::string& text() const { return text_; }

 private:
  static open3d::utility::Logger& logger() { return open3d::utility::Logger::GetInstance(); }

  std::string text_;
};

Cloud readWithOpen3d(const std::string& path, const std::string& format) {
  const Open3dMessages messages;
  open3d::geometry::PointCloud cloud;
  // Points that are not finite stay: they are counted.
  const open3d::io::ReadPointCloudOption options(format, false, false, false);
  if (!open3d::io::ReadPointCloud(path, cloud, options)) {
    throw std::runtime_error(messages.text().empty() ? "Open3D cannot read it" : messages.text());
  }
  return std::move(cloud.points_);
}

float littleEndianFloat(const char* bytes) {
  std::uint32_t bits = 0;
  for (int i = 3; i >= 0; --i) {
    bits = bits << 8U | static_cast<unsigned char>(bytes[i]);
  }
  return std::bit_cast<float>(bits);
}

Cloud readRecords(const std::string& path, std::size_t size) {
  constexpr std::size_t record = 16;
  if (size % record != 0) {
    throw std::runtime_error("ends inside point " + std::to_string(size / record) + ": " +
                             std::to_string(size) +
                             " bytes are no whole number of 16-byte records (float32 x, y, z, intensity)");
  }
  const std::string bytes = readFile(path, size);
  if (bytes.size() != size) {
    throw std::runtime_error("ended after " + std::to_string(bytes.size()) + " of its " +
                             std::to_string(size) + " bytes");
  }
  Cloud cloud;
  cloud.reserve(bytes.size() / record);
  for (std::size_t at = 0; at < size; at += record) {
    const char* point = bytes.data() + at;
    cloud.emplace_back(littleEndianFloat(point), littleEndianFloat(point + 4), littleEndianFloat(point + 8));
  }
  return cloud;
}

Cloud read(const std::string& path, std::size_t size) {
  const std::string kind = ending(path);
  if (size == 0) {
    throw std::runtime_error("the file is empty");
  }
  if (kind == ".bin") {
    return readRecords(path, size);
  }
  // Open3D trusts what a header says. Checked first, since a wrong one makes it read past its memory or hand
  // out points that are in no file.
  if (kind == ".pcd") {
    return checkPcd(path, size) == 0 ? Cloud() : readWithOpen3d(path, "pcd");
  }
  if (kind == ".ply") {
    checkPly(path, size);
    return readWithOpen3d(path, "ply");
  }
  if (kind == ".xyz") {
    checkXyz(path);
    return readWithOpen3d(path, "xyz");
  }
  throw std::runtime_error("unknown kind of file; .pcd, .ply, .xyz and .bin are read");
}

}  // namespace

Points viewOf(const Cloud& cloud) {
  return filter::classify::PointsView<double>::interleaved(cloud.data(), sizeof(Cloud::value_type),
                                                           cloud.size());
}

Cloud readCloud(const std::string& path) {
  const std::size_t size = fileSize(path);
  try {
    return read(path, size);
  } catch (const Failure&) {
    throw;  // names the path already
  } catch (const std::bad_alloc&) {
    throw Failure(path, "cannot be read: not enough memory");
  } catch (const std::ios_base::failure& error) {
    throw Failure(path, "cannot be read: " + error.code().message());
  } catch (const std::exception& error) {
    throw Failure(path, "cannot be read: " + printable(error.what()));
  }
}

}  // namespace orvantis::app
