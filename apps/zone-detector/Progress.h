#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace orvantis::toolkit {
class FrameSource;
}

namespace orvantis::app {

struct Console;

/// A line with the progress of the work, if the error stream is a terminal. It is erased before anything else
/// is written and at the end. It is never wider than the terminal, because a wrapped line could not be
/// erased.
class Progress {
 public:
  /// @param total empty when not known
  Progress(const Console& console, std::optional<std::size_t> total) : console_(console), total_(total) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { erase(); }

  /// @param input the source of the current frame
  void show(std::size_t done, const toolkit::FrameSource& input, const std::string& what);
  void erase();

 private:
  const Console& console_;
  std::optional<std::size_t> total_;
  bool shown_ = false;
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point last_;
};

}  // namespace orvantis::app
