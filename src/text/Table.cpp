#include "text/Table.h"

#include <algorithm>
#include <utility>

#include "text/Text.h"

namespace orvantis::toolkit {

Table::Table(const std::vector<std::string>& headings) {
  for (const std::string& heading : headings) {
    const bool right = heading.starts_with('>');
    headings_.push_back(right ? heading.substr(1) : heading);
    alignedRight_.push_back(right);
    widths_.push_back(displayWidth(headings_.back()));
  }
}

void Table::addRow(std::vector<std::string> cells) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    cells[i] = printable(cells[i]);
    widths_[i] = std::max(widths_[i], displayWidth(cells[i]));
  }
  rows_.push_back(std::move(cells));
}

std::string Table::text(bool isColoured) const {
  std::string text = bold(line(headings_), isColoured) + "\n";
  for (const std::vector<std::string>& row : rows_) {
    text += line(row) + "\n";
  }
  return text;
}

std::string Table::line(const std::vector<std::string>& cells) const {
  std::string text;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string padding(widths_[i] - displayWidth(cells[i]), ' ');
    text += "  ";
    text += alignedRight_[i] ? padding + cells[i] : cells[i] + padding;
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

}  // namespace orvantis::toolkit
