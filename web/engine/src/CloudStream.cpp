#include "CloudStream.h"

#include <algorithm>
#include <array>
#include <new>
#include <string_view>
#include <utility>
#include <variant>

#include "HostDecoders.h"
#include "NamedRead.h"
#include "recording/OpenRecording.h"
#include "recording/PointAt.h"
#include "recording/ReadError.h"
#include "text/LowerCase.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::engine {

using toolkit::Failure;

namespace {

// What drivers and exporters call it.
std::optional<std::string> intensityOf(const std::vector<toolkit::Column>& columns) {
  constexpr std::array<std::string_view, 6> names = {"intensity",   "intensities", "reflectivity",
                                                     "reflectance", "remission",   "scalar_intensity"};
  for (const std::string_view name : names) {
    const auto found = std::find_if(columns.begin(), columns.end(), [name](const toolkit::Column& column) {
      return toolkit::lowerCase(column.name) == name;
    });
    if (found != columns.end()) {
      return found->name;
    }
  }
  return std::nullopt;
}

std::vector<float> thirdsOf(const toolkit::Points& points) {
  return std::visit(
      [](const auto& view) {
        std::vector<float> thirds(view.size);
        for (std::size_t i = 0; i < view.size; ++i) {
          thirds[i] = static_cast<float>(toolkit::pointAt(view, i)[2]);
        }
        return thirds;
      },
      points);
}

}  // namespace

CloudStream::CloudStream(std::vector<NamedSource> files, FrameOptions options)
    : files_(std::move(files)), options_(std::move(options)), filter_(options_.limits) {}

toolkit::Points CloudStream::placed(toolkit::Points points, CloudFrame& frame) {
  frame.atOrigin = toolkit::countAtOrigin(points);
  if (!options_.limits.dropsNothing()) {
    points = filter_.keep(points, frame.dropped);
  }
  return options_.pose ? mover_.move(points, *options_.pose) : points;
}

toolkit::Points CloudStream::lastWith(const std::string& column) {
  if (recording_) {
    return recording_->withColumn(column);
  }
  const NamedSource& file = files_[numOpened_ - 1];
  const auto kind = *toolkit::frameKindOf(file.name);
  return columnReader_.read(source_->bytes(0, file.size), kind, options_.columns, {"x", "y", column}).points;
}

std::vector<float> CloudStream::intensities() {
  if (!intensity_ || !options_.limits.dropsNothing()) {
    return {};
  }
  try {
    return thirdsOf(lastWith(*intensity_));
  } catch (const toolkit::ReadError&) {
    return {};  // the points themselves can be read: this column cannot
  }
}

CloudFrame CloudStream::frameOf(const NamedSource& file) {
  const auto kind = toolkit::frameKindOf(file.name);
  if (!kind) {
    throw Failure(file.name,
                  "cannot be read: unknown kind of file; frames are .pcd, .ply, .las, .bin, .xyz, .txt, .csv "
                  "and .pts, recordings MCAP files and ROS bags");
  }
  CloudFrame frame;
  frame.file = file.name;
  toolkit::Frame read =
      named(file.name, [&] { return reader_.read(source_->bytes(0, file.size), *kind, options_.columns); });
  bytes_ += file.size;
  frame.columns = std::move(read.columns);
  intensity_ = intensityOf(frame.columns);
  frame.points = placed(read.points, frame);
  return frame;
}

void CloudStream::finish() {
  const NamedSource& file = files_[numOpened_ - 1];
  bytes_ += file.size;
  if (const auto& damage = recording_->damage()) {
    warnings_.push_back(file.name + ": byte " + std::to_string(damage->byte) + ": " +
                        toolkit::printable(damage->reason) + "; what comes before it was read");
  }
  const toolkit::StampsBack& back = recording_->stampsBack();
  if (back.count > 0) {
    warnings_.push_back(file.name + ": stamps go back " + toolkit::counted(back.count, "time") +
                        ", by at most " + toolkit::toText(back.most) + " s");
  }
  recording_.reset();
}

std::optional<CloudFrame> CloudStream::nextOfRecording() {
  const std::string& name = files_[numOpened_ - 1].name;
  const auto cloud = named(name, [this] { return recording_->next(); });
  if (!cloud) {
    finish();
    return std::nullopt;
  }
  CloudFrame frame;
  frame.file = name;
  frame.topic = cloud->topic;
  frame.stamp = cloud->stamp;
  frame.columns.assign(cloud->columns.begin(), cloud->columns.end());
  intensity_ = intensityOf(frame.columns);
  frame.points = placed(cloud->points, frame);
  return frame;
}

std::optional<CloudFrame> CloudStream::next() {
  for (;;) {
    if (recording_) {
      if (auto frame = nextOfRecording()) {
        return frame;
      }
    } else if (numOpened_ == files_.size()) {
      return std::nullopt;
    } else {
      const NamedSource& file = files_[numOpened_++];
      source_ = file.open();
      if (!toolkit::isRecording(source_->bytes(0, 16))) {
        return frameOf(file);
      }
      recording_ = named(file.name, [&] {
        return std::make_unique<toolkit::RecordingReader>(
            *source_, toolkit::RecordingOptions{options_.topics, options_.stampFrom, decoders()});
      });
    }
  }
}

}  // namespace orvantis::engine
