#pragma once

#include <string>
#include <vector>

#include <boost/json/object.hpp>

#include "session/Session.h"

namespace orvantis::toolkit {

/// "left" or "right".
const char* sideName(filter::detection::CounterLineDirectionType side);

/// The event as a line for people, without the end of the line.
std::string toLine(filter::monitor::Stamp stamp, const Event& event);

/// The event with the keys that docs/command.md describes.
boost::json::object toObject(filter::monitor::Stamp stamp, const Event& event);

/// The columns of an event in tables, and the event in them.
const std::vector<std::string>& eventColumns();
std::vector<std::string> toCells(filter::monitor::Stamp stamp, const Event& event);

}  // namespace orvantis::toolkit
