#include "recording/RowReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <utility>

#include "files/Failure.h"
#include "text/Number.h"
#include "text/StampText.h"
#include "text/Text.h"
#include "text/Words.h"

namespace orvantis::toolkit {

RowReader::RowReader(std::unique_ptr<std::istream> in, std::string path)
    : in_(std::move(in)), path_(std::move(path)) {}

bool RowReader::next() {
  // Limited, so that a file without line ends does not fill the memory.
  std::array<char, 4096> buffer;
  in_->getline(buffer.data(), buffer.size());
  if (in_->bad()) {
    throw Failure(path_, "cannot be read: " + errorText(errno));
  }
  const auto taken = static_cast<std::size_t>(in_->gcount());
  if (taken == 0) {
    return false;
  }
  ++lineNumber_;
  if (in_->fail()) {
    refuse({{}, 1}, "the line is longer than " + std::to_string(taken) + " bytes");
  }
  // The line end was read but is not kept; the last line may have none.
  line_.assign(buffer.data(), in_->eof() ? taken : taken - 1);
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (lineNumber_ == 1 && std::string_view(line_).substr(0, 3) == byteOrderMark) {
    line_.erase(0, 3);
  }
  if (line_.ends_with('\r')) {
    line_.pop_back();
  }
  return true;
}

std::vector<Field> RowReader::fields(char separator) const {
  const std::string_view line = line_;
  std::vector<Field> result;
  std::size_t begin = 0;
  for (std::size_t end = line.find(separator); end != std::string_view::npos;
       end = line.find(separator, begin)) {
    result.push_back({line.substr(begin, end - begin), begin + 1});
    begin = end + 1;
  }
  result.push_back({line.substr(begin), begin + 1});
  return result;
}

std::vector<Field> RowReader::words() const {
  std::vector<Field> result;
  for (const std::string_view word : toolkit::words(line_)) {
    result.push_back({word, static_cast<std::size_t>(word.data() - line_.data()) + 1});
  }
  return result;
}

void RowReader::refuse(const Field& field, const std::string& reason) const {
  throw Failure(path_, std::max<std::size_t>(lineNumber_, 1), field.column, reason);
}

void RowReader::refuseUnless(const std::from_chars_result& result, const Field& field,
                             const std::string& name, const char* kind) const {
  if (result.ec == std::errc::invalid_argument || result.ptr != field.text.data() + field.text.size()) {
    refuse(field, name + " is " + kind + ": \"" + printable(field.text.substr(0, 40)) + "\"");
  }
  if (result.ec == std::errc::result_out_of_range) {
    refuse(field, name + " is out of range: " + printable(field.text.substr(0, 40)));
  }
}

double RowReader::number(const Field& field, const std::string& name) const {
  double value = 0.0;
  refuseUnless(readNumber(field.text.data(), field.text.data() + field.text.size(), value), field, name,
               "not a number");
  if (!std::isfinite(value)) {
    refuse(field, name + " is not finite");
  }
  return value;
}

double RowReader::extent(const Field& field, const std::string& name) const {
  const double value = number(field, name);
  if (value < 0.0) {
    refuse(field, name + " is below zero");
  }
  return value;
}

std::int32_t RowReader::wholeNumber(const Field& field, const std::string& name) const {
  std::int32_t value = 0;
  refuseUnless(std::from_chars(field.text.data(), field.text.data() + field.text.size(), value), field, name,
               "not a whole number");
  return value;
}

std::int64_t RowReader::nanoseconds(const Field& field, const std::string& name) const {
  std::chrono::nanoseconds value{0};
  const auto result = readSeconds(field.text.data(), field.text.data() + field.text.size(), value);
  if (result.ec == std::errc::invalid_argument) {
    number(field, name);  // it throws the right message for "inf" and "nan"
  }
  refuseUnless(result, field, name, "not a number");
  return value.count();
}

}  // namespace orvantis::toolkit
