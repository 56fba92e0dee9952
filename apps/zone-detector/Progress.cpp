#include "Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "Console.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

std::size_t terminalWidth() {
  winsize size{};
  return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

}  // namespace

void Progress::show(std::size_t done, const std::string& what) {
  if (console_.progress) {
    const std::string total = total_ ? "/" + std::to_string(*total_) : "";
    // Some terminals wrap when the last column is written.
    const std::string line =
        endOf(std::to_string(done + 1) + total + " ", printable(what), terminalWidth() - 1);
    console_.err << "\r\033[K" << line << std::flush;
    shown_ = true;
  }
}

void Progress::erase() {
  if (shown_) {
    console_.err << "\r\033[K" << std::flush;
    shown_ = false;
  }
}

}  // namespace orvantis::app
