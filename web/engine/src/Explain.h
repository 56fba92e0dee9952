#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Recording.h"
#include "document/Configuration.h"
#include "session/SessionOptions.h"

namespace orvantis::engine {

/// Why something is as it is: records for programs, and the words of the command.
struct Explanation {
  std::string records;  ///< a JSON array
  std::string text;
};

/// Every zone at the last points up to a moment; none: each zone at the frame that came nearest to occupying
/// it.
/// @throws Failure when a file cannot be read, or has no points up to then
Explanation explainZones(const std::shared_ptr<Recording>& recording,
                         const toolkit::Configuration& configuration, const toolkit::SessionOptions& options,
                         std::optional<std::size_t> moment);

/// The tracks at a line up to a moment, or one of them, sighting by sighting.
/// @throws Failure when a file cannot be read, objects are missing up to then, or the document lacks the line
Explanation explainLine(const std::shared_ptr<Recording>& recording,
                        const toolkit::Configuration& configuration, const toolkit::SessionOptions& options,
                        std::size_t moment, const std::string& line, std::optional<std::int32_t> track);

}  // namespace orvantis::engine
