#include "InputConsole.h"

#include "Console.h"
#include "input/Interrupt.h"

namespace orvantis::app {

OpeningWarnings warningsTo(const Console& console) {
  return {[&console](const std::string& text) {
            if (!console.quiet) {
              console.err << text << '\n';
            }
          },
          [&console](const std::string& text) { console.warn(text); }};
}

int exitCodeOf(const FrameSource& input) {
  constexpr int cutRecording = 4;
  if (Interrupt::signal() != 0) {
    return Interrupt::exitCode();
  }
  return input.isDamaged() ? cutRecording : 0;
}

}  // namespace orvantis::app
