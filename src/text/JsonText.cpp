#include "text/JsonText.h"

#include <cmath>
#include <string>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

void appendEscaped(std::string& text, char c) {
  constexpr std::string_view letters = "\b\f\n\r\t\"\\";
  constexpr std::string_view escapes = "bfnrt\"\\";
  constexpr std::string_view digits = "0123456789abcdef";
  const std::size_t known = letters.find(c);
  text += '\\';
  if (known != std::string_view::npos) {
    text += escapes[known];
    return;
  }
  text += "u00";
  text += digits[static_cast<unsigned char>(c) >> 4U];
  text += digits[static_cast<unsigned char>(c) & 0xFU];
}

// Boost's own writer writes 1.5 as 1.5E0, which is hard to read, and brings tables of 10 kB for it.
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
  } else if (const auto* whole = value.if_int64()) {
    text += std::to_string(*whole);
  } else if (const auto* natural = value.if_uint64()) {
    text += std::to_string(*natural);
  } else if (const auto* truth = value.if_bool()) {
    text += *truth ? "true" : "false";
  } else {
    text += "null";
  }
}

}  // namespace

std::string jsonQuoted(std::string_view text) {
  constexpr char firstPlain = ' ';  // what comes before it must be escaped
  std::string quoted = "\"";
  for (const char c : toUtf8(text)) {
    const bool isControl = static_cast<unsigned char>(c) < static_cast<unsigned char>(firstPlain);
    if (isControl || c == '"' || c == '\\') {
      appendEscaped(quoted, c);
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

std::string toJson(const boost::json::value& value) {
  std::string text;
  append(text, value);
  return text;
}

}  // namespace orvantis::toolkit
