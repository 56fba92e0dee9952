#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <filter/monitor/Stamp.h>

namespace orvantis::toolkit {

/// The most memory that the names in a recording may take. Without a limit, a compressed chunk of a few
/// kilobytes could unfold to a million names.
inline constexpr std::size_t mostBytesOfNames = std::size_t{16} * 1024 * 1024;

/// Names that are looked up for every message.
using TopicNames = std::set<std::string, std::less<>>;

/// The encoding of a point cloud message; none when it cannot be read.
enum class CloudEncoding : std::uint8_t { none, ros1, cdr };

/// A topic of a recording.
struct Topic {
  std::string name;
  std::string type;      ///< such as "sensor_msgs/msg/PointCloud2"; empty when not known
  std::string encoding;  ///< such as "cdr", "ros1" or "json"

  std::optional<std::uint64_t> messages;  ///< in the whole recording, if its index says
  std::uint64_t read = 0;                 ///< whole messages that were read or skipped so far
  filter::monitor::Stamp firstLogged{};   ///< of these messages
  filter::monitor::Stamp lastLogged{};

  /// If it is not `none`, the topic has point clouds that can be read.
  CloudEncoding cloud = CloudEncoding::none;
};

/// The topics of a recording without repetition, in the order in which they were found.
class TopicTable {
 public:
  /// The number of the topic of this name, type and encoding. A new topic is added.
  /// @throws ReadError at `place` when the names take more than `mostBytesOfNames`
  std::size_t add(std::string_view name, std::string_view type, std::string_view encoding,
                  std::uint64_t place);

  /// Counts a message of a topic.
  void count(std::size_t number, filter::monitor::Stamp logged);

  const std::vector<Topic>& topics() const { return topics_; }
  Topic& operator[](std::size_t number) { return topics_[number]; }

 private:
  std::vector<Topic> topics_;
  std::map<std::string, std::size_t> numbers_;
  std::size_t bytes_ = 0;
};

}  // namespace orvantis::toolkit
