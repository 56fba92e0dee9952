#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string>

#include "CloudCheck.h"
#include "text/Words.h"

namespace orvantis::app {

using toolkit::isNumber;
using toolkit::words;

// Open3D leaves out the lines it cannot read, so a damaged file would pass for one with fewer points.
void checkXyz(const std::string& path) {
  constexpr std::size_t longestLine = 1021;  // bytes; the reader gives up at a longer one
  std::ifstream in(path);
  in.exceptions(std::ios::badbit);
  std::string line;
  bool isEmpty = true;
  for (std::size_t number = 1; std::getline(in, line); ++number) {
    if (line.size() > longestLine) {
      throw std::runtime_error("line " + std::to_string(number) + " is longer than " +
                               std::to_string(longestLine) + " bytes");
    }
    const std::vector<std::string_view> columns = words(line);
    if (columns.empty() || columns[0].starts_with('#')) {
      continue;
    }
    isEmpty = false;
    if (columns.size() < 3 || !std::all_of(columns.begin(), columns.begin() + 3, isNumber)) {
      throw std::runtime_error("line " + std::to_string(number) + " does not begin with three numbers");
    }
  }
  if (isEmpty) {
    throw std::runtime_error("no line holds a point");
  }
}

}  // namespace orvantis::app
