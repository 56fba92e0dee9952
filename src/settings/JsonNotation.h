#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include <boost/property_tree/ptree.hpp>

namespace orvantis::json {

/// What a property tree cannot say about a JSON value, as flags of a node. A leaf without a flag is a literal
/// when its text is a JSON number, true, false or null, and a string when it has another text. Every other
/// node without a flag is an object.
enum Notation : unsigned char {
  Quoted = 1,          ///< a string, although its text is empty or reads as a literal
  Array = 2,           ///< an array whose elements have no name: inside an array, or the whole document
  OneElementList = 4,  ///< the only element of an array
};

using NotationMap = std::unordered_map<const boost::property_tree::ptree*, unsigned char>;

/// Whether the text is a JSON number, true, false or null.
bool isLiteral(std::string_view text);

/// Whether a string of that text needs the flag Quoted.
bool needsQuotedFlag(std::string_view text);

/// Whether the documents define children of that name as a list, which is written as an array also when it
/// has one entry.
bool isListName(std::string_view name);

}  // namespace orvantis::json
