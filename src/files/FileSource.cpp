#include "files/FileSource.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "files/Failure.h"
#include "files/File.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

// How many more bytes are read than asked for, so that the head of a record is read with the record before
// it.
constexpr std::uint64_t ahead = 4096;

}  // namespace

FileSource::FileSource(const std::string& path) : path_(path), size_(fileSize(path)) {
  file_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);  // NOLINT(*-vararg): the system's own
  if (file_ < 0) {
    throw Failure(path, "cannot be read: " + errorText(errno));
  }
}

FileSource::~FileSource() {
  ::close(file_);
}

std::span<const std::byte> FileSource::bytes(std::uint64_t offset, std::uint64_t count) {
  const std::uint64_t wanted = std::min(count, size_ - std::min(size_, offset));
  if (offset < begin_ || offset + wanted > begin_ + held_) {
    fill(offset, static_cast<std::size_t>(std::min(wanted + ahead, size_ - std::min(size_, offset))));
  }
  const std::size_t there = held_ - static_cast<std::size_t>(std::min<std::uint64_t>(offset - begin_, held_));
  return std::span<const std::byte>(buffer_).subspan(
      held_ - there, std::min<std::size_t>(static_cast<std::size_t>(wanted), there));
}

void FileSource::fill(std::uint64_t offset, std::size_t count) {
  if (buffer_.size() < count) {
    buffer_.clear();  // so that its old content is not copied
    buffer_.resize(count + count / 8);
  }
  begin_ = offset;
  held_ = 0;
  while (held_ < count) {
    const ssize_t got =
        ::pread(file_, buffer_.data() + held_, count - held_, static_cast<off_t>(offset + held_));
    if (got < 0 && errno != EINTR) {
      held_ = 0;
      throw Failure(path_, "cannot be read: " + errorText(errno));
    }
    if (got == 0) {
      return;
    }
    held_ += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
  }
}

}  // namespace orvantis::toolkit
