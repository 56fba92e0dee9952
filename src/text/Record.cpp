#include "text/Record.h"

#include <algorithm>
#include <cmath>

#include "text/Csv.h"
#include "text/JsonText.h"
#include "text/Number.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

template <typename Element, typename Write>
std::string jsonList(const std::vector<Element>& elements, Write write) {
  std::string text = "[";
  for (const Element& element : elements) {
    text += text.size() == 1 ? "" : ",";
    text += write(element);
  }
  return text + "]";
}

struct ToJson {
  std::string operator()(std::nullptr_t) const { return "null"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(std::uint64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return std::isfinite(value) ? toText(value) : "null"; }
  std::string operator()(std::chrono::nanoseconds value) const { return toText(value); }
  std::string operator()(const std::string& value) const { return jsonQuoted(value); }
  std::string operator()(const std::vector<double>& values) const {
    return jsonList(values, [this](double value) { return (*this)(value); });
  }
  std::string operator()(const Record& value) const { return toJson(value); }
  std::string operator()(const std::vector<std::string>& values) const {
    return jsonList(values, [](const std::string& value) { return jsonQuoted(value); });
  }
  std::string operator()(const std::vector<Record>& values) const {
    return jsonList(values, [](const Record& value) { return toJson(value); });
  }
};

struct ToCell {
  std::string operator()(std::nullptr_t) const { return ""; }
  std::string operator()(bool value) const { return value ? "1" : "0"; }
  std::string operator()(double value) const { return toText(value); }
  std::string operator()(std::chrono::nanoseconds value) const { return toText(value); }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(const std::vector<std::string>& values) const {
    std::string text;
    for (const std::string& value : values) {
      text += (text.empty() ? "" : " ") + value;
    }
    return text;
  }
  std::string operator()(const std::vector<double>& values) const { return std::to_string(values.size()); }
  std::string operator()(const Record& value) const { return std::to_string(value.size()); }
  std::string operator()(const std::vector<Record>& values) const {
    return std::to_string(values.size());  // the cell has only the number of entries
  }
  template <typename Whole>
  std::string operator()(Whole value) const {
    return std::to_string(value);
  }
};

struct ToWords : ToCell {
  using ToCell::operator();
  std::string operator()(double value) const { return toText(value, 3); }
  std::string operator()(std::chrono::nanoseconds value) const { return toMilliseconds(value); }
  std::string operator()(const std::string& value) const { return printable(value); }
};

}  // namespace

std::string toJson(const Record& record) {
  std::string text = "{";
  for (const Entry& entry : record) {
    if (!entry.key.empty()) {
      text += (text.size() == 1 ? "" : ",") + jsonQuoted(entry.key) + ":" + std::visit(ToJson(), entry.value);
    }
  }
  return text + "}";
}

std::string toCell(const Value& value) {
  return std::visit(ToCell(), value);
}

std::string toRow(const Record& record, const std::vector<std::string>& columns) {
  std::vector<std::string> cells(columns.size());
  for (const Entry& entry : record) {
    const auto column = std::find(columns.begin(), columns.end(), entry.column);
    if (column != columns.end()) {
      cells[static_cast<std::size_t>(column - columns.begin())] = toCell(entry.value);
    }
  }
  return csvRow(cells);
}

std::string toSentence(const Record& record, std::string_view pattern) {
  std::string text;
  while (!pattern.empty()) {
    const std::size_t begin = std::min(pattern.find('{'), pattern.size());
    text += pattern.substr(0, begin);
    pattern.remove_prefix(begin);
    if (!pattern.empty()) {
      const std::size_t end = pattern.find('}');
      const std::string_view key = pattern.substr(1, end - 1);
      const auto entry =
          std::find_if(record.begin(), record.end(), [key](const Entry& f) { return f.key == key; });
      text += entry == record.end() ? "" : std::visit(ToWords(), entry->value);
      pattern.remove_prefix(end + 1);
    }
  }
  return text;
}

}  // namespace orvantis::toolkit
