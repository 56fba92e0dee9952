#include "recording/StampList.h"

#include "text/StampText.h"

namespace orvantis::toolkit {

std::optional<StampedPath> StampList::next() {
  while (rows_.next()) {
    const std::string_view line = rows_.line();
    if (line.empty() || line[0] == '#') {
      continue;
    }
    const std::size_t end = line.find_first_of(", \t");
    const std::size_t begin = line.find_first_not_of(" \t", end == std::string_view::npos ? end : end + 1);
    const Field stampField{line.substr(0, end), 1};
    const filter::monitor::Stamp stamp(rows_.nanoseconds(stampField, "stamp"));
    if (begin == std::string_view::npos) {
      rows_.refuse({{}, line.size() + 1}, "there is no path after the stamp");
    }
    if (last_ && stamp <= *last_) {
      rows_.refuse(stampField, "stamp is not later than the one before, " + toText(*last_) + " s");
    }
    last_ = stamp;
    return StampedPath{stamp, std::string(line.substr(begin))};
  }
  return std::nullopt;
}

}  // namespace orvantis::toolkit
