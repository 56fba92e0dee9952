#include "RecordingSamples.h"

#include "Compressors.h"
#include "WrittenCloud.h"

namespace orvantis::testing {
namespace {

constexpr std::int64_t start = 1'700'000'000'000'000'000;
constexpr std::int64_t delay = 12'345'678;  // from measuring to recording

std::int64_t stampOf(std::size_t cloud) {
  return start + static_cast<std::int64_t>(cloud) * 100'000'000;
}

std::vector<Point3> pointsOfCloud(std::size_t cloud) {
  const std::size_t sizes[] = {5, 3, 0, 4};
  std::vector<Point3> points;
  for (std::size_t i = 0; i < sizes[cloud]; ++i) {
    const auto number = static_cast<double>(10 * cloud + i);
    points.push_back({number + 0.5, -number, 0.125 * number});
  }
  return points;
}

WrittenRecording sample(bool isRos1) {
  WrittenRecording recording;
  const std::string message = isRos1 ? "std_msgs/String" : "std_msgs/msg/String";
  const std::string cloud = isRos1 ? "sensor_msgs/PointCloud2" : "sensor_msgs/msg/PointCloud2";
  recording.topics = {{"/status", message, "cdr"}, {"/points", cloud, "cdr"}};
  for (std::size_t i = 0; i < 4; ++i) {
    const WrittenCloud written = floatCloud(pointsOfCloud(i), stampOf(i));
    const auto logged = static_cast<std::uint64_t>(stampOf(i) + delay);
    if (i != 2) {
      recording.messages.push_back({0, logged - 1, "all is well"});
    }
    recording.messages.push_back({1, logged, isRos1 ? asRos1(written) : asCdr(written)});
  }
  return recording;
}

}  // namespace

WrittenRecording mcapSample() {
  return sample(false);
}
WrittenRecording bagSample() {
  return sample(true);
}

std::vector<ReadCloud> sampleClouds() {
  std::vector<ReadCloud> clouds;
  for (std::size_t i = 0; i < 4; ++i) {
    clouds.push_back({"/points", stampOf(i), stampOf(i) + delay, "lidar", pointsOfCloud(i), 0});
  }
  return clouds;
}

std::vector<ReadCloud> placeless(std::vector<ReadCloud> clouds) {
  for (ReadCloud& cloud : clouds) {
    cloud.place = 0;
  }
  return clouds;
}

std::vector<Sample> mcapSamples() {
  std::vector<Sample> samples;
  const auto add = [&](const std::string& name, const McapForm& form, bool hasCrcs) {
    samples.push_back(
        {"mcap " + name, asMcap(mcapSample(), form), hasCrcs, form.hasStatistics || form.hasDataCrc});
  };
  McapForm form;
  add("without chunks", form, true);
  form.hasDataCrc = false;
  add("without chunks and CRC", form, false);
  form.hasSummary = false;
  form.hasStatistics = false;
  form.hasSummaryCrc = false;
  add("without chunks, CRC and summary", form, false);
  form = {};
  for (const char* compression : {"", "lz4", "lz4 linked", "zstd", "zstd without size"}) {
    form.compression = compression;
    form.messagesInChunk = 2;
    add("chunks " + form.compression, form, true);
    form.declaresInChunks = true;
    form.hasMessageIndexes = false;
    form.hasSummary = false;
    form.hasStatistics = false;
    form.hasDataCrc = false;
    add("chunks without index " + form.compression, form, true);
    form = {};
  }
  form.messagesInChunk = 100;
  form.hasChunkCrcs = false;
  add("one chunk, CRC of all data", form, true);
  form.hasDataCrc = false;
  form.hasSummary = false;
  add("one chunk without CRC, statistics alone", form, false);
  samples.push_back({"mcap in zstd", zstdOf(samples[0].bytes, true), true, true});
  return samples;
}

std::vector<Sample> bagSamples() {
  std::vector<Sample> samples;
  for (const char* compression : {"none", "bz2", "lz4"}) {
    BagForm form;
    form.headerSize = 100;
    form.compression = compression;
    const bool hasCrcs = form.compression != "none";
    samples.push_back({"bag " + form.compression, asBag(bagSample(), form), hasCrcs, form.isClosed});
    form.messagesInChunk = 100;
    form.isClosed = false;
    samples.push_back(
        {"bag that was not closed " + form.compression, asBag(bagSample(), form), hasCrcs, form.isClosed});
  }
  return samples;
}

std::vector<Sample> allSamples() {
  std::vector<Sample> samples = mcapSamples();
  for (Sample& sample : bagSamples()) {
    samples.push_back(std::move(sample));
  }
  return samples;
}

}  // namespace orvantis::testing
