#include "text/Csv.h"

namespace orvantis::toolkit {
namespace {

std::string quoted(const std::string& cell) {
  if (cell.find_first_of(",\"\r\n") == std::string::npos) {
    return cell;
  }
  std::string text = "\"";
  for (const char c : cell) {
    text += c == '"' ? "\"\"" : std::string(1, c);
  }
  return text + "\"";
}

}  // namespace

std::string csvRow(const std::vector<std::string>& cells) {
  std::string text;
  for (const std::string& cell : cells) {
    text += (&cell == cells.data() ? "" : ",") + quoted(cell);
  }
  return text + "\n";
}

}  // namespace orvantis::toolkit
