#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <logging/LogLevel.h>
#include <logging/Logger.h>

namespace orvantis::testing {

/// One record as a sink received it.
struct Record {
  LogLevel level;
  std::string logger;
  std::string text;

  friend bool operator==(const Record&, const Record&) = default;
};

std::ostream& operator<<(std::ostream& out, const Record& record);

/// Collects every record that is logged while it lives, at the given level; then restores the level.
class LogCapture {
 public:
  explicit LogCapture(LogLevel level = LogLevel::Trace);
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  ~LogCapture();

  std::vector<Record> records() const;
  /// The texts of the records of one level, in order.
  std::vector<std::string> texts(LogLevel level) const;
  void clear();

 private:
  class Sink;
  std::shared_ptr<Sink> sink_;
  LogLevel previousLevel_;
};

/// Under which name a logger writes.
std::string nameOf(const Logger& logger);

}  // namespace orvantis::testing
