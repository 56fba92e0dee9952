#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace orvantis::toolkit {

/// The fault of a file or another input from outside. Its text is "path:line:column: reason", without the
/// parts that are not known; control characters of the path are written out.
class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& reason) : Failure("", reason) {}
  Failure(const std::string& path, const std::string& reason) : Failure(path, 0, 0, reason) {}
  /// @param line,column from 1, the column in bytes; 0 when not known
  Failure(const std::string& path, std::size_t line, std::size_t column, const std::string& reason)
      : std::runtime_error(textOf(path, line, column, reason)),
        path_(path),
        line_(line),
        column_(column),
        reason_(reason) {}

  const std::string& path() const { return path_; }
  std::size_t line() const { return line_; }
  std::size_t column() const { return column_; }
  const std::string& reason() const { return reason_; }

 private:
  static std::string textOf(const std::string& path, std::size_t line, std::size_t column,
                            const std::string& reason);

  std::string path_;
  std::size_t line_;
  std::size_t column_;
  std::string reason_;
};

}  // namespace orvantis::toolkit
