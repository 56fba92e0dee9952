#pragma once

#include <string>
#include <vector>

namespace orvantis::toolkit {

/// A row of a CSV table with its line end. A cell is put in quotes if it has a comma, a quote or a line end.
std::string csvRow(const std::vector<std::string>& cells);

}  // namespace orvantis::toolkit
