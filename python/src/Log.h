#pragma once

#include "Bindings.h"
#include "Unlocked.h"

namespace orvantis::python {

/// Around a call into the library: what the library logs meanwhile on this thread is kept, and handed to
/// Python's `logging` when the call is over. Never before: the library calls its sinks under a lock, and a
/// sink that waited for the interpreter while its holder waited to log would hang for good.
///
/// Made and destroyed while the interpreter's lock is held; in between it may be released.
class LogScope {
 public:
  LogScope();
  ~LogScope();
  LogScope(const LogScope&) = delete;
  LogScope& operator=(const LogScope&) = delete;

 private:
  bool isOuter_;
};

/// For calls that take long: other Python threads go on meanwhile.
using Released = py::call_guard<LogScope, Unlocked>;
using Logged = py::call_guard<LogScope>;

}  // namespace orvantis::python
