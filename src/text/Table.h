#pragma once

#include <string>
#include <vector>

namespace orvantis::toolkit {

/// Rows of text, aligned in columns.
class Table {
 public:
  /// @param headings one for each column; a heading that begins with ">" aligns its column to the right
  explicit Table(const std::vector<std::string>& headings);

  void addRow(std::vector<std::string> cells);
  /// A line for the headings and one for each row.
  /// @param isColoured whether a terminal shows the headings in bold
  std::string text(bool isColoured) const;

 private:
  std::string line(const std::vector<std::string>& cells) const;

  std::vector<std::string> headings_;
  std::vector<bool> alignedRight_;
  std::vector<std::size_t> widths_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace orvantis::toolkit
