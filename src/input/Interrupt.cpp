#include "input/Interrupt.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace orvantis::toolkit {
namespace {

volatile std::sig_atomic_t received = 0;
std::array<int, 2> wakePipe = {-1, -1};
struct sigaction previousInterrupt {};
struct sigaction previousTerminate {};

// Writes to a pipe as well: with a flag only, a signal just before a blocking read would be missed.
void note(int number) {
  const int error = errno;
  received = number;
  [[maybe_unused]] const auto written = ::write(wakePipe[1], "", 1);
  errno = error;
}

void install(int number, struct sigaction& previous) {
  struct sigaction action {};
  action.sa_handler = note;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  ::sigaction(number, &action, &previous);
}

}  // namespace

Interrupt::Interrupt() {
  received = 0;
  if (::pipe2(wakePipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    wakePipe = {-1, -1};
  }
  install(SIGINT, previousInterrupt);
  install(SIGTERM, previousTerminate);
}

Interrupt::~Interrupt() {
  ::sigaction(SIGINT, &previousInterrupt, nullptr);
  ::sigaction(SIGTERM, &previousTerminate, nullptr);
  for (int& end : wakePipe) {
    ::close(end);
    end = -1;
  }
}

int Interrupt::signal() {
  return received;
}

int Interrupt::descriptor() {
  return wakePipe[0];
}

}  // namespace orvantis::toolkit
