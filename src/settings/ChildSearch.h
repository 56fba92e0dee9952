#pragma once

#include <cstddef>
#include <string>

#include <boost/property_tree/ptree.hpp>

namespace orvantis::json {

// The children of one name in document order, searched again on each call. property_tree's own search by name
// gives them in the order of their insertion, which differs after an insertion in front or a sort.

std::size_t countNamed(const boost::property_tree::ptree& node, const std::string& name);

/// Child number `position` (from 0) of that name, or null.
boost::property_tree::ptree* findNamed(boost::property_tree::ptree& node, const std::string& name,
                                       std::size_t position);

}  // namespace orvantis::json
