#include "WrittenCloud.h"

#include "ByteText.h"

namespace orvantis::testing {
namespace {

constexpr std::int64_t second = 1'000'000'000;

// The parts of a message one after the other; CDR pads numbers to multiples of their size, and ends texts
// with a zero.
class Writer {
 public:
  Writer(bool isCdr, bool isBigEndian) : isCdr_(isCdr), isBigEndian_(isBigEndian) {}

  template <typename Number>
  void put(Number number) {
    while (isCdr_ && bytes_.size() % sizeof(Number) != 0) {
      bytes_ += '\0';
    }
    bytes_ += bytesOf(number, isBigEndian_);
  }

  void putText(const std::string& text) {
    put(static_cast<std::uint32_t>(text.size() + (isCdr_ ? 1 : 0)));
    bytes_ += text;
    if (isCdr_) {
      bytes_ += '\0';
    }
  }

  void putBytes(const std::string& bytes) {
    put(static_cast<std::uint32_t>(bytes.size()));
    bytes_ += bytes;
  }

  std::string bytes_;

 private:
  bool isCdr_;
  bool isBigEndian_;
};

void putAllButHeader(Writer& writer, const WrittenCloud& cloud) {
  writer.putText(cloud.frameId);
  writer.put(cloud.height);
  writer.put(cloud.width);
  writer.put(static_cast<std::uint32_t>(cloud.fields.size()));
  for (const WrittenCloud::Field& field : cloud.fields) {
    writer.putText(field.name);
    writer.put(field.offset);
    writer.put(field.datatype);
    writer.put(field.count);
  }
  writer.put(cloud.isBigEndian);
  writer.put(cloud.pointStep);
  writer.put(cloud.rowStep);
  writer.putBytes(cloud.data);
  writer.put(std::uint8_t{1});
}

}  // namespace

WrittenCloud floatCloud(const std::vector<Point3>& points, std::int64_t stamp) {
  WrittenCloud cloud;
  cloud.stamp = stamp;
  cloud.width = static_cast<std::uint32_t>(points.size());
  cloud.fields = {{"x", 0, 7, 1}, {"y", 4, 7, 1}, {"z", 8, 7, 1}, {"intensity", 12, 7, 1}};
  cloud.pointStep = 16;
  cloud.rowStep = 16 * cloud.width;
  for (const Point3& point : points) {
    for (const double value : point) {
      cloud.data += bytesOf(static_cast<float>(value));
    }
    cloud.data += bytesOf(0.5F);
  }
  return cloud;
}

std::string asCdr(const WrittenCloud& cloud, bool isBigEndian) {
  Writer writer(true, isBigEndian);
  writer.put(static_cast<std::int32_t>((cloud.stamp - (cloud.stamp % second + second) % second) / second));
  writer.put(static_cast<std::uint32_t>((cloud.stamp % second + second) % second));
  putAllButHeader(writer, cloud);
  return std::string({'\0', isBigEndian ? '\0' : '\1', '\0', '\0'}) + writer.bytes_;
}

std::string asRos1(const WrittenCloud& cloud) {
  Writer writer(false, false);
  writer.put(std::uint32_t{7});
  writer.put(static_cast<std::uint32_t>(cloud.stamp / second));
  writer.put(static_cast<std::uint32_t>(cloud.stamp % second));
  putAllButHeader(writer, cloud);
  return writer.bytes_;
}

}  // namespace orvantis::testing
