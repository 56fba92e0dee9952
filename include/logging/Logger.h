#pragma once

#include <atomic>

#include <logging/LogLevel.h>
#include <logging/LogStream.h>
#include <orvantis/Api.h>

namespace orvantis {

namespace detail {
class LogChannel;

/// The level that LoggingManager sets. Read before every record, so it costs one load and no call.
ORVANTIS_API extern std::atomic<LogLevel> currentLogLevel;
}  // namespace detail

/// Writes records under one name. A small value: copies write under the same name, and copying throws
/// nothing. Safe to use from many threads.
class ORVANTIS_API Logger {
 public:
  /// A logger without a name; it writes to the same sinks as the named ones.
  Logger() noexcept;

  // Each opens one record, or gives a stream that is off when the level is off. They throw nothing when the
  // level is off, else what LoggingManager::getLogger throws.

  LogStream errorStream() const { return openIfOn(LogLevel::Error); }
  LogStream warnStream() const { return openIfOn(LogLevel::Warning); }
  LogStream debugStream() const { return openIfOn(LogLevel::Debug); }
  LogStream traceStream() const { return openIfOn(LogLevel::Trace); }

 private:
  friend class LoggingManager;
  explicit Logger(const detail::LogChannel* channel) noexcept : channel_(channel) {}

  LogStream openIfOn(LogLevel level) const {
    return level <= detail::currentLogLevel.load(std::memory_order_relaxed) ? open(level) : LogStream();
  }
  LogStream open(LogLevel level) const;

  const detail::LogChannel* channel_ = nullptr;  // lives as long as the process; null writes without a name
};

}  // namespace orvantis
