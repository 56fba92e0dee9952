#include "input/ListInput.h"

#include <filesystem>

#include "files/Failure.h"
#include "input/Input.h"

namespace orvantis::toolkit {

ListInput::ListInput(const std::string& path, const FrameOptions& options) : files_({}, options) {
  list_.emplace(openInput(path), path);
  if (path == standardInput) {
    return;
  }
  // Paths are relative to the list, so that a recording can be moved together with it.
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  while (const auto frame = list_->next()) {
    stamps_.push_back(frame->stamp);
    files_.add((folder / frame->path).string());
  }
  list_.reset();
  if (stamps_.empty()) {
    throw Failure(path, "lists no frames");
  }
}

std::optional<std::size_t> ListInput::frameCount() const {
  return list_ ? std::nullopt : std::optional(stamps_.size());
}

std::optional<InputFrame> ListInput::next() {
  if (list_ && stamps_.empty()) {
    if (const auto listed = list_->next()) {
      files_.add(listed->path);
      stamps_.push_back(listed->stamp);
    } else {
      list_.reset();
    }
  }
  auto frame = files_.next();
  if (frame) {
    giveStamp(*frame, stamps_.front());
    stamps_.pop_front();
  }
  return frame;
}

}  // namespace orvantis::toolkit
