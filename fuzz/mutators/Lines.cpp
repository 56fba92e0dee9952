#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "mutators/Mutators.h"
#include "mutators/Pieces.h"

namespace orvantis::fuzz {
namespace {

constexpr std::string_view separators = " \t,;\r\n";

// Lines with their ends, as far as the content is text.
Pieces linesOf(const Content& content) {
  const auto isText = [](std::uint8_t c) {
    return c == '\t' || c == '\n' || c == '\r' || (c >= ' ' && c < 0x7F);
  };
  auto end = std::find_if_not(content.begin(), content.end(), isText);
  while (end != content.end() && end != content.begin() && *(end - 1) != '\n') {
    --end;  // half a line belongs to the bytes behind it
  }
  Pieces lines{{}, {}, {end, content.end()}};
  for (auto begin = content.begin(); begin != end;) {
    auto next = std::find(begin, end, '\n');
    next += next != end ? 1 : 0;
    lines.pieces.emplace_back(begin, next);
    begin = next;
  }
  return lines;
}

// Fields and what separates them, in turn, beginning with a field, which may be empty.
Pieces fieldsOf(const Content& line) {
  Pieces parts;
  bool isField = true;
  parts.pieces.emplace_back();
  for (const std::uint8_t c : line) {
    const bool isSeparator = separators.find(static_cast<char>(c)) != std::string_view::npos;
    if (isSeparator == isField) {
      parts.pieces.emplace_back();
      isField = !isField;
    }
    parts.pieces.back().push_back(c);
  }
  return parts;
}

void changeField(Content& line, Chance& chance) {
  Pieces parts = fieldsOf(line);
  Content& field = parts.pieces[2 * chance.below((parts.pieces.size() + 1) / 2)];
  switch (chance.below(4)) {
    case 0:
      field = parts.pieces[2 * chance.below((parts.pieces.size() + 1) / 2)];
      break;
    case 1:
      field.clear();
      break;
    default:
      field = contentOf(oddNumber(chance));
  }
  line = parts.joined();
}

}  // namespace

bool mutateLines(Content& content, Chance& chance) {
  Pieces lines = linesOf(content);
  if (lines.pieces.empty()) {
    return false;
  }
  if (chance.oneIn(3)) {
    lines.rearrange(chance);
  } else {
    changeField(lines.pieces[chance.below(lines.pieces.size())], chance);
  }
  content = lines.joined();
  return true;
}

}  // namespace orvantis::fuzz
