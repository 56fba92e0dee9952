#include "input/Input.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <streambuf>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "files/Failure.h"
#include "input/Interrupt.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

class InputBuffer : public std::streambuf {
 public:
  explicit InputBuffer(int file) : file_(file) {}
  InputBuffer(const InputBuffer&) = delete;
  InputBuffer& operator=(const InputBuffer&) = delete;
  ~InputBuffer() override {
    if (file_ != STDIN_FILENO) {
      ::close(file_);
    }
  }

 protected:
  int_type underflow() override {
    for (;;) {
      if (!isReady()) {
        return traits_type::eof();
      }
      const ssize_t size = ::read(file_, bytes_.data(), bytes_.size());
      if (size > 0) {
        setg(bytes_.data(), bytes_.data(), bytes_.data() + size);
        return traits_type::to_int_type(bytes_[0]);
      }
      if (size == 0) {
        return traits_type::eof();
      }
      if (errno != EINTR) {
        // The stream catches it and becomes bad; errno has the reason.
        throw std::ios_base::failure("cannot be read");
      }
    }
  }

 private:
  // Waits for input. False after a signal has asked for the end.
  bool isReady() const {
    while (Interrupt::signal() == 0) {
      std::array<pollfd, 2> waits = {{{file_, POLLIN, 0}, {Interrupt::descriptor(), POLLIN, 0}}};
      if (::poll(waits.data(), waits.size(), -1) >= 0 && waits[0].revents != 0) {
        return true;
      }
    }
    return false;
  }

  int file_;
  std::array<char, 1U << 16U> bytes_{};
};

class InputStream : public std::istream {
 public:
  explicit InputStream(int file) : std::istream(nullptr), buffer_(file) { rdbuf(&buffer_); }

 private:
  InputBuffer buffer_;
};

}  // namespace

std::unique_ptr<std::istream> openInput(const std::string& path) {
  if (path == standardInput) {
    return std::make_unique<InputStream>(STDIN_FILENO);
  }
  if (std::filesystem::is_directory(path)) {
    throw Failure(path, "cannot be read: it is a folder");
  }
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) {
    throw Failure(path, "cannot be read: " + errorText(errno));
  }
  return std::make_unique<InputStream>(file);
}

std::string readInput(const std::string& path, std::size_t limit) {
  const auto in = openInput(path);
  std::string text(limit, '\0');
  in->read(text.data(), static_cast<std::streamsize>(limit));
  if (in->bad()) {
    throw Failure(path, "cannot be read: " + errorText(errno));
  }
  text.resize(static_cast<std::size_t>(in->gcount()));
  return text;
}

}  // namespace orvantis::toolkit
