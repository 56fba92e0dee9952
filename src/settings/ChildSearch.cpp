#include "settings/ChildSearch.h"

#include <iterator>

namespace orvantis::json {
namespace {

using boost::property_tree::ptree;

// Child number `position` of that name in the order of the iterators. The caller has checked that it exists.
template <typename Iterator>
ptree* findFrom(Iterator child, const std::string& name, bool hasAllThatName, std::size_t position) {
  for (;; ++child) {
    if (hasAllThatName || child->first == name) {
      if (position == 0) {
        return &child->second;
      }
      --position;
    }
  }
}

}  // namespace

std::size_t countNamed(const ptree& node, const std::string& name) {
  const auto [begin, end] = node.equal_range(name);
  // Most lists have few neighbours of other names. So both kinds are counted in step, until one of them ends.
  auto named = begin;
  auto other = node.ordered_begin();
  for (std::size_t n = 0;; ++n) {
    if (named == end) {
      return n;
    }
    if (other == begin) {
      other = end;
    }
    if (other == node.not_found()) {
      return node.size() - n;
    }
    ++named;
    ++other;
  }
}

ptree* findNamed(ptree& node, const std::string& name, std::size_t position) {
  const std::size_t count = countNamed(node, name);
  if (position >= count) {
    return nullptr;
  }
  if (count == 1) {
    return &node.find(name)->second;
  }
  const bool hasAllThatName = count == node.size();
  return position < count / 2 ? findFrom(node.begin(), name, hasAllThatName, position)
                              : findFrom(node.rbegin(), name, hasAllThatName, count - 1 - position);
}

}  // namespace orvantis::json
