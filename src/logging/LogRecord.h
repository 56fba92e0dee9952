#pragma once

#include <locale>
#include <memory>
#include <sstream>
#include <utility>

#include <spdlog/logger.h>

namespace orvantis::detail {

/// A name and the sinks behind it. Lives as long as the process.
class LogChannel {
 public:
  explicit LogChannel(std::shared_ptr<spdlog::logger> logger) : logger_(std::move(logger)) {}

  spdlog::logger& logger() const { return *logger_; }

 private:
  std::shared_ptr<spdlog::logger> logger_;
};

/// The text of a record while it is being written.
class LogRecord {
 public:
  LogRecord(spdlog::logger& logger, spdlog::level::level_enum level) : logger_(logger), level_(level) {
    text_.imbue(std::locale::classic());
  }

  std::ostream& stream() { return text_; }
  void emit() { logger_.log(level_, text_.str()); }

 private:
  spdlog::logger& logger_;
  spdlog::level::level_enum level_;
  std::ostringstream text_;
};

}  // namespace orvantis::detail
