#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <filter/detection/Point.h>

#include "document/LocatedJson.h"

namespace orvantis::toolkit {

// What the library would read from a value; nothing when it cannot read it, or when there is no such value.

/// A finite number.
std::optional<double> numberOf(const LocatedNode& node);
std::optional<int> wholeNumberOf(const LocatedNode& node);
std::optional<bool> truthOf(const LocatedNode& node);

/// The value of the first key of that name.
std::optional<double> numberUnder(const LocatedNode& object, std::string_view key);
std::optional<int> wholeNumberUnder(const LocatedNode& object, std::string_view key);
/// The text, in lower case.
std::optional<std::string> wordUnder(const LocatedNode& object, std::string_view key);

std::optional<filter::detection::Point> pointOf(const LocatedNode& node);

/// A point as a text.
std::string coordinates(const filter::detection::Point& point);

}  // namespace orvantis::toolkit
