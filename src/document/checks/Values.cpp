#include "document/checks/Values.h"

#include <cmath>

#include "text/LowerCase.h"
#include "text/Number.h"
#include "text/ValueText.h"

namespace orvantis::toolkit {
namespace {

bool isLeaf(const LocatedNode& node) {
  return node.kind == LocatedNode::Kind::Text || node.kind == LocatedNode::Kind::Literal;
}

// Converts as the settings store does.
template <typename T>
std::optional<T> convert(const LocatedNode& node) {
  if (!isLeaf(node)) {
    return std::nullopt;
  }
  const auto value = ValueText<T>().get_value(node.text);
  return value ? std::optional<T>(*value) : std::nullopt;
}

}  // namespace

std::optional<double> numberOf(const LocatedNode& node) {
  const auto value = convert<double>(node);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<int> wholeNumberOf(const LocatedNode& node) {
  return convert<int>(node);
}

std::optional<bool> truthOf(const LocatedNode& node) {
  return convert<bool>(node);
}

std::optional<double> numberUnder(const LocatedNode& object, std::string_view key) {
  const LocatedNode* node = object.find(key);
  return node == nullptr ? std::nullopt : numberOf(*node);
}

std::optional<int> wholeNumberUnder(const LocatedNode& object, std::string_view key) {
  const LocatedNode* node = object.find(key);
  return node == nullptr ? std::nullopt : wholeNumberOf(*node);
}

std::optional<std::string> wordUnder(const LocatedNode& object, std::string_view key) {
  const LocatedNode* node = object.find(key);
  return node == nullptr || !isLeaf(*node) ? std::nullopt : std::optional(lowerCase(node->text));
}

std::optional<filter::detection::Point> pointOf(const LocatedNode& node) {
  const auto x = numberUnder(node, "x");
  const auto y = numberUnder(node, "y");
  return x && y ? std::optional(filter::detection::Point(*x, *y)) : std::nullopt;
}

std::string coordinates(const filter::detection::Point& point) {
  return "(" + toText(point.x(), 6) + ", " + toText(point.y(), 6) + ")";
}

}  // namespace orvantis::toolkit
