#include "recording/TopicTable.h"

#include <algorithm>

#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

CloudEncoding cloudEncoding(std::string_view type, std::string_view encoding) {
  if (type == "sensor_msgs/msg/PointCloud2" && encoding == "cdr") {
    return CloudEncoding::cdr;
  }
  if (type == "sensor_msgs/PointCloud2" && encoding == "ros1") {
    return CloudEncoding::ros1;
  }
  return CloudEncoding::none;
}

}  // namespace

std::size_t TopicTable::add(std::string_view name, std::string_view type, std::string_view encoding,
                            std::uint64_t place) {
  // The lengths separate the texts, because a name may have any bytes.
  std::string key = std::to_string(name.size()) + ' ' + std::to_string(type.size()) + ' ';
  key.append(name).append(type).append(encoding);
  const auto [at, isNew] = numbers_.try_emplace(std::move(key), topics_.size());
  if (!isNew) {
    return at->second;
  }
  bytes_ += 2 * at->first.size() + sizeof(Topic);
  if (bytes_ > mostBytesOfNames) {
    throw ReadError(atByte(place), "the names of the recording's topics take more than " +
                                       std::to_string(mostBytesOfNames) + " bytes");
  }
  Topic& topic = topics_.emplace_back();
  topic.name = name;
  topic.type = type;
  topic.encoding = encoding;
  topic.cloud = cloudEncoding(type, encoding);
  return at->second;
}

void TopicTable::count(std::size_t number, filter::monitor::Stamp logged) {
  Topic& topic = topics_[number];
  topic.firstLogged = topic.read == 0 ? logged : std::min(topic.firstLogged, logged);
  topic.lastLogged = topic.read == 0 ? logged : std::max(topic.lastLogged, logged);
  ++topic.read;
}

}  // namespace orvantis::toolkit
