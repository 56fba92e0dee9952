#pragma once

#include <string>

#include <boost/optional/optional.hpp>

namespace orvantis::toolkit {

/// How the values of a property tree become text and back: exactly as property_tree's own stream translator
/// does it in the classic locale with libstdc++, whose streams read neither "0x10" nor "inf" as a number, but
/// without a stream, so on every system. Has the interface of property_tree's translators; T is double, int
/// or bool.
template <typename T>
struct ValueText {
  using internal_type = std::string;
  using external_type = T;

  /// None when the text is not a value of the type. Blanks around a number and a plus in front of it are
  /// allowed; a number too large is none, one too small for a double is zero.
  boost::optional<T> get_value(const std::string& text) const;
  /// A double with as many digits as bring back every double.
  boost::optional<std::string> put_value(T value) const;
};

}  // namespace orvantis::toolkit
