#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "document/Finding.h"
#include "document/KeyTable.h"
#include "document/LocatedJson.h"

namespace orvantis::toolkit {

/// An object of a document: its kind and its place.
struct CheckedObject {
  const LocatedNode& node;
  ObjectKind kind;
  std::string path;
};

/// Collects findings.
class Report {
 public:
  void add(FindingKind kind, const Position& at, std::string path, std::string text) {
    kinds_.insert(kind);
    findings_.push_back({kind, at, std::move(path), std::move(text), {}});
  }
  void add(FindingKind kind, const CheckedObject& entry, std::string text) {
    add(kind, entry.node.value, entry.path, std::move(text));
  }

  bool has(FindingKind kind) const { return kinds_.contains(kind); }

  /// All of them in the order of the document.
  std::vector<Finding> inOrder() &&;

 private:
  std::vector<Finding> findings_;
  std::set<FindingKind> kinds_;
};

/// The path of the child with that key; for an entry of a list or array, with its number.
std::string pathOf(const CheckedObject& parent, std::string_view key);
std::string pathOf(const CheckedObject& parent, std::string_view key, std::size_t index);

/// The text in quotes. It is made printable and shortened, because it comes from the document.
std::string quoted(std::string_view text);

}  // namespace orvantis::toolkit
