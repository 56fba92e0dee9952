#include <logging/LoggedComponent.h>

namespace orvantis {

LoggedComponent::~LoggedComponent() = default;

void LoggedComponent::setLogger(const Logger& logger) {
  logger_ = logger;
}

const Logger& LoggedComponent::getLogger() const {
  return logger_;
}

}  // namespace orvantis
