#pragma once

namespace orvantis {

/// From the least to the most verbose. A record is written when its level is not more verbose than the level
/// set with LoggingManager::setLevel.
enum class LogLevel { Error, Warning, Debug, Trace };

}  // namespace orvantis
