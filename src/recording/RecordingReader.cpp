#include "recording/RecordingReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "recording/ReadError.h"
#include "recording/TopicChoice.h"

namespace orvantis::toolkit {

RecordingReader::RecordingReader(ByteSource& source, RecordingOptions options)
    : source_(source), options_(std::move(options)), opened_(openRecording(source, options_.decoders)) {
  if (isIndexed(*opened_.messages)) {
    checkChoice(contentsOf(*opened_.messages).topics);
  }
}

std::optional<RecordedCloud> RecordingReader::next() {
  while (!isAtEnd_) {
    const std::optional<RecordedMessage> message = nextMessage();
    if (!message) {
      finish();
    } else if (isWanted(message->topic)) {
      if (std::optional<RecordedCloud> cloud = cloudOf(*message)) {
        return cloud;
      }
      finish();
    }
  }
  return std::nullopt;
}

std::optional<RecordedMessage> RecordingReader::nextMessage() {
  try {
    return opened_.messages->next();
  } catch (const ReadError& error) {
    damage_ = damageOf(error, opened_);
    return std::nullopt;
  }
}

std::optional<RecordedCloud> RecordingReader::cloudOf(const RecordedMessage& message) {
  const Topic& topic = topics()[message.topic];
  RecordedCloud cloud;
  try {
    readPointCloud2(message.data, topic.cloud, message.place, message_);
    cloud.points = pointsOf(layoutOf(message_, message.place), points_);
  } catch (const ReadError& error) {
    damage_ = damageOf(error, opened_);
    return std::nullopt;
  }
  columnsOf(message_, columns_);
  cloud.topic = topic.name;
  cloud.header = message_.stamp;
  cloud.logged = message.logged;
  cloud.stamp = options_.stampFrom == StampFrom::header ? cloud.header : cloud.logged;
  cloud.frameId = message_.frameId;
  cloud.height = message_.height;
  cloud.width = message_.width;
  cloud.columns = columns_;
  cloud.place = place_ = message.place;
  noteStamp(message.topic, cloud.stamp);
  ++numClouds_;
  return cloud;
}

Points RecordingReader::withColumn(std::string_view column) {
  return pointsOf(layoutOf(message_, place_, {"x", "y", column}), others_);
}

Points RecordingReader::pointsOf(const PointLayout& layout, PointBuffer& buffer) {
  const auto size = static_cast<std::size_t>(message_.size());
  const std::byte* records = message_.data.data();
  const std::size_t row = std::size_t{message_.width} * message_.pointStep;
  if (size != 0 && message_.height > 1 && message_.rowStep != row) {
    // Rows with gaps between them are copied together, because a view has only one step.
    rows_.resize(message_.height * row);
    for (std::size_t i = 0; i < message_.height; ++i) {
      std::memcpy(&rows_[i * row], records + i * message_.rowStep, row);
    }
    records = rows_.data();
  }
  return buffer.view(records, size, layout);
}

bool RecordingReader::isWanted(std::size_t number) {
  const Topic& topic = topics()[number];
  if (topic.cloud == CloudEncoding::none) {
    return false;
  }
  if (!options_.topics.empty()) {
    return options_.topics.contains(topic.name);
  }
  if (only_ && *only_ != number) {
    isAtEnd_ = true;
    checkChoice(readContents(source_, options_.decoders).topics);
  }
  only_ = number;
  return true;
}

void RecordingReader::checkChoice(const std::vector<TopicContents>& topics) const {
  if (const std::optional<std::string> fault = faultOfChoice(options_.topics, topics)) {
    throw ReadError(atByte(0), *fault);
  }
}

void RecordingReader::noteStamp(std::size_t topic, filter::monitor::Stamp stamp) {
  lastStamps_.resize(std::max(lastStamps_.size(), topic + 1));
  std::optional<filter::monitor::Stamp>& last = lastStamps_[topic];
  if (last && stamp < *last) {
    ++stampsBack_.count;
    stampsBack_.most = std::max(stampsBack_.most, *last - stamp);
  }
  last = stamp;
}

void RecordingReader::finish() {
  isAtEnd_ = true;
  if (damage_ && numClouds_ == 0) {
    const Damage damage = *std::exchange(damage_, std::nullopt);
    throw ReadError(atByte(damage.byte), damage.reason + "; no whole point cloud comes before");
  }
  if (!damage_) {
    checkChoice(contentsOf(*opened_.messages).topics);
  }
}

}  // namespace orvantis::toolkit
