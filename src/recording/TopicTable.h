#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <filter/monitor/Stamp.h>

namespace orvantis::toolkit {

/// The memory that names in a recording may take: a compressed chunk of a few kilobytes may unfold to a
/// million of them.
inline constexpr std::size_t mostBytesOfNames = std::size_t{16} * 1024 * 1024;

/// How the bytes of a message are to be read.
enum class CloudEncoding : std::uint8_t { none, ros1, cdr };

/// A topic of a recording.
struct Topic {
  std::string name;
  std::string type;      ///< such as "sensor_msgs/msg/PointCloud2"; empty where the recording does not say
  std::string encoding;  ///< such as "cdr", "ros1" or "json"

  std::optional<std::uint64_t> messages;  ///< in the whole recording, where its index says
  std::uint64_t read = 0;                 ///< whole messages that were passed so far
  filter::monitor::Stamp firstLogged{};   ///< of these
  filter::monitor::Stamp lastLogged{};

  /// Other than none: the topic holds point clouds that can be read.
  CloudEncoding cloud = CloudEncoding::none;
};

/// The topics of a recording, each once, in the order in which they were found.
class TopicTable {
 public:
  /// The number of the topic of this name, type and encoding, which is added when it is new.
  /// @throws ReadError at `place` when names would fill the memory
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
