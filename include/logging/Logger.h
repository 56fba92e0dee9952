#pragma once

#include <logging/LogLevel.h>
#include <logging/LogStream.h>
#include <orvantis/Api.h>

namespace orvantis {

namespace detail {
class LogChannel;
}

/// Writes records under one name. A small value: copies write under the same name. Safe to use from many
/// threads.
class ORVANTIS_API Logger {
 public:
  /// A logger without a name; it writes to the same sinks as the named ones.
  Logger() noexcept;

  LogStream errorStream() const;
  LogStream warnStream() const;
  LogStream debugStream() const;
  LogStream traceStream() const;

 private:
  friend class LoggingManager;
  explicit Logger(const detail::LogChannel* channel) noexcept : channel_(channel) {}

  LogStream open(LogLevel level) const;

  const detail::LogChannel* channel_ = nullptr;  // lives as long as the process; null writes without a name
};

}  // namespace orvantis
