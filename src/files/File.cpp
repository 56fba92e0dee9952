#include "files/File.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "files/Failure.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw Failure(path, "cannot be read: " + reason);
}

// Memory that the system does not have is only missed when it is used, and then a process is ended, not told.
bool fitsIntoMemory(std::size_t size) {
  const auto pages = static_cast<std::uint64_t>(::sysconf(_SC_PHYS_PAGES));
  return size / static_cast<std::uint64_t>(::sysconf(_SC_PAGE_SIZE)) < pages;
}

void makeRoom(std::vector<std::byte>& room, std::size_t size, const std::string& path) {
  const auto refuse = [&] { fail(path, "not enough memory for its " + std::to_string(size) + " bytes"); };
  if (!fitsIntoMemory(size)) {
    refuse();
  }
  try {
    room.resize(size);
  } catch (const std::bad_alloc&) {
    refuse();
  }
}

}  // namespace

std::vector<std::byte> readBytes(const std::string& path, std::vector<std::byte> room) {
  const std::size_t size = fileSize(path);
  makeRoom(room, size, path);
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) {
    fail(path, errorText(errno));
  }
  std::size_t done = 0;
  int reason = 0;
  while (done < size) {
    const ssize_t count = ::read(file, room.data() + done, size - done);
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      reason = count == 0 ? 0 : errno;
      break;
    }
  }
  ::close(file);
  if (reason != 0) {
    fail(path, errorText(reason));
  }
  if (done < size) {
    fail(path, "it ended after " + std::to_string(done) + " of its " + std::to_string(size) + " bytes");
  }
  return room;
}

std::size_t fileSize(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found || error) {
    fail(path, error ? error.message() : errorText(ENOENT));
  }
  if (!std::filesystem::is_regular_file(status)) {
    fail(path, std::filesystem::is_directory(status) ? "it is a folder" : "it is not a regular file");
  }
  if (::access(path.c_str(), R_OK) != 0) {
    fail(path, errorText(errno));
  }
  return std::filesystem::file_size(path);
}

}  // namespace orvantis::toolkit
