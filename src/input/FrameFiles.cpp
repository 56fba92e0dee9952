#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "files/Failure.h"
#include "input/FrameInput.h"
#include "input/Input.h"
#include "text/LowerCase.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::Stamp;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Removes the digits at the beginning of the text, and returns them without leading zeros.
std::string_view takeNumber(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && isDigit(text[end])) {
    ++end;
  }
  std::string_view number = text.substr(0, end);
  text.remove_prefix(end);
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number;
}

// The natural order: frame_9 comes before frame_10.
bool comesBefore(std::string_view a, std::string_view b) {
  while (!a.empty() && !b.empty()) {
    if (isDigit(a[0]) && isDigit(b[0])) {
      const std::string_view first = takeNumber(a);
      const std::string_view second = takeNumber(b);
      if (first != second) {
        return first.size() != second.size() ? first.size() < second.size() : first < second;
      }
    } else if (a[0] != b[0]) {
      return a[0] < b[0];
    } else {
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  return a.empty() && !b.empty();
}

bool isInput(const std::string& name) {
  const std::string ending = lowerCase(std::filesystem::path(name).extension().string());
  return frameKindOf(name) || ending == ".mcap" || ending == ".bag" || ending == ".zst";
}

// The stamp of the first frame of a recording; nothing for other files. Also nothing when it cannot be read:
// reading the frames later gives the reason.
std::optional<Stamp> firstStampOf(const std::string& path, const FrameOptions& options) {
  try {
    if (!isRecordingFile(path)) {
      return std::nullopt;
    }
    const auto frame = FrameInput({path}, options).next();
    return frame ? frame->stamp : std::nullopt;
  } catch (const Failure&) {
    return std::nullopt;
  }
}

// Sorts recordings by the stamps of their first frames, if all files are recordings.
void sortByStamps(std::vector<std::string>& paths, const FrameOptions& options) {
  std::vector<std::pair<Stamp, std::string>> stamped;
  for (const std::string& path : paths) {
    const auto stamp = firstStampOf(path, options);
    if (!stamp) {
      return;
    }
    stamped.emplace_back(*stamp, path);
  }
  std::stable_sort(stamped.begin(), stamped.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(stamped.begin(), stamped.end(), paths.begin(),
                 [](const auto& entry) { return entry.second; });
}

void addFolder(const std::string& folder, const FrameOptions& options, std::deque<std::string>& files) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.is_regular_file(error) && isInput(entry.path().filename().string())) {
      names.push_back(entry.path().filename().string());
    }
  }
  if (error) {
    throw Failure(folder, "cannot be read: " + error.message());
  }
  if (names.empty()) {
    throw Failure(folder, "cannot be read: the folder holds neither frames nor recordings");
  }
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return comesBefore(a, b) || (!comesBefore(b, a) && a < b);
  });
  std::vector<std::string> paths;
  paths.reserve(names.size());
  for (const std::string& name : names) {
    paths.push_back((std::filesystem::path(folder) / name).string());
  }
  sortByStamps(paths, options);
  files.insert(files.end(), paths.begin(), paths.end());
}

void addList(std::deque<std::string>& files) {
  const auto in = openInput(standardInput);
  for (std::string line; std::getline(*in, line);) {
    if (!line.empty() && line.back() == '\r') {
      line.pop_back();
    }
    if (!line.empty()) {
      files.push_back(line);
    }
  }
  if (files.empty()) {
    throw Failure("the standard input lists no frames");
  }
}

}  // namespace

std::deque<std::string> filesOf(const std::vector<std::string>& words, const FrameOptions& options) {
  std::deque<std::string> files;
  for (const std::string& word : words) {
    if (word == standardInput) {
      addList(files);
    } else if (std::filesystem::is_directory(word)) {
      addFolder(word, options, files);
    } else {
      files.push_back(word);
    }
  }
  return files;
}

}  // namespace orvantis::toolkit
