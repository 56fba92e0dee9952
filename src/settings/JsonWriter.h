#pragma once

#include <string>

#include <boost/property_tree/ptree.hpp>

#include "settings/JsonNotation.h"

namespace orvantis::json {

/// Writes the tree as JSON into `text`.
/// @return false when a node holds both a value and children, or is nested too deep to be read again
bool write(const boost::property_tree::ptree& root, const NotationMap& notation, std::string& text);

}  // namespace orvantis::json
