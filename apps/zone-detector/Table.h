#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace orvantis::app {

struct Console;

/// Rows of text, aligned in columns.
class Table {
 public:
  /// @param headings one for each column; a heading that begins with ">" aligns its column to the right
  explicit Table(const std::vector<std::string>& headings);

  void addRow(std::vector<std::string> cells);
  void print(const Console& console) const;

 private:
  std::string line(const std::vector<std::string>& cells) const;

  std::vector<std::string> headings_;
  std::vector<bool> alignedRight_;
  std::vector<std::size_t> widths_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace orvantis::app
