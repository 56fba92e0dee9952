#pragma once

#include <optional>
#include <string>
#include <vector>

#include "recording/RecordingContents.h"

namespace orvantis::toolkit {

/// Why these topics of a recording cannot be read; nothing when they can. An empty choice is valid if exactly
/// one topic has point clouds.
std::optional<std::string> faultOfChoice(const TopicNames& chosen, const std::vector<TopicContents>& topics);

}  // namespace orvantis::toolkit
