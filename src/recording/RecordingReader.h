#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "files/ByteSource.h"
#include "recording/Decoders.h"
#include "recording/OpenRecording.h"
#include "recording/PointBuffer.h"
#include "recording/PointCloud2.h"
#include "recording/Points.h"
#include "recording/ReadError.h"
#include "recording/RecordingContents.h"

namespace orvantis::toolkit {

/// Which time is a frame's stamp.
enum class StampFrom : std::uint8_t {
  header,  ///< the message's own: when the sensor measured
  log,     ///< when the recorder took the message
};

struct RecordingOptions {
  std::vector<std::string> topics;  ///< empty: the only one that holds point clouds
  StampFrom stampFrom = StampFrom::header;
  Decoders decoders = builtInDecoders();
};

/// One frame of a recording: a view, valid until the next one is asked for.
struct RecordedCloud {
  std::string_view topic;
  filter::monitor::Stamp stamp{};   ///< as the options choose
  filter::monitor::Stamp header{};  ///< the message's own
  filter::monitor::Stamp logged{};
  std::string_view frameId;  ///< the coordinate frame of the points
  std::uint32_t height = 0;  ///< rows; 1 for points without an order
  std::uint32_t width = 0;
  std::span<const Column> columns;
  Points points;
  std::uint64_t place = 0;  ///< the byte of the message's record, or of the compressed chunk that holds it
};

/// Stamps that were less than the one before of the same topic.
struct StampsBack {
  std::uint64_t count = 0;
  filter::monitor::Duration most{};  ///< the longest way back
};

/// The point clouds of a recording: an MCAP file or a ROS bag of version 2.0, whole or cut off, compressed or
/// not; no message definitions are needed.
///
/// Frames come in the order of the file. Chunks may overlap in time, so stamps may go back; that is counted,
/// and sorting is left to whoever needs it. The first frame is there as soon as it is read: without an index
/// the other topics become known on the way, and a second topic of point clouds ends the reading if none was
/// chosen.
///
/// Memory is one chunk, one message, and the names of topics. Nothing is shared between readers: several may
/// be used at once, each by one thread.
class RecordingReader {
 public:
  /// The source must outlive the reader.
  /// @throws ReadError when the bytes are not a recording, or its index says that the chosen topics are not
  ///         there, that none is, or that one must be chosen
  explicit RecordingReader(ByteSource& source, RecordingOptions options = {});

  /// The next frame; nothing at the end, or where the recording is damaged.
  /// @throws ReadError when there is no frame at all, with the damage as its reason if there is some; when a
  ///         chosen topic is not there; and when a topic must be chosen
  std::optional<RecordedCloud> next();

  RecordingKind kind() const { return opened_.kind; }

  /// All topics as far as they are known, with the number of messages that were read of each.
  const std::vector<Topic>& topics() const { return opened_.messages->topics(); }

  /// Once `next` gave nothing: why the rest of the recording could not be read, if so.
  const std::optional<Damage>& damage() const { return damage_; }

  const StampsBack& stampsBack() const { return stampsBack_; }

 private:
  // Nothing at the end, and where the recording is damaged, which is noted.
  std::optional<RecordedMessage> nextMessage();
  std::optional<RecordedCloud> cloudOf(const RecordedMessage& message);
  Points pointsOf(const PointLayout& layout);
  bool isWanted(std::size_t number);
  void checkChoice(const std::vector<TopicContents>& topics) const;
  void noteDamage(const ReadError& error);
  void noteStamp(std::size_t topic, filter::monitor::Stamp stamp);
  void finish();

  ByteSource& source_;
  RecordingOptions options_;
  OpenRecording opened_;
  std::optional<std::size_t> only_;  ///< the topic that was taken because no other one is there
  std::uint64_t numClouds_ = 0;
  PointCloud2 message_;
  std::vector<Column> columns_;
  std::vector<std::byte> rows_;
  PointBuffer points_;
  std::vector<std::optional<filter::monitor::Stamp>> lastStamps_;
  StampsBack stampsBack_;
  std::optional<Damage> damage_;
  bool isAtEnd_ = false;
};

}  // namespace orvantis::toolkit
