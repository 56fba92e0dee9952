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
  header,  ///< the message's own stamp: when the sensor measured
  log,     ///< when the recorder received the message
};

struct RecordingOptions {
  TopicNames topics;  ///< empty: the only topic with point clouds
  StampFrom stampFrom = StampFrom::header;
  Decoders decoders = builtInDecoders();
};

/// One frame of a recording. A view, valid until the next frame is read.
struct RecordedCloud {
  std::string_view topic;
  filter::monitor::Stamp stamp{};   ///< as the options choose
  filter::monitor::Stamp header{};  ///< the message's own stamp
  filter::monitor::Stamp logged{};
  std::string_view frameId;  ///< the coordinate frame of the points
  std::uint32_t height = 0;  ///< rows; 1 for points without an order
  std::uint32_t width = 0;
  std::span<const Column> columns;
  Points points;
  std::uint64_t place = 0;  ///< the byte of the message's record, or of the compressed chunk that holds it
};

/// Stamps that are earlier than the one before of the same topic.
struct StampsBack {
  std::uint64_t count = 0;
  filter::monitor::Duration most{};  ///< the longest step back
};

/// The point clouds of a recording: an MCAP file or a ROS bag of version 2.0, whole or cut off, compressed or
/// not; no message definitions are needed.
///
/// Frames come in the order of the file. Chunks may overlap in time, so stamps may go back; the reader counts
/// that but does not sort. The reader does not read ahead for topics: without an index it finds them while it
/// reads. If no topic was chosen, a second topic with point clouds then ends the reading.
///
/// It keeps one chunk, one message and the names of topics in memory. Readers share nothing: several may be
/// used at once, each by one thread.
class RecordingReader {
 public:
  /// The source must outlive the reader.
  /// @throws ReadError when the bytes are not a recording, or when its index says that a chosen topic is
  ///   missing, that there is no topic with point clouds, or that one must be chosen
  explicit RecordingReader(ByteSource& source, RecordingOptions options = {});

  /// The next frame; nothing at the end, or when the recording is damaged.
  /// @throws ReadError when there is no frame at all, with the damage as its reason if there is any; when a
  ///   chosen topic is missing; and when a topic must be chosen
  std::optional<RecordedCloud> next();

  /// The cloud that `next` gave last, with another column in place of z, such as its intensities. Valid as
  /// long as that cloud.
  /// @param column in the letter case of the message
  /// @throws ReadError when the message lacks the column, or has more than one value of it for each point
  Points withColumn(std::string_view column);

  RecordingKind kind() const { return opened_.kind; }

  /// All topics that are known, with the number of messages that were read of each.
  const std::vector<Topic>& topics() const { return opened_.messages->topics(); }

  /// After `next` gave nothing: why the rest of the recording could not be read; empty when there is no rest.
  const std::optional<Damage>& damage() const { return damage_; }

  const StampsBack& stampsBack() const { return stampsBack_; }

 private:
  // Nothing at the end, and when the recording is damaged, which it notes.
  std::optional<RecordedMessage> nextMessage();
  std::optional<RecordedCloud> cloudOf(const RecordedMessage& message);
  Points pointsOf(const PointLayout& layout, PointBuffer& buffer);
  bool isWanted(std::size_t number);
  void checkChoice(const std::vector<TopicContents>& topics) const;
  void noteStamp(std::size_t topic, filter::monitor::Stamp stamp);
  void finish();

  ByteSource& source_;
  RecordingOptions options_;
  OpenRecording opened_;
  std::optional<std::size_t> only_;  ///< the topic that is read because there is no other one
  std::uint64_t numClouds_ = 0;
  PointCloud2 message_;
  std::vector<Column> columns_;
  std::vector<std::byte> rows_;
  PointBuffer points_;
  PointBuffer others_;
  std::uint64_t place_ = 0;  // of the cloud that was given last
  std::vector<std::optional<filter::monitor::Stamp>> lastStamps_;
  StampsBack stampsBack_;
  std::optional<Damage> damage_;
  bool isAtEnd_ = false;
};

}  // namespace orvantis::toolkit
