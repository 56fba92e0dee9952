#include "text/Text.h"

#include <system_error>

#include <boost/locale/utf.hpp>

namespace orvantis::toolkit {
namespace {

bool isLaterByte(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

}  // namespace

std::string toUtf8(std::string_view text) {
  namespace utf = boost::locale::utf;
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const char* next = text.data() + at;
    const utf::code_point code = utf::utf_traits<char>::decode(next, text.data() + text.size());
    if (code == utf::illegal || code == utf::incomplete) {
      result += "\uFFFD";
      ++at;
    } else {
      const auto end = static_cast<std::size_t>(next - text.data());
      result += text.substr(at, end - at);
      at = end;
    }
  }
  return result;
}

std::size_t validUtf8(std::string_view text) {
  namespace utf = boost::locale::utf;
  const char* at = text.data();
  const char* const end = text.data() + text.size();
  while (at != end) {
    const char* next = at;
    const utf::code_point code = utf::utf_traits<char>::decode(next, end);
    if (code == utf::illegal || code == utf::incomplete) {
      break;
    }
    at = next;
  }
  return static_cast<std::size_t>(at - text.data());
}

std::string printable(std::string_view raw) {
  const std::string text = toUtf8(raw);
  static constexpr std::string_view hex = "0123456789abcdef";
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto byte = static_cast<unsigned char>(text[i]);
    // U+0080 to U+009F, which have two bytes, are control characters too.
    const bool isLongControl =
        byte == 0xC2U && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0U;
    if (isLongControl) {
      byte = static_cast<unsigned char>(text[++i]);
    }
    if (byte < 0x20U || byte == 0x7FU || isLongControl) {
      result += "\\x";
      result += hex[byte >> 4U];
      result += hex[byte & 0x0FU];
    } else {
      result += text[i];
    }
  }
  return result;
}

std::size_t displayWidth(std::string_view text) {
  std::size_t width = 0;
  for (const char c : text) {
    width += isLaterByte(c) ? 0 : 1;
  }
  return width;
}

std::string shortened(const std::string& text, std::size_t characters) {
  if (displayWidth(text) <= characters) {
    return text;
  }
  std::size_t end = 0;
  while (displayWidth(std::string_view(text).substr(0, end + 1)) < characters) {
    ++end;
  }
  return text.substr(0, end) + "…";
}

std::string endOf(std::string_view head, std::string_view text, std::size_t columns) {
  std::string result(head);
  const std::size_t taken = displayWidth(head);
  if (taken + displayWidth(text) <= columns) {
    return result += text;
  }
  if (taken >= columns) {
    return result.substr(0, columns);
  }
  std::size_t begin = text.size();
  std::size_t next = begin;
  while (next > 0 && taken + 1 + displayWidth(text.substr(next - 1)) <= columns) {
    --next;
    begin = isLaterByte(text[next]) ? begin : next;
  }
  return result + "…" + std::string(text.substr(begin));
}

std::string errorText(int number) {
  return std::generic_category().message(number);
}

std::string bold(const std::string& text, bool isColoured) {
  return isColoured ? "\033[1m" + text + "\033[0m" : text;
}

std::string counted(std::uint64_t count, std::string_view singular) {
  return std::to_string(count) + " " + std::string(singular) + (count == 1 ? "" : "s");
}

}  // namespace orvantis::toolkit
