#include "document/LocatedJson.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include <boost/json/basic_parser_impl.hpp>

#include <settings/SettingsManager.h>

namespace orvantis::toolkit {
namespace {

using boost::json::error_code;
using boost::json::string_view;

// Receives the parser's events, named by the parser. The text is fed a line at a time, so an event belongs to
// the line that was fed last.
class Builder {
 public:
  static constexpr std::size_t max_array_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_object_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_string_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_key_size = std::numeric_limits<std::size_t>::max();

  explicit Builder(LocatedNode& root) : root_(root) {}

  void setLine(std::size_t line) { line_ = line; }

  bool on_document_begin(error_code&) { return true; }
  bool on_document_end(error_code&) { return true; }
  bool on_object_begin(error_code&) {
    open_.push_back({&add(LocatedNode::Kind::Object), {}, false});
    return true;
  }
  bool on_object_end(std::size_t, error_code&) { return close(); }
  bool on_array_begin(error_code&) {
    if (open_.empty() || open_.back().isArray) {
      open_.push_back({&add(LocatedNode::Kind::Object), {}, true});
    } else {
      open_.push_back({open_.back().node, std::exchange(key_, {}), true});
    }
    return true;
  }
  bool on_array_end(std::size_t, error_code&) { return close(); }
  bool on_key_part(string_view part, std::size_t, error_code&) { return append(key_, part); }
  bool on_key(string_view part, std::size_t, error_code&) { return append(key_, part); }
  bool on_string_part(string_view part, std::size_t, error_code&) { return append(text_, part); }
  bool on_string(string_view part, std::size_t, error_code&) {
    append(text_, part);
    return addLeaf(LocatedNode::Kind::String);
  }
  bool on_number_part(string_view part, error_code&) { return append(text_, part); }
  bool on_int64(std::int64_t, string_view part, error_code&) { return addNumber(part); }
  bool on_uint64(std::uint64_t, string_view part, error_code&) { return addNumber(part); }
  bool on_double(double, string_view part, error_code&) { return addNumber(part); }
  bool on_bool(bool value, error_code&) { return addNumber(value ? "true" : "false"); }
  bool on_null(error_code&) { return addNumber("null"); }
  bool on_comment_part(string_view, error_code&) { return true; }
  bool on_comment(string_view, error_code&) { return true; }

 private:
  // An object or array that is still open; an array adds to `node` under one name.
  struct Frame {
    LocatedNode* node;
    std::string name;
    bool isArray;
  };

  static bool append(std::string& text, string_view part) {
    text.append(part.data(), part.size());
    return true;
  }
  bool addNumber(string_view part) {
    append(text_, part);
    return addLeaf(LocatedNode::Kind::Literal);
  }
  bool addLeaf(LocatedNode::Kind kind) {
    LocatedNode& node = add(kind);
    node.text = std::exchange(text_, {});
    return true;
  }
  bool close() {
    open_.pop_back();
    return true;
  }

  LocatedNode& add(LocatedNode::Kind kind) {
    if (open_.empty()) {
      root_.line = line_;
      root_.kind = kind;
      return root_;
    }
    Frame& parent = open_.back();
    LocatedNode& node = parent.node->children.emplace_back();
    node.name = parent.isArray ? parent.name : std::exchange(key_, {});
    node.line = line_;
    node.kind = kind;
    node.isElement = parent.isArray;
    return node;
  }

  LocatedNode& root_;
  std::size_t line_ = 1;
  std::vector<Frame> open_;
  std::string key_;
  std::string text_;
};

}  // namespace

std::vector<const LocatedNode*> LocatedNode::all(std::string_view childName) const {
  std::vector<const LocatedNode*> found;
  for (const LocatedNode& child : children) {
    if (child.name == childName) {
      found.push_back(&child);
    }
  }
  return found;
}

const LocatedNode* LocatedNode::find(std::string_view childName) const {
  for (const LocatedNode& child : children) {
    if (child.name == childName) {
      return &child;
    }
  }
  return nullptr;
}

std::optional<LocatedNode> parseLocated(std::string_view json) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (json.starts_with(byteOrderMark)) {
    json.remove_prefix(byteOrderMark.size());
  }
  boost::json::parse_options options;
  options.max_depth = static_cast<std::size_t>(SettingsManager::MAX_DEPTH);
  LocatedNode root;
  boost::json::basic_parser<Builder> parser(options, root);
  error_code error;
  for (std::size_t line = 1; !json.empty(); ++line) {
    const std::string_view text =
        json.substr(0, json.find('\n') + 1 != 0 ? json.find('\n') + 1 : json.size());
    json.remove_prefix(text.size());
    parser.handler().setLine(line);
    if (parser.write_some(true, text.data(), text.size(), error) != text.size() || error) {
      return std::nullopt;
    }
  }
  parser.write_some(false, nullptr, 0, error);
  if (error) {
    return std::nullopt;
  }
  return root;
}

}  // namespace orvantis::toolkit
