#include "settings/JsonWriter.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <settings/SettingsManager.h>

namespace orvantis::json {
namespace {

using boost::property_tree::ptree;

using Nodes = std::vector<const ptree*>;
// The children of each repeated name. The key is the child that the search by name finds first.
using Lists = std::unordered_map<const ptree*, Nodes>;

// In document order. The search by name gives another order when a host has sorted the children or inserted
// one in front.
Lists repeatedIn(const ptree& node) {
  Lists lists;
  for (const auto& [name, child] : node) {
    const auto [begin, end] = node.equal_range(name);
    if (std::next(begin) != end) {
      lists[&begin->second].push_back(&child);
    }
  }
  return lists;
}

Nodes childrenOf(const ptree& node) {
  Nodes children;
  for (const ptree::value_type& child : node) {
    children.push_back(&child.second);
  }
  return children;
}

class TreeWriter {
 public:
  TreeWriter(const NotationMap& notation, std::string& text) : notation_(notation), text_(text) {}

  bool writeRoot(const ptree& root) {
    const bool written = writeValue(root, 0);
    text_ += '\n';
    return written;
  }

 private:
  unsigned char flags(const ptree& node) const {
    const auto found = notation_.find(&node);
    return found == notation_.end() ? static_cast<unsigned char>(0) : found->second;
  }

  // `depth` counts the objects and arrays that are open around the value.
  bool writeValue(const ptree& node, int depth) {
    const bool isQuoted = (flags(node) & Quoted) != 0;
    const std::string& value = node.data();
    if (node.empty() && (isQuoted || !value.empty())) {
      writeLeaf(value, !isQuoted && isLiteral(value));
      return true;
    }
    if (!value.empty() || depth >= SettingsManager::MAX_DEPTH) {
      return false;
    }
    const bool isArray = (flags(node) & Array) != 0 &&
                         std::all_of(node.begin(), node.end(),
                                     [](const ptree::value_type& child) { return child.first.empty(); });
    return isArray ? writeElements(childrenOf(node), depth + 1) : writeMembers(node, depth + 1);
  }

  void writeLeaf(const std::string& value, bool bare) {
    if (bare) {
      text_ += value;
    } else {
      writeString(value);
    }
  }

  bool writeMembers(const ptree& node, int depth) {
    const bool oneLine = isShort(node);
    text_ += '{';
    bool first = true;
    Lists lists;
    for (const auto& [name, child] : node) {
      const auto [begin, end] = node.equal_range(name);
      Nodes list;
      if (std::next(begin) != end) {
        if (lists.empty()) {
          lists = repeatedIn(node);
        }
        list = std::move(lists[&begin->second]);
        if (list.empty()) {
          continue;  // written with the first of its name
        }
      } else if (isListName(name) || (flags(child) & OneElementList) != 0) {
        list = {&child};
      }
      separate(first, oneLine, depth);
      writeString(name);
      text_ += ": ";
      const bool isList = !list.empty();
      if (isList && depth >= SettingsManager::MAX_DEPTH) {
        return false;
      }
      if (!(isList ? writeElements(list, depth + 1) : writeValue(child, depth))) {
        return false;
      }
    }
    close(first, oneLine, depth, '}');
    return true;
  }

  bool writeElements(const Nodes& elements, int depth) {
    text_ += '[';
    bool first = true;
    for (const ptree* element : elements) {
      separate(first, false, depth);
      if (!writeValue(*element, depth)) {
        return false;
      }
    }
    close(first, false, depth, ']');
    return true;
  }

  // Points and other small objects are easier to read on one line.
  bool isShort(const ptree& node) const {
    return node.size() <= 2 &&
           std::all_of(node.begin(), node.end(), [this, &node](const ptree::value_type& child) {
             return child.second.empty() && flags(child.second) == 0 && !isListName(child.first) &&
                    node.count(child.first) == 1;
           });
  }

  void separate(bool& first, bool oneLine, int depth) {
    if (!first) {
      text_ += ',';
    }
    first = false;
    if (oneLine) {
      text_ += ' ';
    } else {
      breakLine(depth);
    }
  }

  void close(bool isEmpty, bool oneLine, int depth, char bracket) {
    if (!isEmpty) {
      if (oneLine) {
        text_ += ' ';
      } else {
        breakLine(depth - 1);
      }
    }
    text_ += bracket;
  }

  void breakLine(int depth) {
    text_ += '\n';
    text_.append(static_cast<std::size_t>(depth) * 2, ' ');
  }

  void writeString(std::string_view value) {
    static constexpr std::string_view hex = "0123456789abcdef";
    text_ += '"';
    for (const char c : value) {
      const auto byte = static_cast<unsigned char>(c);
      if (c == '"' || c == '\\') {
        text_ += '\\';
        text_ += c;
      } else if (c == '\n') {
        text_ += "\\n";
      } else if (c == '\t') {
        text_ += "\\t";
      } else if (byte < 0x20) {
        text_ += "\\u00";
        text_ += hex[byte >> 4U];
        text_ += hex[byte & 0x0FU];
      } else {
        text_ += c;
      }
    }
    text_ += '"';
  }

  const NotationMap& notation_;
  std::string& text_;
};

}  // namespace

bool write(const ptree& root, const NotationMap& notation, std::string& text) {
  return TreeWriter(notation, text).writeRoot(root);
}

}  // namespace orvantis::json
