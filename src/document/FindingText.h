#pragma once

#include <string>
#include <vector>

#include "document/Finding.h"

namespace orvantis::toolkit {

/// A finding as it is printed: "path:line:column: error: place: text". For a fault of the JSON, its excerpt
/// follows.
std::string textOf(const std::string& path, const Finding& finding, const std::string& severity);

/// The number of errors, and the first of them, one per line; a file that is not a document may have
/// thousands.
/// @param hint follows the number of errors that are not shown
std::string refusalOf(const std::string& path, const std::vector<Finding>& findings, const std::string& hint);

}  // namespace orvantis::toolkit
