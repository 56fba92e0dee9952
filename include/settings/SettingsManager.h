#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <boost/optional/optional.hpp>
#include <boost/property_tree/ptree.hpp>

#include <logging/LoggedComponent.h>
#include <orvantis/Api.h>

namespace orvantis {

/// A settings document: a property tree with a current path.
///
/// All reads and writes are relative to the node that was entered last (`pathPush`); the root is entered at
/// first. Numbers convert in the classic locale, whatever the process locale is. Every read of a key is
/// traced and every write logged at debug level under the logger "SettingsManager", with the full key: the
/// names of the path and the key, joined by ".".
///
/// A parameter called `key` is a dotted path: "a.b" is the child b of the child a. A parameter called `name`
/// is the literal name of a child, dots included. Both may be texts of the store itself, such as the path
/// text that a push returned.
///
/// An operation that does not say what it throws throws std::bad_alloc only. Used by one thread at a time.
/// Neither copied nor moved, since the path refers into the tree.
class ORVANTIS_API SettingsManager : public LoggedComponent {
 public:
  using Tree = boost::property_tree::ptree;

  /// The name of the only format: JSON (RFC 8259).
  static const std::string JSON;
  /// Deepest nesting of a JSON document that is read or written.
  static constexpr int MAX_DEPTH = 64;

  /// An empty document, with the root entered. @throws what LoggingManager::getLogger throws
  SettingsManager();
  SettingsManager(const SettingsManager&) = delete;
  SettingsManager& operator=(const SettingsManager&) = delete;
  ~SettingsManager() override;

  /// Replaces the document by the one read from the whole stream, and returns the path to the root.
  ///
  /// An array under a key becomes repeated children of that key, in order, and so do repeated keys of an
  /// object; an empty array becomes no child; an array directly inside an array, or as the whole document,
  /// becomes children with an empty key. A number keeps its text as written. A byte order mark is skipped.
  /// @param in read to its end. When it is set to throw std::ios_base::failure, this does not leave the
  ///   operation
  /// @return false when the format is unknown, the stream cannot be read or the text is not one JSON document
  ///   of at most MAX_DEPTH levels. Then `getLoadError` says why, with line and column, and document and path
  ///   are unchanged
  /// @throws what the stream's own buffer throws when the stream is set to let that through; document
  ///   and path are then unchanged
  bool loadStream(std::istream& in, const std::string& format);

  /// Why the last `loadStream` failed; empty after a good one.
  const std::string& getLoadError() const noexcept;

  /// Writes the whole document, whatever the current path.
  ///
  /// Repeated children become an array; the lists that the documents define are arrays also with one entry.
  /// Values put as numbers or booleans are written without quotes, strings and numbers that are not finite
  /// with quotes; a value that was read from JSON keeps its type. A subtree stored with `putChild` has only
  /// texts: its values are written with quotes.
  /// @return false when the format is unknown; when the document could not be read again, because a node
  ///   holds both a value and children, a text is not UTF-8, or the nesting, lists included, exceeds
  ///   MAX_DEPTH (nothing is written then); and when the stream fails
  /// @throws std::ios_base::failure when the stream fails and is set to throw, and what the stream's own
  ///   buffer throws when the stream is set to let that through
  bool saveStream(std::ostream& out, const std::string& format) const;

  /// The document's root. Valid as long as the store.
  const Tree& getTree() const noexcept;

  /// Whether the current node has a child of that name. Throws nothing.
  bool exists(const std::string& name) const;
  /// How many children of that name the current node has. When it is called again for each entry of a list,
  /// each call costs one look-up, except inside a subtree that `putChild` stored.
  int getChildCount(const std::string& name) const;

  /// Enters the first child of that name, creating an empty one when there is none (on a read too).
  /// @return the new path text
  const std::string& pathPush(const std::string& name);
  /// Enters child number `index`, in document order, among the children of that name; the index equal to
  /// their number creates and enters one more. Index -1 means "not addressed by position" and enters as
  /// `pathPush(name)` does.
  /// @param node reserved, must be null
  /// @return the new path text
  /// @throws std::out_of_range for any other index, std::invalid_argument for a node; the path is then
  ///   unchanged
  const std::string& pathPush(const std::string& name, int index, Tree* node);
  /// Leaves the node that was entered last; at the root it changes nothing. Throws nothing.
  /// @return the new path text
  const std::string& pathPop();

  /// The first child of that name, or none. Valid until the tree changes. Throws nothing.
  boost::optional<const Tree&> getChildOptional(const std::string& name) const;
  /// Stores a copy of a subtree as the first child of that name, in place of what was there or at the end.
  /// @return the stored node, valid until `putChild` or `loadStream` replaces it. Every later call sees a
  ///   change that the caller makes through it. For that, the store does not remember the lists inside it:
  ///   walking one of n entries by position takes n * n / 4 short steps there. Do not erase nodes that the
  ///   path has entered.
  Tree& putChild(const std::string& name, const Tree& child);

  /// Required read; T is std::string, double, int or bool (these four are built into the library).
  /// @throws boost::property_tree::ptree_bad_path when the key is missing, ptree_bad_data when it does not
  ///   convert
  template <typename T>
  T get(const std::string& key) const;
  /// Read with a default for a key that is missing or does not convert; T as above.
  template <typename T>
  T get(const std::string& key, const T& defaultValue) const;
  /// Sets the first child of that key, creating it at the end when there is none; T as above.
  template <typename T>
  void put(const std::string& key, const T& value);
  /// Appends a child of that key, also when there are some already.
  void add(const std::string& key, const std::string& value);
  /// The value of child number `index`, in document order, among the current node's children of that name.
  /// @throws boost::property_tree::ptree_error when there is no such child, a negative index included
  std::string getIndexedValue(const std::string& name, int index) const;

 private:
  // The children of one name, remembered so that walking a list by position costs a step for each.
  struct ChildList {
    std::string name;
    std::vector<Tree*> children;
    bool known = false;
  };
  struct PathEntry {
    Tree* node;
    std::size_t outerPathLength;
    bool
        isLent;  // inside a subtree whose reference `putChild` gave away, so that its lists can change unseen
    ChildList list;
  };

  Tree& current() const { return *path_.back().node; }
  Tree* firstChild(const std::string& name) const;
  Tree* childAt(const std::string& name, int index) const;
  const std::vector<Tree*>& childrenNamed(const std::string& name) const;
  const std::string& enter(Tree* node, const std::string& name);
  Tree* append(const std::string& name);
  void setNotation(const Tree& node, unsigned char notation);

  Tree root_;
  mutable std::vector<PathEntry> path_;  // mutable for the remembered children alone
  std::string pathText_;
  std::string loadError_;
  // What text and children alone do not say about how a node is written; most nodes need no entry.
  std::unordered_map<const Tree*, unsigned char> notation_;
  std::unordered_set<const Tree*> lent_;  // the roots of such subtrees
};

}  // namespace orvantis
