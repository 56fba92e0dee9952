#include <array>
#include <cstddef>
#include <memory>

#include <logging/Logger.h>
#include <logging/LoggingManager.h>

#include "logging/LogRecord.h"

namespace orvantis {

using spdlog::level::level_enum;

Logger::Logger() noexcept = default;

LogStream Logger::open(LogLevel level) const {
  static constexpr std::array levels = {level_enum::err, level_enum::warn, level_enum::debug,
                                        level_enum::trace};
  const Logger& named = channel_ != nullptr ? *this : LoggingManager::getInstance().getLogger("");
  return LogStream(std::make_unique<detail::LogRecord>(named.channel_->logger(),
                                                       levels.at(static_cast<std::size_t>(level))));
}

}  // namespace orvantis
