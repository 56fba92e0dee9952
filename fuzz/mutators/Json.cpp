#include <string>
#include <string_view>
#include <vector>

#include "mutators/Mutators.h"

namespace orvantis::fuzz {
namespace {

// Where the values and the items of a document are, found without looking at what they say.
class JsonMap {
 public:
  explicit JsonMap(const Content& content) : content_(content) {
    isWhole_ = value(0) && behindBlanks(at_) == content_.size();
  }

  bool isWhole() const { return isWhole_; }
  const std::vector<Span>& values() const { return values_; }
  /// The members or elements of each object and array that has some.
  const std::vector<std::vector<Span>>& items() const { return items_; }

 private:
  static constexpr std::size_t mostLevels = 200;

  std::uint8_t peek() const { return at_ < content_.size() ? content_[at_] : 0; }
  std::size_t behindBlanks(std::size_t at) const {
    while (at < content_.size() &&
           (content_[at] == ' ' || content_[at] == '\t' || content_[at] == '\n' || content_[at] == '\r')) {
      ++at;
    }
    return at;
  }

  bool value(std::size_t level) {
    at_ = behindBlanks(at_);
    const std::size_t begin = at_;
    const bool isThere = peek() == '{'   ? level < mostLevels && list('}', level)
                         : peek() == '[' ? level < mostLevels && list(']', level)
                         : peek() == '"' ? string()
                                         : word();
    values_.push_back({begin, at_});
    return isThere;
  }

  bool list(std::uint8_t close, std::size_t level) {
    ++at_;
    std::vector<Span> items;
    at_ = behindBlanks(at_);
    while (peek() != close) {
      if (!items.empty() && peek() != ',') {
        return false;
      }
      at_ = behindBlanks(at_ + (items.empty() ? 0 : 1));
      const std::size_t begin = at_;
      if (close == '}') {
        if (peek() != '"' || !string()) {
          return false;
        }
        at_ = behindBlanks(at_);
        if (peek() != ':') {
          return false;
        }
        ++at_;
      }
      if (!value(level + 1)) {
        return false;
      }
      items.push_back({begin, at_});
      at_ = behindBlanks(at_);
    }
    ++at_;
    if (!items.empty()) {
      items_.push_back(items);
    }
    return true;
  }

  bool string() {
    for (++at_; at_ < content_.size() && content_[at_] != '"'; ++at_) {
      at_ += content_[at_] == '\\' ? 1 : 0;
    }
    return at_++ < content_.size();
  }

  bool word() {
    constexpr std::string_view ends = ",]}: \t\r\n\"[{";
    const std::size_t begin = at_;
    while (at_ < content_.size() && ends.find(static_cast<char>(content_[at_])) == std::string_view::npos) {
      ++at_;
    }
    return at_ > begin;
  }

  const Content& content_;
  std::size_t at_ = 0;
  bool isWhole_ = false;
  std::vector<Span> values_;
  std::vector<std::vector<Span>> items_;
};

std::string oddValue(Chance& chance) {
  switch (chance.below(8)) {
    case 0:
      return "null";
    case 1:
      return chance.oneIn(2) ? "true" : "false";
    case 2:
      return chance.oneIn(2) ? "{}" : "[]";
    case 3:
      return chance.oneIn(2) ? R"("")" : R"("é\u0000\"")";
    default: {
      std::string number = oddNumber(chance);
      const bool isFinite = number.find_first_of("ni") == std::string::npos;
      return isFinite ? number : '"' + number + '"';
    }
  }
}

// Takes an item out, with the comma beside it.
void removeItem(Content& content, const std::vector<Span>& items, std::size_t i) {
  const bool isLast = i + 1 == items.size();
  const std::size_t begin = isLast && i > 0 ? items[i - 1].end : items[i].begin;
  replace(content, {begin, isLast ? items[i].end : items[i + 1].begin}, {});
}

void repeatItem(Content& content, Span item) {
  Content repeated = bytesOf(content, item);
  repeated.insert(repeated.begin(), ',');
  replace(content, {item.end, item.end}, repeated);
}

}  // namespace

bool mutateJson(Content& content, Chance& chance) {
  const JsonMap map(content);
  if (!map.isWhole()) {
    return false;
  }
  const Span value = map.values()[chance.below(map.values().size())];
  if (map.items().empty() || chance.oneIn(2)) {
    const Span other = map.values()[chance.below(map.values().size())];
    const Content by = chance.oneIn(3) ? bytesOf(content, other) : contentOf(oddValue(chance));
    replace(content, value, by);
    return true;
  }
  const std::vector<Span>& items = map.items()[chance.below(map.items().size())];
  const std::size_t i = chance.below(items.size());
  if (chance.oneIn(2)) {
    removeItem(content, items, i);
  } else {
    repeatItem(content, items[i]);
  }
  return true;
}

}  // namespace orvantis::fuzz
