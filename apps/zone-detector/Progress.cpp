#include "Progress.h"

#include "Console.h"
#include "text/Text.h"

namespace orvantis::app {

void Progress::show(std::size_t done, const std::string& what) {
  if (console_.progress) {
    console_.err << "\r\033[K" << done + 1 << '/' << total_ << ' ' << printable(what) << std::flush;
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
