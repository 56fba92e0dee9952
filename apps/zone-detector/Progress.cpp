#include "Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "Console.h"
#include "recording/FrameSource.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

std::size_t terminalWidth() {
  winsize size{};
  return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

}  // namespace

void Progress::show(std::size_t done, const FrameSource& input, const std::string& what) {
  const auto now = std::chrono::steady_clock::now();
  constexpr std::chrono::milliseconds pause(50);  // nobody can see more updates
  if (!console_.progress || (done > 0 && now - last_ < pause)) {
    return;
  }
  last_ = now;
  std::string head = std::to_string(done + 1) + (total_ ? "/" + std::to_string(*total_) : "");
  const double seconds = std::chrono::duration<double>(now - begin_).count();
  if (seconds > 1.0) {
    head += ", " + toText(static_cast<double>(done) / seconds, 0) + " frames/s, " +
            toText(static_cast<double>(input.bytes()) / seconds / 1e6, 1) + " MB/s";
  }
  // One column less, because some terminals wrap after the last column.
  console_.err << "\r\033[K" << endOf(head + " ", printable(what), terminalWidth() - 1) << std::flush;
  shown_ = true;
}

void Progress::erase() {
  if (shown_) {
    console_.err << "\r\033[K" << std::flush;
    shown_ = false;
  }
}

}  // namespace orvantis::app
