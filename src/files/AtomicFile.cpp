#include "files/AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/Failure.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

// Large enough that the system is called rarely.
constexpr std::size_t bufferSize = 1U << 16U;

bool isReplaceable(const std::string& path) {
  std::error_code error;
  const auto type = std::filesystem::status(path, error).type();
  return type == std::filesystem::file_type::not_found || type == std::filesystem::file_type::regular ||
         type ==
             std::filesystem::file_type::directory;  // the system then says why a folder cannot be replaced
}

// The file that is replaced, behind links, and its mode.
struct Target {
  std::string path;
  mode_t mode;
};

Target resolve(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  struct stat status {};
  if (error || ::stat(real.c_str(), &status) != 0) {
    return {path, 0666};  // a new file; the user's mask takes bits away
  }
  return {real.string(), status.st_mode & 0777U};
}

}  // namespace

AtomicFile::AtomicFile(const std::string& path) : path_(path) {
  if (isReplaceable(path)) {
    const Target target = resolve(path);
    target_ = target.path;
    part_ = target_ + ".part" + std::to_string(::getpid());
    file_ = ::open(part_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, target.mode);
  } else {
    file_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  }
  if (file_ < 0) {
    fail(errno);
  }
}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : path_(std::move(other.path_)),
      target_(std::move(other.target_)),
      part_(std::move(other.part_)),
      buffer_(std::move(other.buffer_)),
      file_(std::exchange(other.file_, -1)) {}

AtomicFile::~AtomicFile() {
  if (file_ < 0) {
    return;
  }
  ::close(file_);
  if (!isDirect()) {
    ::unlink(part_.c_str());
  }
}

void AtomicFile::fail(int reason) const {
  throw Failure(path_, "cannot be written: " + errorText(reason));
}

void AtomicFile::write() {
  std::size_t done = 0;
  while (done < buffer_.size()) {
    const ssize_t written = ::write(file_, buffer_.data() + done, buffer_.size() - done);
    if (written < 0 && errno != EINTR) {
      fail(errno);
    }
    done += written > 0 ? static_cast<std::size_t>(written) : 0;
  }
  buffer_.clear();
}

void AtomicFile::append(std::string_view text) {
  buffer_ += text;
  if (buffer_.size() >= bufferSize) {
    write();
  }
}

void AtomicFile::commit() {
  write();
  // fsync fails for some devices, which have no disk.
  if (!isDirect() && ::fsync(file_) != 0) {
    fail(errno);
  }
  const bool isClosed = ::close(std::exchange(file_, -1)) == 0;
  const bool isThere = isClosed && (isDirect() || std::rename(part_.c_str(), target_.c_str()) == 0);
  if (!isThere) {
    const int reason = errno;
    if (!isDirect()) {
      ::unlink(part_.c_str());
    }
    fail(reason);
  }
}

void writeWhole(const std::string& path, const std::string& content) {
  AtomicFile file(path);
  file.append(content);
  file.commit();
}

}  // namespace orvantis::toolkit
