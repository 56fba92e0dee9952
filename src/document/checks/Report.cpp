#include "document/checks/Report.h"

#include <algorithm>
#include <tuple>

#include "text/Text.h"

namespace orvantis::toolkit {

std::vector<Finding> Report::inOrder() && {
  std::stable_sort(findings_.begin(), findings_.end(), [](const Finding& a, const Finding& b) {
    return std::tie(a.at.line, a.at.column) < std::tie(b.at.line, b.at.column);
  });
  return std::move(findings_);
}

std::string pathOf(const CheckedObject& parent, std::string_view key) {
  return (parent.path.empty() ? std::string() : parent.path + "/") + std::string(key);
}

std::string pathOf(const CheckedObject& parent, std::string_view key, std::size_t index) {
  return pathOf(parent, key) + "[" + std::to_string(index) + "]";
}

std::string quoted(std::string_view text) {
  constexpr std::size_t shown = 40;
  std::size_t end = 0;
  for (std::size_t characters = 0; end < text.size(); ++end) {
    const bool startsCharacter = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
    characters += startsCharacter ? 1 : 0;
    if (characters > shown) {
      break;
    }
  }
  return '"' + printable(text.substr(0, end)) + (end < text.size() ? "...\"" : "\"");
}

}  // namespace orvantis::toolkit
