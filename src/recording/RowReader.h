#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvantis::toolkit {

/// One entry of a row, with its place.
struct Field {
  std::string_view text;
  std::size_t column = 1;  ///< in bytes, from 1
};

/// Reads a text row by row. Lines end with LF or CR LF.
class RowReader {
 public:
  /// @param path names the text in messages
  RowReader(std::unique_ptr<std::istream> in, std::string path);

  /// Goes on to the next line.
  /// @return whether there is one
  /// @throws Failure for a line that is longer than any row can be, or when reading fails
  bool next();

  /// The line without its end; valid until the next one is read.
  std::string_view line() const { return line_; }
  /// The entries of the line, separated by single separators; a blank separator means any number of blanks.
  std::vector<Field> fields(char separator) const;
  std::vector<Field> words() const;

  /// @throws Failure "file:line:column: reason"
  [[noreturn]] void refuse(const Field& field, const std::string& reason) const;

  // Each throws a Failure with the name of the field if it has another form.

  double number(const Field& field, const std::string& name) const;  ///< finite
  /// A number that is not below zero.
  double extent(const Field& field, const std::string& name) const;
  std::int32_t wholeNumber(const Field& field, const std::string& name) const;
  /// Seconds as nanoseconds, rounded to the nearest one. Less than 4.6e9 s (145 years) from zero, so that the
  /// time between any two fits.
  std::int64_t nanoseconds(const Field& field, const std::string& name) const;

 private:
  void refuseUnless(const std::from_chars_result& result, const Field& field, const std::string& name,
                    const char* kind) const;

  std::unique_ptr<std::istream> in_;
  std::string path_;
  std::string line_;
  std::size_t lineNumber_ = 0;
};

}  // namespace orvantis::toolkit
