#pragma once

#include <string>

#include <boost/optional/optional.hpp>

namespace orvantis::detail {

/// How values become text and back: exactly as property_tree's own stream translator does it in the classic
/// locale, but without a stream where the text is plain. Has the interface of property_tree's translators;
/// T is double, int or bool.
template <typename T>
struct ValueText {
  using internal_type = std::string;
  using external_type = T;

  /// None when the text is not a value of the type.
  boost::optional<T> get_value(const std::string& text) const;
  boost::optional<std::string> put_value(T value) const;
};

}  // namespace orvantis::detail
