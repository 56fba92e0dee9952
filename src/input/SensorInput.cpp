#include "input/SensorInput.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "files/Failure.h"
#include "points/PointAt.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointsView;
using filter::monitor::Stamp;

FrameOptions optionsOf(const Sensor& sensor, FrameOptions options) {
  options.topics.clear();
  if (!sensor.topic.empty()) {
    options.topics.insert(sensor.topic);
  }
  options.pose.reset();
  if (sensor.pose) {
    const auto& [x, y, z, roll, pitch, yaw] = *sensor.pose;
    options.pose = Pose(x, y, z, roll, pitch, yaw);
  }
  return options;
}

// How much later one stamp is than another. It does not overflow.
std::uint64_t later(Stamp stamp, Stamp than) {
  return static_cast<std::uint64_t>(stamp.count()) - static_cast<std::uint64_t>(than.count());
}

void add(const DroppedPoints& dropped, DroppedPoints& sum) {
  sum.atOrigin += dropped.atOrigin;
  sum.tooNear += dropped.tooNear;
  sum.tooFar += dropped.tooFar;
}

// Copies the points of all sensors one after the other. The view of each sensor then is its part of the copy.
template <typename Real>
Points joined(std::vector<SensorFrame>& sensors, std::size_t size, std::vector<Real>& buffer) {
  buffer.resize(3 * size);
  Real* at = buffer.data();
  for (SensorFrame& sensor : sensors) {
    Real* const begin = at;
    std::visit(
        [&at](const auto& view) {
          for (std::size_t i = 0; i < view.size; ++i) {
            for (const auto coordinate : pointAt(view, i)) {
              *at++ = static_cast<Real>(coordinate);
            }
          }
        },
        sensor.points);
    sensor.points = PointsView<Real>::interleaved(begin, 3 * sizeof(Real), sizeOf(sensor.points));
  }
  return PointsView<Real>::interleaved(buffer.data(), 3 * sizeof(Real), size);
}

}  // namespace

SensorInput::Stream::Stream(const Sensor& sensor, const FrameOptions& options, std::optional<double> rate)
    : name(sensor.name),
      input(filesOf(sensor.files, optionsOf(sensor, options)), optionsOf(sensor, options)),
      clock(rate) {}

SensorInput::SensorInput(const std::vector<Sensor>& sensors, const FrameOptions& options,
                         std::optional<double> rate, filter::monitor::Duration window)
    : window_(static_cast<std::uint64_t>(window.count())) {
  for (const Sensor& sensor : sensors) {
    streams_.push_back(std::make_unique<Stream>(sensor, options, rate));
  }
}

void SensorInput::fetch(Stream& stream) {
  while (!stream.coming) {
    stream.coming = stream.input.next();
    if (!stream.coming) {
      return;
    }
    stream.hasStamps = stream.coming->stamp.has_value();
    checkKinds(stream);
    const Stamp stamp = stream.clock.stampOf(*stream.coming);
    if (stream.last && stamp <= *stream.last) {
      ++numLate_;
      stream.coming.reset();
    } else {
      stream.coming->stamp = stamp;
      stream.last = stamp;
    }
  }
}

// Stamps from a rate and stamps of recordings cannot be compared.
void SensorInput::checkKinds(const Stream& stream) const {
  for (const auto& other : streams_) {
    if (other->hasStamps && *other->hasStamps != *stream.hasStamps) {
      const Stream& single = *stream.hasStamps ? *other : stream;
      const Stream& recorded = *stream.hasStamps ? stream : *other;
      throw Failure(stream.coming->file, "the frames of sensor \"" + printable(recorded.name) +
                                             "\" have stamps, and those of sensor \"" +
                                             printable(single.name) +
                                             "\" do not; give recordings for all sensors, or single frames");
    }
  }
}

void SensorInput::join(InputFrame& frame) {
  std::size_t size = 0;
  bool areFloats = true;
  for (const SensorFrame& sensor : frame.sensors) {
    size += sizeOf(sensor.points);
    areFloats = areFloats && std::holds_alternative<PointsView<float>>(sensor.points);
  }
  if (frame.sensors.size() == 1) {
    frame.points = frame.sensors.front().points;
  } else if (areFloats) {
    frame.points = joined(frame.sensors, size, floats_);
  } else {
    frame.points = joined(frame.sensors, size, doubles_);
  }
}

std::optional<InputFrame> SensorInput::next() {
  std::optional<Stamp> first;
  for (const auto& stream : streams_) {
    fetch(*stream);
    if (stream->coming) {
      first = std::min(first.value_or(*stream->coming->stamp), *stream->coming->stamp);
    }
  }
  if (!first) {
    return std::nullopt;
  }
  ++numFrames_;
  InputFrame frame;
  frame.stamp = first;
  for (const auto& stream : streams_) {
    if (!stream->coming || later(*stream->coming->stamp, *first) > window_) {
      ++stream->numMissed;
      continue;
    }
    const InputFrame part = *std::exchange(stream->coming, std::nullopt);
    frame.file += (frame.file.empty() ? "" : ", ") + part.file;
    frame.atOrigin =
        frame.atOrigin.value_or(0) + (part.atOrigin ? *part.atOrigin : countAtOrigin(part.points));
    add(part.dropped, frame.dropped);
    frame.sensors.push_back({stream->name, part.file, part.topic, *part.stamp, part.points});
  }
  join(frame);
  return frame;
}

std::uint64_t SensorInput::bytes() const {
  std::uint64_t sum = 0;
  for (const auto& stream : streams_) {
    sum += stream->input.bytes();
  }
  return sum;
}

std::vector<std::string> SensorInput::warnings() const {
  std::vector<std::string> warnings;
  for (const auto& stream : streams_) {
    const std::vector<std::string> own = stream->input.warnings();
    warnings.insert(warnings.end(), own.begin(), own.end());
    if (stream->numMissed > 0) {
      warnings.push_back("sensor \"" + printable(stream->name) + "\" has no frame within the window in " +
                         std::to_string(stream->numMissed) + " of " + counted(numFrames_, "frame"));
    }
  }
  return warnings;
}

bool SensorInput::isDamaged() const {
  return std::any_of(streams_.begin(), streams_.end(),
                     [](const auto& stream) { return stream->input.isDamaged(); });
}

}  // namespace orvantis::toolkit
