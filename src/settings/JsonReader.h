#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include <boost/property_tree/ptree.hpp>

#include "settings/JsonNotation.h"

namespace orvantis::json {

/// A tree that is being built. Its destructor frees it without recursion.
struct Document {
  Document() = default;
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  ~Document();

  /// Exchanges the contents of the root and another node. The nodes below stay where they are, so of the
  /// notation only the root's own entry has to move.
  void moveRootTo(boost::property_tree::ptree& node) noexcept;

  boost::property_tree::ptree root;
  NotationMap notation;  // of the nodes of root
};

/// Reads one JSON document from the whole stream.
/// @return what is wrong with it, with line and column (counted from 1, in characters); empty when the
///   document was read
std::string read(std::istream& in, Document& document);

/// Whether `read` would accept the text.
bool isReadable(std::string_view text);

/// Copies a tree without recursion, since a tree can be deeper than the call stack.
/// @param to an empty tree
void copy(const boost::property_tree::ptree& from, boost::property_tree::ptree& to);

/// Frees the nodes below the node without recursion and without memory. It overwrites the text of the node.
void clear(boost::property_tree::ptree& root) noexcept;

}  // namespace orvantis::json
