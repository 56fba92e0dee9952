#pragma once

namespace orvantis::app {

/// While it lives, the first SIGINT or SIGTERM does not end the program: what runs is to ask and to end its
/// work in good order. The second one ends the program at once. One at a time.
class Interrupt {
 public:
  Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;
  ~Interrupt();

  /// The signal that came; 0: none.
  static int signal();

  /// What the program ends with: 0, or 128 and the signal, as a shell has it.
  static int exitCode() { return signal() == 0 ? 0 : 128 + signal(); }

  /// Can be read from as soon as a signal came, for poll(2); -1 while there is no Interrupt.
  static int descriptor();
};

}  // namespace orvantis::app
