#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include <boost/property_tree/ptree.hpp>

#include "settings/JsonNotation.h"

namespace orvantis::json {

struct Document {
  boost::property_tree::ptree root;
  NotationMap notation;  // of the nodes of root
};

/// Reads one JSON document from the whole stream.
/// @return what is wrong with it, with line and column (counted from 1, in characters); empty when it was
/// read
std::string read(std::istream& in, Document& document);

/// Whether `read` would accept the text.
bool isReadable(std::string_view text);

/// Frees what is below the node without recursion: a tree can be deeper than the call stack.
void clear(boost::property_tree::ptree& root) noexcept;

}  // namespace orvantis::json
