#include <atomic>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include <spdlog/sinks/dist_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <logging/LoggingManager.h>

#include "logging/LogRecord.h"

namespace orvantis {

std::atomic<LogLevel> detail::currentLogLevel = LogLevel::Warning;

struct LoggingManager::Registry {
  struct Entry {
    detail::LogChannel channel;
    Logger logger;
  };

  const spdlog::sink_ptr defaultSink = std::make_shared<spdlog::sinks::stderr_sink_mt>();
  // The sinks that all loggers share. This sink of sinks also locks them.
  std::shared_ptr<spdlog::sinks::dist_sink_mt> sinks =
      std::make_shared<spdlog::sinks::dist_sink_mt>(std::vector<spdlog::sink_ptr>{defaultSink});
  std::mutex mutex;
  std::map<std::string, std::unique_ptr<Entry>> entries;
  // Guards only the flag below. `mutex` cannot do that: a sink may ask for a logger, which locks `mutex`
  // inside the lock of the sinks, so locking them in the other order could deadlock.
  std::mutex defaultSinkMutex;
  bool hasDefaultSink = true;
};

LoggingManager& LoggingManager::getInstance() {
  // Never destroyed: objects of static storage may log while the process ends.
  static auto* const instance = new LoggingManager;
  return *instance;
}

LoggingManager::LoggingManager() : registry_(std::make_unique<Registry>()) {}

LoggingManager::~LoggingManager() = default;

Logger& LoggingManager::getLogger(const std::string& name) {
  const std::lock_guard lock(registry_->mutex);
  std::unique_ptr<Registry::Entry>& entry = registry_->entries[name];
  if (!entry) {
    auto logger = std::make_shared<spdlog::logger>(name, registry_->sinks);
    logger->set_level(spdlog::level::trace);  // the manager's level decides, before a record is made
    entry = std::make_unique<Registry::Entry>(
        Registry::Entry{detail::LogChannel(std::move(logger)), Logger(nullptr)});
    entry->logger = Logger(&entry->channel);
  }
  return entry->logger;
}

void LoggingManager::setLevel(LogLevel level) noexcept {
  detail::currentLogLevel.store(level, std::memory_order_relaxed);
}

LogLevel LoggingManager::getLevel() const noexcept {
  return detail::currentLogLevel.load(std::memory_order_relaxed);
}

void LoggingManager::addSink(std::shared_ptr<spdlog::sinks::sink> sink) {
  if (sink) {
    registry_->sinks->add_sink(std::move(sink));
  }
}

void LoggingManager::removeSink(const std::shared_ptr<spdlog::sinks::sink>& sink) {
  registry_->sinks->remove_sink(sink);
}

void LoggingManager::removeDefaultSink() {
  const std::lock_guard lock(registry_->defaultSinkMutex);
  registry_->sinks->remove_sink(registry_->defaultSink);
  registry_->hasDefaultSink = false;
}

void LoggingManager::addDefaultSink() {
  const std::lock_guard lock(registry_->defaultSinkMutex);
  if (!registry_->hasDefaultSink) {
    registry_->sinks->add_sink(registry_->defaultSink);
    registry_->hasDefaultSink = true;
  }
}

}  // namespace orvantis
