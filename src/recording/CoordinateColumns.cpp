#include "recording/CoordinateColumns.h"

#include <algorithm>
#include <string>

#include "recording/Quoted.h"
#include "text/LowerCase.h"

namespace orvantis::toolkit {

std::array<std::size_t, 3> coordinateColumns(const std::vector<Column>& columns, const Place& place,
                                             const AxisNames& names) {
  std::array<std::size_t, 3> axes{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::string name = lowerCase(names[axis]);
    const auto isIt = [&](const Column& column) { return lowerCase(column.name) == name; };
    const auto found = std::find_if(columns.begin(), columns.end(), isIt);
    if (found == columns.end()) {
      std::string known;
      for (std::size_t i = 0; i < std::min<std::size_t>(columns.size(), 8); ++i) {
        known += (i == 0 ? "" : ", ") + quoted(columns[i].name);
      }
      throw ReadError(place, "no column is named " + quoted(name) + "; there " +
                                 (columns.empty() ? "is none" : "are " + known) +
                                 (columns.size() > 8 ? ", ..." : ""));
    }
    if (std::find_if(found + 1, columns.end(), isIt) != columns.end()) {
      throw ReadError(place, "two columns are named " + quoted(name));
    }
    if (found->count != 1) {
      throw ReadError(place, "column " + quoted(found->name) + " has " +
                                 (found->count == 0 ? "a list of" : std::to_string(found->count)) +
                                 " values for each point; a coordinate has 1");
    }
    axes[axis] = static_cast<std::size_t>(found - columns.begin());
  }
  return axes;
}

bool areFloats(const std::vector<Column>& columns, const std::array<std::size_t, 3>& axes) {
  return std::all_of(axes.begin(), axes.end(),
                     [&](std::size_t axis) { return columns[axis].type == NumberType::F4; });
}

}  // namespace orvantis::toolkit
