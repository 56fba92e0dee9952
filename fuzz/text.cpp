// Points as text: any bytes give points or a refusal. With given columns, the points are the same as from a
// second, simple reader.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "Frames.h"

namespace {

using orvantis::fuzz::Point;

// The lines behind a byte order mark that are neither empty nor comments, with blanks as separators.
std::vector<std::string> rowsOf(const std::string& text) {
  std::vector<std::string> rows;
  std::istringstream in(text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? text.substr(3) : text);
  for (std::string line; std::getline(in, line);) {
    const std::size_t begin = line.find_first_not_of(" \t\r");
    if (begin != std::string::npos && line[begin] != '#' && line.compare(begin, 2, "//") != 0) {
      for (char& c : line) {
        c = c == ',' || c == ';' || c == '\t' ? ' ' : c;
      }
      rows.push_back(line.substr(begin));
    }
  }
  return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvantis;
  using namespace orvantis::fuzz;
  checkFrame(bytesOf(data, size), toolkit::FrameKind::Text);
  const auto points = checkFrame(bytesOf(data, size), toolkit::FrameKind::Text, {"x", "y", "z"});
  if (!points || points->empty()) {
    return 0;
  }
  // A number of points and a header may come before the rows.
  const std::vector<std::string> rows = rowsOf(std::string(reinterpret_cast<const char*>(data), size));
  ORVANTIS_FUZZ_CHECK(rows.size() >= points->size() && rows.size() <= points->size() + 2);
  for (std::size_t i = rows.size() - points->size(); i < rows.size(); ++i) {
    const char* at = rows[i].c_str();
    for (const double value : (*points)[i + points->size() - rows.size()]) {
      char* end = nullptr;
      ORVANTIS_FUZZ_CHECK(isSame(value, std::strtod(at, &end)));
      at = end;
    }
  }
  return 0;
}
