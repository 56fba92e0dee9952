#include <algorithm>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "settings/ChildSearch.h"
#include "settings/JsonNotation.h"
#include "settings/JsonReader.h"
#include "settings/JsonWriter.h"
#include "text/ValueText.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;

template <typename T>
struct Translator : toolkit::ValueText<T> {};
template <>
struct Translator<std::string> : boost::property_tree::id_translator<std::string> {};

// Gives the names of a dotted key one by one. property_tree recurses for each name, which overflows the stack
// for a long key; a loop over these names does not.
class KeyNames {
 public:
  explicit KeyNames(const std::string& key) : key_(key) {}

  bool isAtEnd() const { return at_ >= key_.size(); }
  std::string next() {
    const std::size_t dot = std::min(key_.find('.', at_), key_.size());
    std::string name = key_.substr(at_, dot - at_);
    at_ = dot + 1;
    return name;
  }

 private:
  const std::string& key_;
  std::size_t at_ = 0;
};

// The node a dotted key leads to, or null.
const ptree* findKey(const ptree& root, const std::string& key) {
  const ptree* node = &root;
  for (KeyNames names(key); node != nullptr && !names.isAtEnd();) {
    const auto child = node->find(names.next());
    node = child != node->not_found() ? &child->second : nullptr;
  }
  return node;
}

ptree& appendTo(ptree& node, const std::string& name) {
  return node.push_back({name, ptree()})->second;
}

ptree& makeChild(ptree& node, const std::string& name) {
  const auto child = node.find(name);
  return child != node.not_found() ? child->second : appendTo(node, name);
}

// The node a dotted key leads to, made when it is missing.
ptree& makeKey(ptree& root, const std::string& key) {
  ptree* node = &root;
  for (KeyNames names(key); !names.isAtEnd();) {
    node = &makeChild(*node, names.next());
  }
  return *node;
}

// Like makeKey, but the last name always becomes a new child.
ptree& addKey(ptree& root, const std::string& key) {
  ptree* node = &root;
  KeyNames names(key);
  std::string name = names.next();
  while (!names.isAtEnd()) {
    node = &makeChild(*node, name);
    name = names.next();
  }
  return appendTo(*node, name);
}

template <typename Visit>
void forEachNode(const ptree& root, const Visit& visit) {
  std::vector<const ptree*> open = {&root};
  while (!open.empty()) {
    const ptree& node = *open.back();
    open.pop_back();
    visit(node);
    for (const auto& child : node) {
      open.push_back(&child.second);
    }
  }
}

// How a value is written, beyond its text: a text that reads as a number stands in quotes.
template <typename T>
unsigned char notationOf(const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return json::needsQuotedFlag(value) ? json::Quoted : 0;
  }
  return 0;
}

}  // namespace

const std::string SettingsManager::JSON = "json";

SettingsManager::SettingsManager() : path_{{&root_, 0, false, {}}} {
  logger_ = LoggingManager::getInstance().getLogger("SettingsManager");
}

SettingsManager::~SettingsManager() {
  json::clear(root_);
}

bool SettingsManager::loadStream(std::istream& in, const std::string& format) {
  if (format != JSON) {
    loadError_ = "unknown format '" + format + "', only '" + JSON + "' is known";
    return false;
  }
  json::Document document;
  loadError_ = json::read(in, document);
  if (loadError_.empty()) {
    document.moveRootTo(root_);
    notation_.swap(document.notation);
    lent_.clear();
    path_.erase(path_.begin() + 1, path_.end());
    path_.front().list.known = false;
    pathText_.clear();
  }
  return loadError_.empty();
}

const std::string& SettingsManager::getLoadError() const noexcept {
  return loadError_;
}

bool SettingsManager::saveStream(std::ostream& out, const std::string& format) const {
  std::string text;
  if (format != JSON || !json::write(root_, notation_, text) || !json::isReadable(text)) {
    return false;
  }
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.flush();
  return out.good();
}

const ptree& SettingsManager::getTree() const noexcept {
  return root_;
}

bool SettingsManager::exists(const std::string& name) const {
  return current().find(name) != current().not_found();
}

int SettingsManager::getChildCount(const std::string& name) const {
  return static_cast<int>(path_.back().isLent ? json::countNamed(current(), name)
                                              : childrenNamed(name).size());
}

const std::string& SettingsManager::pathPush(const std::string& name) {
  ptree* const child = firstChild(name);
  return enter(child != nullptr ? child : append(name), name);
}

const std::string& SettingsManager::pathPush(const std::string& name, int index, ptree* node) {
  if (node != nullptr) {
    throw std::invalid_argument("SettingsManager::pathPush takes no node for " + name);
  }
  if (index == -1) {
    return pathPush(name);
  }
  ptree* const child = childAt(name, index);
  if (child != nullptr) {
    return enter(child, name);
  }
  if (const int count = getChildCount(name); index != count) {
    throw std::out_of_range("index " + std::to_string(index) + " of " + name + " is outside 0.." +
                            std::to_string(count));
  }
  return enter(append(name), name);
}

const std::string& SettingsManager::pathPop() {
  if (path_.size() > 1) {
    pathText_.resize(path_.back().outerPathLength);
    path_.pop_back();
  }
  return pathText_;
}

boost::optional<const ptree&> SettingsManager::getChildOptional(const std::string& name) const {
  const ptree* const child = firstChild(name);
  return child != nullptr ? boost::optional<const ptree&>(*child) : boost::none;
}

ptree& SettingsManager::putChild(const std::string& name, const ptree& child) {
  // The copy comes first: what can fail must fail before the store is changed, and the child may be a part of
  // the node that it replaces.
  json::Document copy;
  json::copy(child, copy.root);
  const bool isText = !copy.root.data().empty();
  forEachNode(copy.root, [&](const ptree& node) {
    if (node.empty() && (isText || &node != &copy.root) && json::needsQuotedFlag(node.data())) {
      copy.notation[&node] = json::Quoted;
    }
  });
  ptree* const existing = firstChild(name);
  ptree& stored = existing != nullptr ? *existing : *append(name);
  std::vector<const ptree*> replaced;
  forEachNode(stored, [&](const ptree& node) { replaced.push_back(&node); });
  notation_.reserve(notation_.size() + copy.notation.size());
  if (!path_.back().isLent) {
    lent_.insert(&stored);
  }

  for (const ptree* node : replaced) {
    notation_.erase(node);
  }
  copy.moveRootTo(stored);
  notation_.merge(copy.notation);
  return stored;
}

template <typename T>
T SettingsManager::get(const std::string& key) const {
  const ptree* const node = findKey(current(), key);
  if (node == nullptr) {
    throw boost::property_tree::ptree_bad_path("No such node", ptree::path_type(key));
  }
  T value = node->get_value<T>(Translator<T>());
  logger_.traceStream().write("got ", pathText_, ".", key, ", value: ", value);
  return value;
}

template <typename T>
T SettingsManager::get(const std::string& key, const T& defaultValue) const {
  const ptree* const node = findKey(current(), key);
  T value = node != nullptr ? node->get_value_optional<T>(Translator<T>()).get_value_or(defaultValue)
                            : defaultValue;
  logger_.traceStream().write("got ", pathText_, ".", key, ", default: ", defaultValue, ", value  : ", value);
  return value;
}

template <typename T>
void SettingsManager::put(const std::string& key, const T& value) {
  logger_.debugStream().write("set ", pathText_, ".", key, " to: ", value);
  auto text = Translator<T>().put_value(value);
  ChildList& list = path_.back().list;
  const bool wasKnown = std::exchange(list.known, false);
  const std::size_t size = current().size();
  ptree& node = makeKey(current(), key);
  list.known = wasKnown && current().size() == size;
  node.data().swap(*text);
  setNotation(node, notationOf(value));
}

void SettingsManager::add(const std::string& key, const std::string& value) {
  logger_.debugStream().write("add ", pathText_, ".", key, " to: ", value);
  std::string text = value;
  path_.back().list.known = false;
  ptree& node = addKey(current(), key);
  node.data().swap(text);
  setNotation(node, notationOf(value));
}

std::string SettingsManager::getIndexedValue(const std::string& name, int index) const {
  const ptree* const child = childAt(name, index);
  if (child == nullptr) {
    throw boost::property_tree::ptree_error("Cannot access " + std::to_string(index) + " with node named " +
                                            name);
  }
  return child->data();
}

ptree* SettingsManager::firstChild(const std::string& name) const {
  if (path_.back().isLent) {
    return json::findNamed(current(), name, 0);
  }
  const auto child = current().find(name);
  return child != current().not_found() ? &child->second : nullptr;
}

// Null when there is no such child.
ptree* SettingsManager::childAt(const std::string& name, int index) const {
  if (index < 0) {
    return nullptr;
  }
  const auto position = static_cast<std::size_t>(index);
  if (path_.back().isLent) {
    return json::findNamed(current(), name, position);
  }
  const std::vector<ptree*>& children = childrenNamed(name);
  return position < children.size() ? children[position] : nullptr;
}

const std::vector<ptree*>& SettingsManager::childrenNamed(const std::string& name) const {
  ChildList& list = path_.back().list;
  if (!list.known || list.name != name) {
    list.known = false;
    list.name = name;
    list.children.clear();
    const auto [begin, end] = current().equal_range(name);
    for (auto child = begin; child != end; ++child) {
      list.children.push_back(&child->second);
    }
    list.known = true;
  }
  return list.children;
}

const std::string& SettingsManager::enter(ptree* node, const std::string& name) {
  const std::size_t outerPathLength = pathText_.size();
  const std::size_t nameLength = name.size();  // the name may be the path text itself, which grows here
  const bool isBelowRoot = path_.size() == 1;
  const bool isLent = path_.back().isLent || lent_.find(node) != lent_.end();
  path_.push_back({node, outerPathLength, isLent, {}});
  try {
    if (!isBelowRoot) {
      pathText_ += '.';
    }
    pathText_.append(name, 0, nameLength);
  } catch (...) {
    pathText_.resize(outerPathLength);
    path_.pop_back();
    throw;
  }
  return pathText_;
}

ptree* SettingsManager::append(const std::string& name) {
  ChildList& list = path_.back().list;
  const bool extendsList = list.known && list.name == name;
  list.known = list.known && !extendsList;
  ptree* node = &appendTo(current(), name);
  // A node that a host erased through a reference may have had this address; its notation is still there.
  notation_.erase(node);
  if (extendsList) {
    list.children.push_back(node);
    list.known = true;
  }
  return node;
}

void SettingsManager::setNotation(const ptree& node, unsigned char notation) {
  if (const auto found = notation_.find(&node); found != notation_.end()) {
    // The value is new, but the node is still the only element of its array.
    found->second = static_cast<unsigned char>(notation | (found->second & json::OneElementList));
  } else if (notation != 0) {
    notation_.emplace(&node, notation);
  }
}

template ORVANTIS_API std::string SettingsManager::get(const std::string&) const;
template ORVANTIS_API double SettingsManager::get(const std::string&) const;
template ORVANTIS_API int SettingsManager::get(const std::string&) const;
template ORVANTIS_API bool SettingsManager::get(const std::string&) const;
template ORVANTIS_API std::string SettingsManager::get(const std::string&, const std::string&) const;
template ORVANTIS_API double SettingsManager::get(const std::string&, const double&) const;
template ORVANTIS_API int SettingsManager::get(const std::string&, const int&) const;
template ORVANTIS_API bool SettingsManager::get(const std::string&, const bool&) const;
template ORVANTIS_API void SettingsManager::put(const std::string&, const std::string&);
template ORVANTIS_API void SettingsManager::put(const std::string&, const double&);
template ORVANTIS_API void SettingsManager::put(const std::string&, const int&);
template ORVANTIS_API void SettingsManager::put(const std::string&, const bool&);

}  // namespace orvantis
