#pragma once

#include <iosfwd>
#include <map>
#include <string>

#include <filter/detection/CounterLine.h>

namespace orvantis::filter::detection {

// How log records write lines. It looks like JSON but is not JSON. Log filters depend on the exact text, so
// it must stay as it is.

std::ostream& operator<<(std::ostream& out, const CounterLine& line);
std::ostream& operator<<(std::ostream& out, const std::map<std::string, CounterLine>& lines);

}  // namespace orvantis::filter::detection
