#pragma once

#include <iosfwd>
#include <map>
#include <string>

#include <filter/detection/CounterLine.h>

namespace orvantis::filter::detection {

// The forms in which lines stand in log records. They look like JSON and are not meant to be: people read
// them, nothing parses them, and their exact shape is what log filters know.

std::ostream& operator<<(std::ostream& out, const CounterLine& line);
std::ostream& operator<<(std::ostream& out, const std::map<std::string, CounterLine>& lines);

}  // namespace orvantis::filter::detection
