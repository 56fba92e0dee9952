#pragma once

#include <string>
#include <vector>

namespace orvantis::toolkit {

/// A row of a CSV table with its line end. A cell stands in quotes where a comma, a quote or the end of a
/// line is in it.
std::string csvRow(const std::vector<std::string>& cells);

}  // namespace orvantis::toolkit
