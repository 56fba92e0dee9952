#pragma once

#include <unistd.h>

#include "Bindings.h"

namespace orvantis::python {

/// What Python does to a daemon thread that wants its lock when the interpreter has ended is to unwind the
/// thread's stack. Here that stack holds objects of Python's, which nobody may touch any more: so the thread
/// stands still, and ends with the process.
[[noreturn]] inline void standStill() {
  for (;;) {
    pause();
  }
}

/// While it lives, this thread goes on without the interpreter's lock.
class Unlocked {
 public:
  Unlocked() : state_(PyEval_SaveThread()) {}
  ~Unlocked() {
    try {
      PyEval_RestoreThread(state_);
    } catch (...) {  // of the unwinding; it throws nothing else
      standStill();
    }
  }
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;

 private:
  PyThreadState* state_;
};

}  // namespace orvantis::python
