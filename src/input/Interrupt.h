#pragma once

namespace orvantis::toolkit {

/// While an Interrupt exists, the first SIGINT or SIGTERM does not end the program. The code that runs asks
/// for the signal and ends its work in good order. A second signal ends the program at once. Only one
/// Interrupt may exist.
class Interrupt {
 public:
  Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;
  ~Interrupt();

  /// The signal that came; 0 for none.
  static int signal();

  /// The exit code of the program: 0, or 128 plus the signal, as in a shell.
  static int exitCode() { return signal() == 0 ? 0 : 128 + signal(); }

  /// A descriptor for poll(2) that becomes readable when a signal comes; -1 while there is no Interrupt.
  static int descriptor();
};

}  // namespace orvantis::toolkit
