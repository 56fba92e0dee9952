#include <istream>
#include <locale>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "settings/JsonNotation.h"
#include "settings/JsonReader.h"
#include "settings/JsonWriter.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;

using StreamText = std::char_traits<char>;

// How values of a type become text and back: property_tree's own way, but in the classic locale.
template <typename T>
class Translator : public boost::property_tree::stream_translator<char, StreamText, std::allocator<char>, T> {
 public:
  Translator()
      : boost::property_tree::stream_translator<char, StreamText, std::allocator<char>, T>(
            std::locale::classic()) {}

  boost::optional<T> get_value(const std::string& text) {
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    // Out of memory must not pass for "no number", which would quietly give the default.
    in.exceptions(std::ios::badbit);
    T value{};
    boost::property_tree::customize_stream<char, StreamText, T>::extract(in, value);
    const bool isWhole = !in.fail() && in.get() == StreamText::eof();
    return isWhole ? boost::optional<T>(value) : boost::none;
  }
};

template <typename T>
auto translator() {
  return Translator<T>();
}
template <>
auto translator<std::string>() {
  return boost::property_tree::id_translator<std::string>();
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

}  // namespace

const std::string SettingsManager::JSON = "json";

SettingsManager::SettingsManager() : path_{{&root_, 0, {}}} {
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
    // Swapping keeps the nodes where they are; only the root's own entry has to move.
    if (auto rootNotation = document.notation.extract(&document.root)) {
      rootNotation.key() = &root_;
      document.notation.insert(std::move(rootNotation));
    }
    root_.swap(document.root);
    notation_.swap(document.notation);
    path_.erase(path_.begin() + 1, path_.end());
    path_.front().list.known = false;
    pathText_.clear();
  }
  json::clear(document.root);
  return loadError_.empty();
}

const std::string& SettingsManager::getLoadError() const {
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

const ptree& SettingsManager::getTree() const {
  return root_;
}

bool SettingsManager::exists(const std::string& name) const {
  return current().find(name) != current().not_found();
}

int SettingsManager::getChildCount(const std::string& name) const {
  return static_cast<int>(childrenNamed(name).size());
}

const std::string& SettingsManager::pathPush(const std::string& name) {
  const auto child = current().find(name);
  return enter(child != current().not_found() ? &child->second : append(name), name);
}

const std::string& SettingsManager::pathPush(const std::string& name, int index, ptree* node) {
  if (node != nullptr) {
    throw std::invalid_argument("SettingsManager::pathPush takes no node for " + name);
  }
  if (index == -1) {
    return pathPush(name);
  }
  const std::vector<ptree*>& children = childrenNamed(name);
  if (index < 0 || static_cast<std::size_t>(index) > children.size()) {
    throw std::out_of_range("index " + std::to_string(index) + " of " + name + " is outside 0.." +
                            std::to_string(children.size()));
  }
  const auto position = static_cast<std::size_t>(index);
  return enter(position < children.size() ? children[position] : append(name), name);
}

const std::string& SettingsManager::pathPop() {
  if (path_.size() > 1) {
    pathText_.resize(path_.back().outerPathLength);
    path_.pop_back();
  }
  return pathText_;
}

boost::optional<const ptree&> SettingsManager::getChildOptional(const std::string& name) const {
  const auto child = std::as_const(current()).find(name);
  if (child == std::as_const(current()).not_found()) {
    return boost::none;
  }
  return child->second;
}

ptree& SettingsManager::putChild(const std::string& name, const ptree& child) {
  const auto existing = current().find(name);
  ptree* stored = nullptr;
  if (existing != current().not_found()) {
    ptree copy = child;  // first: the child may be a part of what it replaces
    stored = &existing->second;
    forEachNode(*stored, [&](const ptree& node) { notation_.erase(&node); });
    stored->swap(copy);
    json::clear(copy);
  } else {
    stored = append(name);
    *stored = child;
  }
  const bool isText = !stored->data().empty();
  forEachNode(*stored, [&](const ptree& node) {
    if (node.empty() && (isText || &node != stored) && json::needsQuotedFlag(node.data())) {
      notation_[&node] = json::Quoted;
    }
  });
  return *stored;
}

template <typename T>
T SettingsManager::get(const std::string& key) const {
  const T value = std::as_const(current()).get<T>(key, translator<T>());
  logger_.traceStream().write("got ", pathText_, ".", key, ", value: ", value);
  return value;
}

template <typename T>
T SettingsManager::get(const std::string& key, const T& defaultValue) const {
  const T value = std::as_const(current()).get_optional<T>(key, translator<T>()).get_value_or(defaultValue);
  logger_.traceStream().write("got ", pathText_, ".", key, ", default: ", defaultValue, ", value  : ", value);
  return value;
}

template <typename T>
void SettingsManager::put(const std::string& key, const T& value) {
  logger_.debugStream().write("set ", pathText_, ".", key, " to: ", value);
  const std::size_t size = current().size();
  const ptree& node = current().put(key, value, translator<T>());
  if (current().size() != size) {
    path_.back().list.known = false;
  }
  wrote(node, value);
}

void SettingsManager::add(const std::string& key, const std::string& value) {
  logger_.debugStream().write("add ", pathText_, ".", key, " to: ", value);
  path_.back().list.known = false;
  wrote(current().add(key, value), value);
}

std::string SettingsManager::getIndexedValue(const std::string& name, int index) const {
  const std::vector<ptree*>& children = childrenNamed(name);
  if (index < 0 || static_cast<std::size_t>(index) >= children.size()) {
    throw boost::property_tree::ptree_error("Cannot access " + std::to_string(index) + " with node named " +
                                            name);
  }
  return children[static_cast<std::size_t>(index)]->data();
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
  path_.push_back({node, outerPathLength, {}});
  try {
    if (outerPathLength != 0) {
      pathText_ += '.';
    }
    pathText_ += name;
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
  ptree* node = &current().push_back({name, ptree()})->second;
  if (extendsList) {
    list.children.push_back(node);
    list.known = true;
  }
  return node;
}

template <typename T>
void SettingsManager::wrote(const ptree& node, const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    if (json::needsQuotedFlag(value)) {
      notation_[&node] = json::Quoted;
      return;
    }
  }
  notation_.erase(&node);
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
