// The reader of tracks: any bytes give frames in ascending order with every object of the file, or a refusal
// that names the file, the place and the reason.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Check.h"
#include "files/Failure.h"
#include "recording/TrackReader.h"

using orvantis::toolkit::TrackFrame;
using orvantis::toolkit::TrackReader;
using orvantis::toolkit::TracksFormat;

namespace {

// What each object of the file must have, as a second, simple reader finds it.
struct Row {
  int id;
  std::string className;
};

// Removes the first entry from the line. Any number of blanks, or a single comma, separates entries.
std::string takeEntry(std::string& line, const std::string& separators) {
  const std::string entry = line.substr(0, line.find_first_of(separators));
  line.erase(0, entry.size());
  line.erase(0, separators == "," ? 1 : line.find_first_not_of(separators));
  return entry;
}

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::vector<Row> rowsOf(const std::string& text, TracksFormat format) {
  std::vector<Row> rows;
  std::istringstream in(text.starts_with(byteOrderMark) ? text.substr(byteOrderMark.size()) : text);
  bool isHeader = format == TracksFormat::Csv;
  for (std::string line; std::getline(in, line);) {
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    if (isHeader || line.empty()) {
      isHeader = false;
      continue;
    }
    const std::string separators = format == TracksFormat::Csv ? "," : " \t\r";
    if (format == TracksFormat::Kitti) {
      line.erase(0, line.find_first_not_of(separators));
    }
    takeEntry(line, separators);  // the stamp
    const int id = std::stoi(takeEntry(line, separators));
    const std::string className = takeEntry(line, separators);
    if (format == TracksFormat::Csv || className != "DontCare") {
      rows.push_back({id, className});
    }
  }
  return rows;
}

void checkFrames(const std::vector<TrackFrame>& frames, const std::vector<Row>& rows) {
  auto row = rows.begin();
  for (std::size_t i = 0; i < frames.size(); ++i) {
    ORVANTIS_FUZZ_CHECK(i == 0 || frames[i - 1].stamp < frames[i].stamp);
    std::set<int> ids;
    for (const auto& object : frames[i].objects) {
      ORVANTIS_FUZZ_CHECK(row != rows.end() && object.id == row->id && object.className == row->className);
      ORVANTIS_FUZZ_CHECK(object.zMin <= object.zMax);
      ORVANTIS_FUZZ_CHECK(object.id < 0 || ids.insert(object.id).second);
      ++row;
    }
  }
  ORVANTIS_FUZZ_CHECK(row == rows.end());
}

// It must be "path:line:column: reason", with a line of the text and without control characters.
void checkRefusal(const std::string& refusal, const std::string& path, const std::string& text) {
  ORVANTIS_FUZZ_CHECK(refusal.starts_with(path + ":"));
  std::istringstream rest(refusal.substr(path.size() + 1));
  long long line = 0;
  long long column = 0;
  char afterLine = '\0';
  char afterColumn = '\0';
  std::string reason;
  rest >> line >> afterLine >> column >> afterColumn;
  std::getline(rest, reason);
  ORVANTIS_FUZZ_CHECK(afterLine == ':' && afterColumn == ':' && reason.size() > 1);
  ORVANTIS_FUZZ_CHECK(line >= 1 && line <= 1 + std::ranges::count(text, '\n'));
  ORVANTIS_FUZZ_CHECK(column >= 1 && column <= static_cast<long long>(text.size()) + 1);
  ORVANTIS_FUZZ_CHECK(std::ranges::none_of(refusal, [](unsigned char c) { return c < 0x20U || c == 0x7FU; }));
}

void check(const std::string& path, const std::string& text, TracksFormat format) {
  std::vector<TrackFrame> frames;
  try {
    TrackReader reader(std::make_unique<std::istringstream>(text), path, format);
    while (auto frame = reader.next()) {
      frames.push_back(std::move(*frame));
    }
  } catch (const orvantis::toolkit::Failure& failure) {
    checkRefusal(failure.what(), path, text);
    return;
  }
  checkFrames(frames, rowsOf(text, format));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  check("tracks", text, TracksFormat::Csv);
  check("tracks", text, TracksFormat::Kitti);
  return 0;
}
