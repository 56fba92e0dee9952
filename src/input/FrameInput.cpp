#include "input/FrameInput.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>

#include <sched.h>

#include "files/File.h"
#include "files/FileSource.h"
#include "recording/Decoders.h"
#include "recording/OpenRecording.h"

namespace orvantis::toolkit {
namespace {

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

FrameInput::FrameInput(std::deque<std::string> paths, FrameOptions options)
    : paths_(std::move(paths)), maker_(std::move(options)) {}

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

InputFrame FrameInput::frameOf(const std::string& path) {
  const FrameKind kind = singleFrameKindOf(path);
  spare_ = std::exchange(current_, bytesOf(path));
  readAhead();
  return maker_.frameOf(path, kind, current_);
}

std::optional<InputFrame> FrameInput::next() {
  for (;;) {
    if (maker_.isInRecording()) {
      if (auto frame = maker_.next()) {
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
      maker_.begin(path, std::make_unique<FileSource>(path), builtInDecoders());
    }
  }
}

}  // namespace orvantis::toolkit
