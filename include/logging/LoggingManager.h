#pragma once

#include <memory>
#include <string>

#include <logging/LogLevel.h>
#include <logging/Logger.h>
#include <orvantis/Api.h>

namespace spdlog::sinks {
class sink;
}

namespace orvantis {

/// The process-wide owner of loggers, level and sinks. Every operation is safe to call from many threads. An
/// operation that is not noexcept throws std::bad_alloc, std::system_error when a mutex cannot be locked, and
/// nothing else.
class ORVANTIS_API LoggingManager {
 public:
  /// The one manager. It is never destroyed, so loggers may be used until the process ends.
  static LoggingManager& getInstance();

  LoggingManager(const LoggingManager&) = delete;
  LoggingManager& operator=(const LoggingManager&) = delete;

  /// The logger of that name, made on the first request. The reference stays valid for the life of the
  /// process.
  Logger& getLogger(const std::string& name);

  /// Sets the level of every logger at once, existing ones too. The default is LogLevel::Warning.
  void setLevel(LogLevel level) noexcept;
  LogLevel getLevel() const noexcept;

  /// Adds a sink beside the default one, which writes to stderr. Shared ownership; the sink is called under a
  /// lock, one record at a time, so it must not log itself. Null is ignored.
  void addSink(std::shared_ptr<spdlog::sinks::sink> sink);
  /// Removes a sink that was added before; an unknown sink is ignored. No record reaches it after that.
  void removeSink(const std::shared_ptr<spdlog::sinks::sink>& sink);

  /// Removes the default sink, for a host whose standard error is not the place for records: the sinks that
  /// it adds, if any, are then the only ones. Does nothing when it is removed already.
  void removeDefaultSink();
  /// Puts the default sink back. Does nothing when it is there.
  void addDefaultSink();

 private:
  LoggingManager();
  ~LoggingManager();

  struct Registry;
  std::unique_ptr<Registry> registry_;
};

}  // namespace orvantis
