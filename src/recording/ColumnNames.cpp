#include "recording/ColumnNames.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <system_error>

#include "recording/Quoted.h"
#include "text/LowerCase.h"

namespace orvantis::toolkit {
namespace {

[[noreturn]] void refuse(std::string_view text) {
  throw std::invalid_argument(
      quoted(text) +
      " is not a list of columns; give how many there are, from 3 to 1000, or their names "
      "with x, y and z once each (t,x,y,z or xyzi)");
}

ColumnNames split(std::string_view text) {
  ColumnNames names;
  if (text.find(',') == std::string_view::npos) {
    for (const char letter : text) {
      names.emplace_back(1, letter);
    }
    return names;
  }
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    names.emplace_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return names;
}

}  // namespace

ColumnNames parseColumnNames(std::string_view text) {
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (end != text.data() && end == text.data() + text.size()) {
    if (error != std::errc() || count < 3 || count > mostColumns) {
      refuse(text);
    }
    return defaultColumnNames(count);
  }
  ColumnNames names = split(text);
  for (const char* axis : {"x", "y", "z"}) {
    const auto isAxis = [&](const std::string& name) { return lowerCase(name) == axis; };
    if (std::count_if(names.begin(), names.end(), isAxis) != 1) {
      refuse(text);
    }
  }
  if (names.size() > mostColumns || std::find(names.begin(), names.end(), "") != names.end()) {
    refuse(text);
  }
  return names;
}

ColumnNames defaultColumnNames(std::size_t count) {
  ColumnNames names = {"x", "y", "z"};
  while (names.size() < count) {
    names.push_back("column " + std::to_string(names.size() + 1));
  }
  return names;
}

std::vector<Column> columnsOf(const ColumnNames& names, NumberType type) {
  std::vector<Column> columns;
  for (const std::string& name : names) {
    columns.push_back({name, type, 1});
  }
  return columns;
}

}  // namespace orvantis::toolkit
