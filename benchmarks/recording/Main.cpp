// How long frames take from a file in the page cache to the counts of their zones. Compared with only reading
// the bytes, and with counting when the layout of the points is known.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <liblzf/lzf.h>
#include <unistd.h>

#include <filter/classify/PointClassifier.h>

#include "Report.h"
#include "classify/Clouds.h"
#include "classify/Sites.h"
#include "recording/Files.h"
#include "recording/FrameReader.h"
#include "recording/PointFilter.h"
#include "recording/PointMover.h"

namespace orvantis::benchmarks {
namespace {

using filter::classify::PointClassifier;
using filter::classify::PointsView;
using filter::classify::ZoneCounts;

void add(const std::string& name, std::size_t numPoints, const std::function<void()>& run) {
  benchmark::RegisterBenchmark(name.c_str(), [numPoints, run](benchmark::State& state) {
    for (auto _ : state) {
      run();
    }
    state.counters["points"] =
        benchmark::Counter(static_cast<double>(numPoints), benchmark::Counter::kIsIterationInvariantRate);
  })->Unit(benchmark::kMicrosecond);
}

// The same frame in several files, which are read in turn into one buffer. So they come from the page cache
// and not from the processor's cache, like the frames of a recording.
class Files {
 public:
  Files(const std::filesystem::path& folder, const FrameText& frame) : buffer_(frame.content.size()) {
    constexpr int numCopies = 16;
    for (int i = 0; i < numCopies; ++i) {
      paths_.push_back((folder / (std::to_string(i) + frame.name)).string());
      std::ofstream(paths_.back(), std::ios::binary) << frame.content;
    }
  }

  std::span<const std::byte> read() {
    next_ = (next_ + 1) % paths_.size();
    const int file = ::open(paths_[next_].c_str(), O_RDONLY | O_CLOEXEC);
    const ::ssize_t size = ::read(file, buffer_.data(), buffer_.size());
    ::close(file);
    if (size != static_cast<::ssize_t>(buffer_.size())) {
      std::abort();
    }
    return buffer_;
  }

 private:
  std::vector<std::string> paths_;
  std::size_t next_ = 0;
  std::vector<std::byte> buffer_;
};

ZoneCounts countOf(const PointClassifier& classifier, const toolkit::Points& points) {
  return std::visit([&](const auto& view) { return classifier.count(view); }, points);
}

void compare(const std::string& name, const ZoneCounts& counts, const ZoneCounts& expected) {
  if (counts.inside != expected.inside || counts.excluded != expected.excluded ||
      counts.noReturns != expected.noReturns) {
    std::cerr << name << " gives other counts than the points themselves\n";
    std::exit(EXIT_FAILURE);
  }
}

struct Setting {
  explicit Setting(const Cloud& points)
      : classifier(site(Shapes::Mixed, 56)), size(points.size()), counts(classifier.count(points.view())) {}

  PointClassifier classifier;
  std::size_t size;
  ZoneCounts counts;
};

void addFile(const std::filesystem::path& folder, const FrameText& frame, const std::shared_ptr<Setting>& s) {
  const auto file = std::make_shared<Files>(folder, frame);
  const auto reader = std::make_shared<toolkit::FrameReader>();
  const auto mover = std::make_shared<toolkit::PointMover>();
  const toolkit::FrameKind kind = toolkit::frameKindOf(frame.name).value();
  // Only exact kinds are compared here; the tests compare the kinds that round.
  const bool isExact = rawLayout(frame, s->size).stride != 0 || frame.isCompressed ||
                       frame.name == "big.ply" || frame.name == "long.xyz";
  if (isExact) {
    compare(frame.name, countOf(s->classifier, reader->read(file->read(), kind).points), s->counts);
  }
  const std::string prefix = frame.name + "/";
  add(prefix + "bytes", s->size, [file] { benchmark::DoNotOptimize(file->read().data()); });
  add(prefix + "reader", s->size,
      [file, reader, kind] { benchmark::DoNotOptimize(reader->read(file->read(), kind)); });
  add(prefix + "reader and count", s->size, [file, reader, kind, s] {
    benchmark::DoNotOptimize(countOf(s->classifier, reader->read(file->read(), kind).points));
  });
  add(prefix + "reader, pose and count", s->size, [file, reader, mover, kind, s] {
    static const toolkit::Pose pose(1, 2, 0.5, 1, 2, 30);
    const toolkit::Points points = reader->read(file->read(), kind).points;
    benchmark::DoNotOptimize(countOf(s->classifier, mover->move(points, pose)));
  });
  add(prefix + "reader, origin and count", s->size, [file, reader, kind, s] {
    const toolkit::Points points = reader->read(file->read(), kind).points;
    benchmark::DoNotOptimize(toolkit::countAtOrigin(points));
    benchmark::DoNotOptimize(countOf(s->classifier, points));
  });
  if (const RawLayout raw = rawLayout(frame, s->size); raw.stride != 0) {
    add(prefix + "bytes and count", s->size, [file, raw, s] {
      const auto view = PointsView<float>::interleaved(file->read().data() + raw.begin, raw.stride, s->size);
      benchmark::DoNotOptimize(s->classifier.count(view));
    });
  }
  if (frame.isCompressed) {
    const auto kept = std::make_shared<FrameText>(frame);
    const auto out = std::make_shared<std::string>(compressedBlock(frame).fullSize, '\0');
    add(prefix + "liblzf", s->size, [kept, out] {
      const CompressedBlock block = compressedBlock(*kept);
      benchmark::DoNotOptimize(lzf_decompress(block.begin, block.size, out->data(), block.fullSize));
    });
  }
  for (const char* way : {"reader and count", "reader, pose and count", "reader, origin and count"}) {
    addRatio(prefix + way, prefix + "bytes and count");
  }
  addRatio(prefix + "reader and count", prefix + "bytes");
  addRatio(prefix + "reader", prefix + "liblzf");
}

}  // namespace
}  // namespace orvantis::benchmarks

int main(int argc, char** argv) {
  using namespace orvantis::benchmarks;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return EXIT_FAILURE;
  }
  std::string name = (std::filesystem::temp_directory_path() / "frames-benchmark-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    return EXIT_FAILURE;
  }
  const Cloud cloud = ringCloud(120000);
  const auto setting = std::make_shared<Setting>(cloud);
  for (const FrameText& frame : everyKind(cloud)) {
    addFile(name, frame, setting);
  }
  Report report;
  benchmark::RunSpecifiedBenchmarks(&report);
  printRatios();
  std::filesystem::remove_all(name);
  return EXIT_SUCCESS;
}
