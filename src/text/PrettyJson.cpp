#include "text/PrettyJson.h"

#include <utility>

#include "text/JsonText.h"

namespace orvantis::toolkit {
namespace {

// The value on one line, with blanks between its parts.
std::string spaced(const boost::json::value& value) {
  std::string text;
  if (const auto* array = value.if_array(); array != nullptr && !array->empty()) {
    for (const boost::json::value& element : *array) {
      text += (text.empty() ? "[ " : ", ") + spaced(element);
    }
    return text + " ]";
  }
  if (const auto* object = value.if_object(); object != nullptr && !object->empty()) {
    for (const auto& [key, member] : *object) {
      text += (text.empty() ? "{ " : ", ") + jsonQuoted(key) + ": " + spaced(member);
    }
    return text + " }";
  }
  return toJson(value);
}

// Appends a value that begins in that column. It breaks the value into lines if it does not fit on its line.
void append(std::string& text, const boost::json::value& value, std::size_t indent, std::size_t column) {
  constexpr std::size_t width = 100;
  const std::string line = spaced(value);
  if (!value.is_structured() || column + line.size() <= width) {
    text += line;
    return;
  }
  const std::string inner = "\n" + std::string(indent + 2, ' ');
  std::string separator = inner;
  if (const auto* array = value.if_array()) {
    text += '[';
    for (const boost::json::value& element : *array) {
      text += std::exchange(separator, "," + inner);
      append(text, element, indent + 2, indent + 2);
    }
  } else {
    text += '{';
    for (const auto& [key, member] : value.get_object()) {
      const std::string name = jsonQuoted(key) + ": ";
      text += std::exchange(separator, "," + inner);
      text += name;
      append(text, member, indent + 2, indent + 2 + name.size());
    }
  }
  text += "\n" + std::string(indent, ' ') + (value.is_array() ? ']' : '}');
}

}  // namespace

std::string toPrettyJson(const boost::json::value& value) {
  std::string text;
  append(text, value, 0, 0);
  return text + "\n";
}

}  // namespace orvantis::toolkit
