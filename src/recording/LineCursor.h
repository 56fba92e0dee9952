#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace orvantis::toolkit {

/// Bytes as a text.
inline std::string_view textOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Goes through the lines of a text in memory. Lines end with LF or CR LF; the last line may have no end.
class LineCursor {
 public:
  explicit LineCursor(std::string_view text) : text_(text) {}

  /// Goes on to the next line. @return whether there is one
  bool next() {
    if (end_ == text_.size()) {
      return false;
    }
    const std::size_t begin = end_;
    const void* const found = std::memchr(text_.data() + begin, '\n', text_.size() - begin);
    const std::size_t last = found == nullptr
                                 ? text_.size()
                                 : static_cast<std::size_t>(static_cast<const char*>(found) - text_.data());
    end_ = found == nullptr ? last : last + 1;
    ++number_;
    line_ = text_.substr(begin, last - begin);
    if (!line_.empty() && line_.back() == '\r') {
      line_.remove_suffix(1);
    }
    return true;
  }

  /// Skips the next line. @param end where the line after it begins
  void pass(const char* end) {
    end_ = static_cast<std::size_t>(end - text_.data());
    ++number_;
    line_ = {};
  }
  const char* nextLine() const { return text_.data() + end_; }  ///< where the next line begins

  /// The current line, without its end.
  std::string_view line() const { return line_; }
  std::uint64_t number() const { return number_; }          ///< from 1; 0 before the first line
  std::size_t end() const { return end_; }                  ///< the byte after the line and its end
  std::size_t left() const { return text_.size() - end_; }  ///< bytes after it

  const char* last() const { return text_.data() + text_.size(); }  ///< the end of the text

  /// The column of a place in the line, in bytes from 1.
  std::uint64_t columnOf(const char* place) const {
    return static_cast<std::uint64_t>(place - line_.data()) + 1;
  }

 private:
  std::string_view text_;
  std::string_view line_;
  std::uint64_t number_ = 0;
  std::size_t end_ = 0;
};

}  // namespace orvantis::toolkit
