#include "text/JsonText.h"

#include <cmath>

#include <boost/json/serialize.hpp>
#include <boost/json/string.hpp>

#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

// Boost's own writer writes 1.5 as 1.5E0, which is hard to read.
void append(std::string& text, const boost::json::value& value) {
  if (const auto* number = value.if_double()) {
    text += std::isfinite(*number) ? toText(*number) : "null";
  } else if (const auto* array = value.if_array()) {
    text += '[';
    for (const boost::json::value& element : *array) {
      text += &element == array->data() ? "" : ",";
      append(text, element);
    }
    text += ']';
  } else if (const auto* object = value.if_object()) {
    text += '{';
    bool first = true;
    for (const auto& [key, member] : *object) {
      text += first ? "" : ",";
      first = false;
      text += jsonQuoted(key);
      text += ':';
      append(text, member);
    }
    text += '}';
  } else if (const auto* raw = value.if_string()) {
    text += jsonQuoted(*raw);
  } else {
    text += boost::json::serialize(value);
  }
}

}  // namespace

std::string jsonQuoted(std::string_view text) {
  return boost::json::serialize(boost::json::string(toUtf8(text)));
}

std::string toJson(const boost::json::value& value) {
  std::string text;
  append(text, value);
  return text;
}

}  // namespace orvantis::toolkit
