#include "CloudStream.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <variant>

#include "HostDecoders.h"
#include "points/PointAt.h"
#include "recording/NamedRead.h"
#include "recording/OpenRecording.h"
#include "recording/ReadError.h"
#include "text/LowerCase.h"

namespace orvantis::engine {

using toolkit::InputFrame;

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

CloudStream::CloudStream(std::vector<NamedSource> files, std::vector<filter::monitor::Stamp> stamps,
                         toolkit::FrameOptions options)
    : files_(std::move(files)), stamps_(std::move(stamps)), options_(options), maker_(std::move(options)) {}

std::optional<InputFrame> CloudStream::nextFrame() {
  for (;;) {
    if (maker_.isInRecording()) {
      if (auto frame = maker_.next()) {
        return frame;
      }
    } else if (numOpened_ == files_.size()) {
      return std::nullopt;
    } else {
      const NamedSource& file = files_[numOpened_++];
      source_ = file.open();
      if (!toolkit::isRecording(source_->bytes(0, 16))) {
        const toolkit::FrameKind kind = toolkit::singleFrameKindOf(file.name);
        const auto bytes = toolkit::named(file.name, [&] { return source_->bytes(0, file.size); });
        return maker_.frameOf(file.name, kind, bytes);
      }
      maker_.begin(file.name, std::move(source_), decoders());
    }
  }
}

toolkit::Points CloudStream::lastWith(const std::string& column) {
  if (maker_.isInRecording()) {
    return maker_.withColumn(column);
  }
  const NamedSource& file = files_[numOpened_ - 1];
  const auto kind = toolkit::singleFrameKindOf(file.name);
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

std::optional<InputFrame> CloudStream::next() {
  auto frame = nextFrame();
  intensity_ = frame ? intensityOf(frame->columns) : std::nullopt;
  if (frame && !stamps_.empty()) {
    toolkit::giveStamp(*frame, stamps_[numOpened_ - 1]);
  }
  return frame;
}

}  // namespace orvantis::engine
