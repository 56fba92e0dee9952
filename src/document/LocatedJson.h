#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvantis::toolkit {

/// A value of a JSON document and the line it begins on, as the settings store sees it: the elements of an
/// array are repeated children of one name.
struct LocatedNode {
  enum class Kind { Object, String, Literal };

  std::string name;
  std::size_t line = 1;
  Kind kind = Kind::Object;
  std::string text;                    ///< of a string or literal, as the store holds it
  std::deque<LocatedNode> children{};  ///< in the order of the document
  bool isElement = false;              ///< whether it stood in an array

  /// The children of that name, in order.
  std::vector<const LocatedNode*> all(std::string_view childName) const;
  /// The first child of that name, the one that the library reads; null when there is none.
  const LocatedNode* find(std::string_view childName) const;
};

/// Reads a document.
/// @return none for a text that is not JSON
std::optional<LocatedNode> parseLocated(std::string_view json);

}  // namespace orvantis::toolkit
