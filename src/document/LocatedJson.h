#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/Finding.h"

namespace orvantis::toolkit {

/// A value of a JSON document with its position, in the form of the settings store: the elements of an array
/// are repeated children of one name.
struct LocatedNode {
  enum class Kind {
    Object,
    Array,  ///< the document itself or an array in an array, whose elements have no name
    Text,
    Literal,  ///< a number, true, false or null
  };
  /// An array without elements. The settings store keeps nothing of it.
  struct EmptyArray {
    std::string name;
    Position key;
  };

  std::string name;
  Position key;    ///< where its key, or the key of its array, begins; `value` when it has no key
  Position value;  ///< where the value begins
  Kind kind = Kind::Object;
  std::string text;                    ///< of a text or literal, as in the settings store
  std::deque<LocatedNode> children{};  ///< in the order of the document
  std::vector<EmptyArray> emptyArrays{};
  bool isElement = false;  ///< whether it is an element of an array

  /// The children of that name, in order.
  std::vector<const LocatedNode*> all(std::string_view childName) const;
  /// The first child of that name, the one that the library reads; null when there is none.
  const LocatedNode* find(std::string_view childName) const;
  /// The array without elements of that name; null when there is none.
  const EmptyArray* findEmptyArray(std::string_view arrayName) const;
};

/// Why a text is not JSON.
struct SyntaxFault {
  enum class Reason { Syntax, CutOff, TextAfterwards, TooDeep };

  Reason reason = Reason::Syntax;
  std::size_t offset = 0;        ///< of the first byte that is not allowed in its place
  Position at;                   ///< of the same byte
  bool inObject = false;         ///< whether the innermost open bracket is a brace
  std::optional<Position> open;  ///< where the innermost bracket that is still open stands
};

/// The result of reading a text: the root or the fault.
struct LocatedDocument {
  std::optional<LocatedNode> root;
  SyntaxFault fault;
};

/// Reads a document as the settings store does: RFC 8259, at most SettingsManager::MAX_DEPTH levels, with or
/// without a byte order mark.
LocatedDocument parseLocated(std::string_view json);

}  // namespace orvantis::toolkit
