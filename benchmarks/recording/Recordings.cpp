// How long the frames of a recording take from a file in the page cache to the counts of their zones.
// Compared with reading the bytes and counting when the places of the points are known, and with only the
// decompressor.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <filter/classify/PointClassifier.h>

#include "ByteText.h"
#include "Compressors.h"
#include "Report.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "classify/Clouds.h"
#include "classify/Sites.h"
#include "files/FileSource.h"
#include "recording/RecordingReader.h"

namespace orvantis::benchmarks {
namespace {

using filter::classify::PointClassifier;
using filter::classify::PointsView;

constexpr std::size_t numFrames = 20;
constexpr std::size_t pointStep = 16;

// The points of one frame again and again, with another intensity each time.
struct Setting {
  Setting() : classifier(site(Shapes::Mixed, 56)) {
    const Cloud cloud = ringCloud(120'000);
    numPoints = cloud.size();
    inside = classifier.count(cloud.view()).inside;
    testing::WrittenCloud written = testing::floatCloud({}, 0);
    written.width = static_cast<std::uint32_t>(numPoints);
    written.rowStep = pointStep * written.width;
    std::mt19937 random(1);
    for (std::size_t frame = 0; frame < numFrames; ++frame) {
      written.data.clear();
      for (std::size_t i = 0; i < numPoints; ++i) {
        written.data += testing::bytesOf(cloud.x[i]) + testing::bytesOf(cloud.y[i]) +
                        testing::bytesOf(cloud.z[i]) + testing::bytesOf(static_cast<float>(random() % 256));
      }
      frames.push_back(written.data);
      written.stamp = static_cast<std::int64_t>(frame * 100'000'000);
      mcap.messages.push_back({0, frame * 100'000'000, testing::asCdr(written)});
      bag.messages.push_back({0, frame * 100'000'000, testing::asRos1(written)});
    }
    mcap.topics = {{"/points"}};
    bag.topics = {{"/points", "sensor_msgs/PointCloud2"}};
  }

  PointClassifier classifier;
  std::size_t numPoints = 0;
  std::array<std::uint64_t, 24> inside{};
  std::vector<std::string> frames;
  testing::WrittenRecording mcap;
  testing::WrittenRecording bag;
};

void add(const std::string& name, const std::shared_ptr<Setting>& setting, const std::function<void()>& run) {
  benchmark::RegisterBenchmark(name.c_str(), [setting, run](benchmark::State& state) {
    for (auto _ : state) {
      run();
    }
    state.counters["points"] = benchmark::Counter(static_cast<double>(numFrames * setting->numPoints),
                                                  benchmark::Counter::kIsIterationInvariantRate);
  })->Unit(benchmark::kMillisecond);
}

std::size_t readAndCount(const std::string& path, const Setting& setting, bool isCounted) {
  toolkit::FileSource source(path);
  toolkit::RecordingReader reader(source);
  std::size_t clouds = 0;
  while (const auto cloud = reader.next()) {
    ++clouds;
    if (isCounted) {
      const auto counts =
          std::visit([&](const auto& view) { return setting.classifier.count(view); }, cloud->points);
      if (counts.inside != setting.inside) {
        std::cerr << path << " gives other counts than the points themselves\n";
        std::exit(EXIT_FAILURE);
      }
    }
  }
  return clouds;
}

// Reads ranges of a file, whose places are known, one after the other into one buffer.
class Ranges {
 public:
  Ranges(const std::string& path, const std::string& content, const std::vector<std::string>& parts)
      : path_(path) {
    for (const std::string& part : parts) {
      ranges_.emplace_back(content.find(part), part.size());
      buffer_.resize(std::max(buffer_.size(), part.size()));
    }
  }

  template <typename Use>
  void forEach(const Use& use) {
    const int file = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    for (const auto& [place, size] : ranges_) {
      if (::pread(file, buffer_.data(), size, static_cast<off_t>(place)) != static_cast<ssize_t>(size)) {
        std::abort();
      }
      use(std::span<const std::byte>(buffer_).first(size));
    }
    ::close(file);
  }

 private:
  std::string path_;
  std::vector<std::pair<std::size_t, std::size_t>> ranges_;
  std::vector<std::byte> buffer_;
};

struct File {
  std::string name;
  std::string content;
  toolkit::Decoder toolkit::Decoders::*decoder = nullptr;  // of a compressed file
};

// The pieces of a compressed file, as the reader gives them to the decoder.
std::vector<std::string> piecesOf(const std::string& content, toolkit::Decoder toolkit::Decoders::*kind) {
  std::vector<std::string> pieces;
  toolkit::RecordingOptions options;
  options.decoders.*kind = [&pieces, decoder = options.decoders.*kind](std::span<const std::byte> compressed,
                                                                       std::span<std::byte> room) {
    pieces.emplace_back(reinterpret_cast<const char*>(compressed.data()), compressed.size());
    return decoder(compressed, room);
  };
  toolkit::MemorySource source(testing::viewOf(content));
  toolkit::RecordingReader reader(source, options);
  while (reader.next()) {
  }
  if (pieces.empty()) {
    pieces.push_back(content);  // compressed as a whole
  }
  return pieces;
}

std::vector<File> files(const Setting& setting) {
  const auto mcap = [&](std::size_t messages, const char* compression, bool hasCrcs) {
    testing::McapForm form;
    form.messagesInChunk = messages;
    form.compression = compression;
    form.hasChunkCrcs = hasCrcs;
    form.hasDataCrc = false;
    return testing::asMcap(setting.mcap, form);
  };
  const auto bag = [&](const char* compression) {
    testing::BagForm form;
    form.messagesInChunk = 1;
    form.compression = compression;
    return testing::asBag(setting.bag, form);
  };
  return {{"mcap", mcap(0, "", false)},
          {"mcap in chunks", mcap(1, "", true)},
          {"mcap lz4", mcap(1, "lz4", true), &toolkit::Decoders::lz4},
          {"mcap zstd", mcap(1, "zstd", true), &toolkit::Decoders::zstd},
          {"mcap in zstd", testing::zstdOf(mcap(0, "", false)), &toolkit::Decoders::zstd},
          {"bag", bag("none")},
          {"bag lz4", bag("lz4"), &toolkit::Decoders::lz4},
          {"bag bz2", bag("bz2"), &toolkit::Decoders::bzip2}};
}

void addFile(const std::filesystem::path& folder, const File& file, const std::shared_ptr<Setting>& setting) {
  const std::string path = (folder / file.name).string();
  std::ofstream(path, std::ios::binary) << file.content;
  if (readAndCount(path, *setting, true) != numFrames) {
    std::cerr << path << " gives other frames than were written\n";
    std::exit(EXIT_FAILURE);
  }
  add(file.name + "/reader", setting, [=] { readAndCount(path, *setting, false); });
  add(file.name + "/reader and count", setting, [=] { readAndCount(path, *setting, true); });
  const std::vector<std::string> pieces =
      file.decoder == nullptr ? setting->frames : piecesOf(file.content, file.decoder);
  const auto ranges = std::make_shared<Ranges>(path, file.content, pieces);
  add(file.name + "/bytes", setting, [=] {
    ranges->forEach([](std::span<const std::byte> bytes) { benchmark::DoNotOptimize(bytes.data()); });
  });
  addRatio(file.name + "/reader", file.name + "/bytes");
  addRatio(file.name + "/reader and count", file.name + "/bytes");
  if (file.decoder == nullptr) {
    add(file.name + "/bytes and count", setting, [=] {
      ranges->forEach([&](std::span<const std::byte> bytes) {
        benchmark::DoNotOptimize(setting->classifier.count(
            PointsView<float>::interleaved(bytes.data(), pointStep, setting->numPoints)));
      });
    });
    addRatio(file.name + "/reader and count", file.name + "/bytes and count");
    return;
  }
  const toolkit::Decoder decoder = toolkit::builtInDecoders().*file.decoder;
  const std::size_t all = numFrames * (setting->frames.front().size() + 1000);
  const auto room = std::make_shared<std::vector<std::byte>>(all / pieces.size());
  add(file.name + "/decoder", setting, [decoder, pieces, room] {
    for (const std::string& bytes : pieces) {
      benchmark::DoNotOptimize(decoder(testing::viewOf(bytes), *room));
    }
  });
  add(file.name + "/bytes and decoder", setting, [=] {
    ranges->forEach(
        [&](std::span<const std::byte> bytes) { benchmark::DoNotOptimize(decoder(bytes, *room)); });
  });
  addRatio(file.name + "/reader", file.name + "/decoder");
  addRatio(file.name + "/reader", file.name + "/bytes and decoder");
  addRatio(file.name + "/reader and count", file.name + "/decoder");
}

}  // namespace
}  // namespace orvantis::benchmarks

int main(int argc, char** argv) {
  using namespace orvantis::benchmarks;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return EXIT_FAILURE;
  }
  std::string folder = (std::filesystem::temp_directory_path() / "recordings-benchmark-XXXXXX").string();
  if (::mkdtemp(folder.data()) == nullptr) {
    return EXIT_FAILURE;
  }
  const auto setting = std::make_shared<Setting>();
  for (const File& file : files(*setting)) {
    addFile(folder, file, setting);
  }
  Report report;
  benchmark::RunSpecifiedBenchmarks(&report);
  printRatios();
  std::filesystem::remove_all(folder);
  return EXIT_SUCCESS;
}
