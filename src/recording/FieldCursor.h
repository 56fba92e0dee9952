#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace orvantis::toolkit {

inline bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

/// Goes through the values of a row from left to right. They are separated either by any number of blanks and
/// tabs, or by one `separator` with blanks around it.
template <bool areBlanksSeparators>
class FieldCursor {
 public:
  FieldCursor(std::string_view line, char separator)
      : at_(line.data()), last_(line.data() + line.size()), separator_(separator) {
    at_ = behindBlanks(at_);
  }

  const char* begin() const { return at_; }   ///< of the current field
  const char* last() const { return last_; }  ///< the end of the row
  /// The end of the current field. If a separator separates the values, it includes the blanks after the
  /// value.
  const char* end() const {
    const char* at = at_;
    while (at != last_ && (areBlanksSeparators ? !isBlank(*at) : *at != separator_)) {
      ++at;
    }
    return at;
  }
  /// Goes on to the next field, from a place where this one may end. @return whether there is one
  bool nextAfter(const char* end) {
    at_ = behindBlanks(end);
    if (at_ == last_) {
      return false;
    }
    if (!areBlanksSeparators) {
      at_ = behindBlanks(at_ + 1);
    }
    return true;
  }

 private:
  const char* behindBlanks(const char* at) const {
    while (at != last_ && isBlank(*at) && (areBlanksSeparators || *at != separator_)) {
      ++at;
    }
    return at;
  }

  const char* at_;
  const char* last_;
  char separator_;
};

/// Calls `use` with each field of a row, without the blanks around it.
/// @param separator a blank means that blanks and tabs separate the fields
template <typename Use>
void forEachField(std::string_view line, char separator, Use use) {
  const auto go = [&](auto fields) {
    bool isThere = fields.begin() != fields.last();
    while (isThere) {
      const char* const end = fields.end();
      const std::string_view field(fields.begin(), static_cast<std::size_t>(end - fields.begin()));
      use(field.substr(0, field.find_last_not_of(" \t") + 1));
      isThere = fields.nextAfter(end);
    }
  };
  if (separator == ' ') {
    go(FieldCursor<true>(line, separator));
  } else {
    go(FieldCursor<false>(line, separator));
  }
}

/// The fields of a row, at most `most` of them, so that a long line cannot fill the memory.
inline std::vector<std::string_view> splitRow(std::string_view line, char separator, std::size_t most) {
  std::vector<std::string_view> fields;
  forEachField(line, separator, [&](std::string_view field) {
    if (fields.size() < most) {
      fields.push_back(field);
    }
  });
  return fields;
}

}  // namespace orvantis::toolkit
