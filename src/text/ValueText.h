#pragma once

#include <string>

#include <boost/optional/optional.hpp>

namespace orvantis::toolkit {

/// Converts between the values of a property tree and text, with the interface of property_tree's
/// translators. T is double, int or bool. The results are those of property_tree's own stream translator in
/// the classic locale with libstdc++, whose streams read neither "0x10" nor "inf" as a number. Numbers are
/// converted without a stream, because other standard libraries read them differently.
template <typename T>
struct ValueText {
  using internal_type = std::string;
  using external_type = T;

  /// Empty when the text is not a value of the type, or is a number that is too large. A number that is too
  /// small for a double is zero. Blanks around a number and a plus in front of it are allowed.
  boost::optional<T> get_value(const std::string& text) const;
  /// The text. A double has as many digits as are needed to read the same double back.
  boost::optional<std::string> put_value(T value) const;
};

}  // namespace orvantis::toolkit
