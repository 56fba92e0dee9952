// The log of a page: nobody reads one, so every stream is off, whatever its level.

#include <atomic>
#include <memory>

#include <logging/LogStream.h>
#include <logging/LoggedComponent.h>
#include <logging/Logger.h>
#include <logging/LoggingManager.h>

namespace orvantis {

namespace detail {

class LogRecord {};

std::atomic<LogLevel> currentLogLevel = LogLevel::Error;

}  // namespace detail

LogStream::LogStream(std::unique_ptr<detail::LogRecord>) noexcept {}

void LogStream::emit() noexcept {}

LoggedComponent::~LoggedComponent() = default;

void LoggedComponent::setLogger(const Logger& logger) {
  logger_ = logger;
}

const Logger& LoggedComponent::getLogger() const {
  return logger_;
}

Logger::Logger() noexcept = default;

LogStream Logger::open(LogLevel) const {
  return LogStream();
}

struct LoggingManager::Registry {
  Logger logger;
};

LoggingManager& LoggingManager::getInstance() {
  static auto* const instance = new LoggingManager;
  return *instance;
}

LoggingManager::LoggingManager() : registry_(std::make_unique<Registry>()) {}

LoggingManager::~LoggingManager() = default;

Logger& LoggingManager::getLogger(const std::string&) {
  return registry_->logger;
}

}  // namespace orvantis
