#include "recording/FrameMaker.h"

#include <utility>

#include "recording/NamedRead.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::toolkit {

FrameKind singleFrameKindOf(const std::string& path) {
  const auto kind = frameKindOf(path);
  if (!kind) {
    throw Failure(path,
                  "cannot be read: unknown kind of file; frames are .pcd, .ply, .las, .bin, .xyz, .txt, .csv "
                  "and .pts, recordings MCAP files and ROS bags");
  }
  return *kind;
}

FrameMaker::Recording::Recording(const std::string& file, std::unique_ptr<ByteSource> opened,
                                 RecordingOptions options)
    : path(file), source(std::move(opened)), reader(*source, std::move(options)) {}

FrameMaker::FrameMaker(FrameOptions options) : options_(std::move(options)), filter_(options_.limits) {}

Points FrameMaker::placed(Points points, InputFrame& frame) {
  if (!options_.limits.dropsNothing()) {
    points = filter_.keep(points, frame.dropped);
  }
  if (!options_.pose) {
    return points;
  }
  frame.atOrigin = countAtOrigin(points);
  return mover_.move(points, *options_.pose);
}

InputFrame FrameMaker::frameOf(const std::string& path, FrameKind kind, std::span<const std::byte> bytes) {
  bytes_ += bytes.size();
  InputFrame frame;
  frame.file = path;
  Frame read = named(path, [&] { return reader_.read(bytes, kind, options_.columns); });
  frame.columns = std::move(read.columns);
  frame.points = placed(read.points, frame);
  return frame;
}

void FrameMaker::begin(const std::string& path, std::unique_ptr<ByteSource> source, Decoders decoders) {
  recording_ = named(path, [&] {
    return std::make_unique<Recording>(
        path, std::move(source), RecordingOptions{options_.topics, options_.stampFrom, std::move(decoders)});
  });
}

InputFrame FrameMaker::frameOf(const RecordedCloud& cloud) {
  InputFrame frame;
  frame.file = recording_->path;
  frame.topic = cloud.topic;
  frame.stamp = cloud.stamp;
  frame.columns.assign(cloud.columns.begin(), cloud.columns.end());
  frame.points = placed(cloud.points, frame);
  return frame;
}

void FrameMaker::finish() {
  const std::unique_ptr<const Recording> done = std::move(recording_);
  const std::string path = printable(done->path);
  bytes_ += done->source->size().value_or(0);
  if (const auto& damage = done->reader.damage()) {
    isDamaged_ = true;
    warnings_.push_back(path + ": " + toText(*damage));
  }
  const StampsBack& back = done->reader.stampsBack();
  if (back.count > 0) {
    warnings_.push_back(path + ": stamps go back " + counted(back.count, "time") + ", by at most " +
                        toText(back.most) + " s");
  }
}

std::optional<InputFrame> FrameMaker::next() {
  const auto cloud = named(recording_->path, [this] { return recording_->reader.next(); });
  if (!cloud) {
    finish();
    return std::nullopt;
  }
  return frameOf(*cloud);
}

}  // namespace orvantis::toolkit
