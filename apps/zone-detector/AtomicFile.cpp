#include "AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Console.h"

namespace orvantis::app {
namespace {

[[noreturn]] void fail(const std::string& path) {
  throw Failure(path + ": cannot be written: " + std::strerror(errno));
}

bool writeAll(int file, const std::string& content) {
  std::size_t done = 0;
  while (done < content.size()) {
    const ssize_t written = ::write(file, content.data() + done, content.size() - done);
    if (written < 0 && errno != EINTR) {
      return false;
    }
    done += written > 0 ? static_cast<std::size_t>(written) : 0;
  }
  return true;
}

void writeDirectly(const std::string& path, const std::string& content) {
  const int file = ::open(path.c_str(), O_WRONLY);
  if (file < 0) {
    fail(path);
  }
  const bool written = writeAll(file, content);
  const int reason = errno;
  const bool closed = ::close(file) == 0;
  if (!written) {
    errno = reason;
  }
  if (!written || !closed) {
    fail(path);
  }
}

// The mode and, through a link, the place of the file that is replaced.
struct Target {
  std::string path;
  mode_t mode;
};

Target resolve(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  struct stat status {};
  if (error || ::stat(real.c_str(), &status) != 0) {
    return {path, 0666};  // new; less what the user's mask takes
  }
  return {real.string(), status.st_mode & 0777U};
}

}  // namespace

void writeWhole(const std::string& path, const std::string& content) {
  std::error_code error;
  const auto type = std::filesystem::status(path, error).type();
  if (type != std::filesystem::file_type::not_found && type != std::filesystem::file_type::regular &&
      type != std::filesystem::file_type::directory) {
    writeDirectly(path, content);
    return;
  }
  const Target target = resolve(path);
  const std::string part = target.path + ".part" + std::to_string(::getpid());
  const int file = ::open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL, target.mode);
  if (file < 0) {
    fail(path);
  }
  bool good = writeAll(file, content) && ::fsync(file) == 0;
  int reason = errno;
  if (::close(file) != 0 && good) {
    good = false;
    reason = errno;
  }
  if (good && std::rename(part.c_str(), target.path.c_str()) != 0) {
    good = false;
    reason = errno;
  }
  if (!good) {
    ::unlink(part.c_str());
    errno = reason;
    fail(path);
  }
}

}  // namespace orvantis::app
