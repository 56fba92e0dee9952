#include "document/Excerpt.h"

#include <algorithm>

#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isLaterByte(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// A tab is shown as one blank, so that the caret is below the right column.
std::string shown(std::string_view text) {
  std::string result(text);
  std::replace(result.begin(), result.end(), '\t', ' ');
  return printable(result);
}

// The last (or first) bytes of the text, at most `size`, without cutting a character in two.
std::string_view lastOf(std::string_view text, std::size_t size) {
  text.remove_prefix(text.size() - std::min(size, text.size()));
  while (!text.empty() && isLaterByte(text.front())) {
    text.remove_prefix(1);
  }
  return text;
}

std::string_view firstOf(std::string_view text, std::size_t size) {
  std::size_t end = std::min(size, text.size());
  while (end < text.size() && isLaterByte(text[end])) {
    ++end;
  }
  return text.substr(0, end);
}

}  // namespace

Position positionOf(std::string_view text, std::size_t offset) {
  Position at;
  const std::size_t begin = text.substr(0, byteOrderMark.size()) == byteOrderMark ? byteOrderMark.size() : 0;
  for (std::size_t i = begin; i < offset; ++i) {
    if (text[i] == '\n') {
      at = {at.line + 1, 1};
    } else if (!isLaterByte(text[i])) {
      ++at.column;
    }
  }
  return at;
}

std::string excerptAt(std::string_view text, std::size_t offset) {
  constexpr std::size_t before = 48;
  constexpr std::size_t after = 24;
  const std::size_t lineBreak = offset == 0 ? std::string_view::npos : text.rfind('\n', offset - 1);
  std::size_t begin = lineBreak == std::string_view::npos ? 0 : lineBreak + 1;
  if (begin == 0 && text.substr(0, byteOrderMark.size()) == byteOrderMark) {
    begin = std::min(byteOrderMark.size(), offset);
  }
  const std::string_view line = text.substr(begin, text.find_first_of("\r\n", offset) - begin);
  const std::string_view left = line.substr(0, offset - begin);
  const std::string_view right = line.substr(left.size());
  const std::string_view leftShown = lastOf(left, before);
  const std::string_view rightShown = firstOf(right, after);
  const std::string prefix = (leftShown.size() < left.size() ? "..." : "") + shown(leftShown);
  return prefix + shown(rightShown) + (rightShown.size() < right.size() ? "..." : "") + "\n" +
         std::string(displayWidth(prefix), ' ') + "^";
}

}  // namespace orvantis::toolkit
