#include "support/LogCapture.h"

#include <mutex>

#include <spdlog/sinks/base_sink.h>

#include <logging/LoggingManager.h>

namespace orvantis::testing {
namespace {

LogLevel toLevel(spdlog::level::level_enum level) {
  switch (level) {
    case spdlog::level::err:
      return LogLevel::Error;
    case spdlog::level::warn:
      return LogLevel::Warning;
    case spdlog::level::debug:
      return LogLevel::Debug;
    default:
      return LogLevel::Trace;
  }
}

}  // namespace

class LogCapture::Sink : public spdlog::sinks::base_sink<std::mutex> {
 public:
  std::vector<Record> records() {
    const std::lock_guard lock(mutex_);
    return records_;
  }
  void clear() {
    const std::lock_guard lock(mutex_);
    records_.clear();
  }

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    records_.push_back({toLevel(message.level),
                        std::string(message.logger_name.begin(), message.logger_name.end()),
                        std::string(message.payload.begin(), message.payload.end())});
  }
  void flush_() override {}

 private:
  std::vector<Record> records_;
};

std::ostream& operator<<(std::ostream& out, const Record& record) {
  static const char* const names[] = {"error", "warning", "debug", "trace"};
  return out << names[static_cast<int>(record.level)] << " [" << record.logger << "] " << record.text;
}

LogCapture::LogCapture(LogLevel level)
    : sink_(std::make_shared<Sink>()), previousLevel_(LoggingManager::getInstance().getLevel()) {
  LoggingManager::getInstance().addSink(sink_);
  LoggingManager::getInstance().setLevel(level);
}

LogCapture::~LogCapture() {
  LoggingManager::getInstance().setLevel(previousLevel_);
  LoggingManager::getInstance().removeSink(sink_);
}

std::vector<Record> LogCapture::records() const {
  return sink_->records();
}

std::vector<std::string> LogCapture::texts(LogLevel level) const {
  std::vector<std::string> texts;
  for (const Record& record : sink_->records()) {
    if (record.level == level) {
      texts.push_back(record.text);
    }
  }
  return texts;
}

void LogCapture::clear() {
  sink_->clear();
}

std::string nameOf(const Logger& logger) {
  const LogCapture log;
  logger.errorStream().write("who writes?");
  return log.records().empty() ? "nobody" : log.records().front().logger;
}

}  // namespace orvantis::testing
