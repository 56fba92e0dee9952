#include "FrameInput.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

#include <sched.h>

#include "Console.h"
#include "files/File.h"
#include "recording/OpenRecording.h"
#include "recording/ReadError.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

Failure failureOf(const std::string& path, const ReadError& error) {
  const Place& place = error.place();
  const std::string reason = printable(error.what());
  if (place.line != 0) {
    return {path, place.line, place.column, "cannot be read: " + reason};
  }
  // A fault at byte 0 concerns the whole file, so the byte is not named.
  const std::string where = place.byte == 0 ? "" : "byte " + std::to_string(place.byte) + ": ";
  return {path, "cannot be read: " + where + reason};
}

// Adds the file's name to what is thrown while it is read.
template <typename Read>
auto named(const std::string& path, Read read) {
  try {
    return read();
  } catch (const ReadError& error) {
    throw failureOf(path, error);
  } catch (const std::bad_alloc&) {
    throw Failure(path, "cannot be read: not enough memory");
  }
}

// Whether two threads of this process can run at once. The standard library counts the processors of the
// machine, whichever of them the process may use.
bool hasSecondProcessor() {
  cpu_set_t mine;
  CPU_ZERO(&mine);
  return ::sched_getaffinity(0, sizeof(mine), &mine) == 0 ? CPU_COUNT(&mine) > 1
                                                          : std::thread::hardware_concurrency() > 1;
}

}  // namespace

bool isRecordingFile(const std::string& path) {
  FileSource source(path);
  return isRecording(source.bytes(0, 16));
}

FrameInput::OpenRecording::OpenRecording(const std::string& file, const FrameOptions& options)
    : path(file), source(file), reader(source, {options.topics, options.stampFrom, builtInDecoders()}) {}

FrameInput::FrameInput(std::deque<std::string> paths, FrameOptions options)
    : paths_(std::move(paths)), options_(std::move(options)), filter_(options_.limits) {}

std::optional<std::size_t> FrameInput::frameCount() const {
  const bool areSingle = std::all_of(paths_.begin(), paths_.end(),
                                     [](const std::string& path) { return frameKindOf(path).has_value(); });
  return areSingle ? std::optional(paths_.size()) : std::nullopt;
}

FrameInput::Bytes FrameInput::bytesOf(const std::string& path) {
  if (coming_.valid()) {
    const bool isIt = comingPath_ == path;
    Bytes bytes = coming_.get();
    if (isIt) {
      return bytes;
    }
  }
  // Into the same memory as before: it is in the caches of the processor.
  return readBytes(path, std::move(current_));
}

// Reads the next file while this one is used, on a second processor.
void FrameInput::readAhead() {
  if (paths_.empty() || !hasSecondProcessor() || !frameKindOf(paths_.front())) {
    return;
  }
  comingPath_ = paths_.front();
  coming_ = std::async(std::launch::async, [path = comingPath_, room = std::move(spare_)]() mutable {
    return readBytes(path, std::move(room));
  });
}

Points FrameInput::placed(Points points, InputFrame& frame) {
  if (!options_.limits.dropsNothing()) {
    points = filter_.keep(points, frame.dropped);
  }
  if (!options_.pose) {
    return points;
  }
  frame.atOrigin = countAtOrigin(points);
  return mover_.move(points, *options_.pose);
}

InputFrame FrameInput::frameOf(const std::string& path) {
  const auto kind = frameKindOf(path);
  if (!kind) {
    throw Failure(path,
                  "cannot be read: unknown kind of file; frames are .pcd, .ply, .las, .bin, .xyz, .txt, .csv "
                  "and .pts, recordings MCAP files and ROS bags");
  }
  spare_ = std::exchange(current_, bytesOf(path));
  bytes_ += current_.size();
  readAhead();
  InputFrame frame;
  frame.file = path;
  Frame read = named(path, [&] { return reader_.read(current_, *kind, options_.columns); });
  frame.columns = std::move(read.columns);
  frame.points = placed(read.points, frame);
  return frame;
}

void FrameInput::finish(const OpenRecording& recording) {
  bytes_ += recording.source.size().value_or(0);
  if (const auto& damage = recording.reader.damage()) {
    isDamaged_ = true;
    warnings_.push_back(recording.path + ": byte " + std::to_string(damage->byte) + ": " +
                        printable(damage->reason) + "; what comes before it was read");
  }
  const StampsBack& back = recording.reader.stampsBack();
  if (back.count > 0) {
    warnings_.push_back(recording.path + ": stamps go back " + counted(back.count, "time") + ", by at most " +
                        toText(back.most) + " s");
  }
}

std::optional<InputFrame> FrameInput::nextOfRecording() {
  const auto cloud = named(recording_->path, [this] { return recording_->reader.next(); });
  if (!cloud) {
    finish(*recording_);
    recording_.reset();
    return std::nullopt;
  }
  InputFrame frame;
  frame.file = recording_->path;
  frame.topic = cloud->topic;
  frame.stamp = cloud->stamp;
  frame.columns.assign(cloud->columns.begin(), cloud->columns.end());
  frame.points = placed(cloud->points, frame);
  return frame;
}

std::optional<InputFrame> FrameInput::next() {
  for (;;) {
    if (recording_) {
      if (auto frame = nextOfRecording()) {
        return frame;
      }
    } else if (paths_.empty()) {
      return std::nullopt;
    } else {
      const std::string path = std::move(paths_.front());
      paths_.pop_front();
      const bool isComing = coming_.valid() && comingPath_ == path;
      if (isComing || !isRecordingFile(path)) {
        return frameOf(path);
      }
      recording_ = named(path, [&] { return std::make_unique<OpenRecording>(path, options_); });
    }
  }
}

}  // namespace orvantis::app
