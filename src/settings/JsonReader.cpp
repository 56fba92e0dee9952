#include "settings/JsonReader.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ios>
#include <istream>
#include <limits>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include <boost/json/basic_parser_impl.hpp>

#include <settings/SettingsManager.h>

#include "settings/JsonExponent.h"

namespace orvantis::json {
namespace {

using boost::json::error_code;
using boost::json::string_view;
using boost::property_tree::ptree;

// The answer of a handler to an event: the parser reads on. Only the parser itself refuses a text.
using ReadOn = std::true_type;

// Receives the parser's events and ignores them, which is enough to check a text. It notes when the parser
// stops inside a number. The parser prescribes the names. It sets no limits: the caller limits the sizes and
// the parser limits the depth.
struct Checker {
  static constexpr std::size_t max_array_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_object_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_string_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_key_size = std::numeric_limits<std::size_t>::max();

  ReadOn on_document_begin(error_code&) { return {}; }
  ReadOn on_document_end(error_code&) { return {}; }
  ReadOn on_object_begin(error_code&) { return {}; }
  ReadOn on_object_end(std::size_t, error_code&) { return {}; }
  ReadOn on_array_begin(error_code&) { return {}; }
  ReadOn on_array_end(std::size_t, error_code&) { return {}; }
  ReadOn on_key_part(string_view, std::size_t, error_code&) { return {}; }
  ReadOn on_key(string_view, std::size_t, error_code&) { return {}; }
  ReadOn on_string_part(string_view, std::size_t, error_code&) { return {}; }
  ReadOn on_string(string_view, std::size_t, error_code&) { return {}; }
  ReadOn on_number_part(string_view, error_code&) {
    isInNumber = true;
    return {};
  }
  ReadOn on_int64(std::int64_t, string_view, error_code&) { return {}; }
  ReadOn on_uint64(std::uint64_t, string_view, error_code&) { return {}; }
  ReadOn on_double(double, string_view, error_code&) { return {}; }
  ReadOn on_bool(bool, error_code&) { return {}; }
  ReadOn on_null(error_code&) { return {}; }
  // Comments are not JSON, so the parser never reports one.
  ReadOn on_comment_part(string_view, error_code&) { return {}; }
  ReadOn on_comment(string_view, error_code&) { return {}; }

  bool isInNumber = false;
};

// Builds the tree from the events.
class TreeBuilder : public Checker {
 public:
  explicit TreeBuilder(Document& document) : document_(document) {
    open_.reserve(static_cast<std::size_t>(SettingsManager::MAX_DEPTH));
  }

  ReadOn on_object_begin(error_code&) {
    ptree& node = addNode();
    open_.push_back({&node, {}, false});
    return {};
  }
  ReadOn on_object_end(std::size_t, error_code&) {
    open_.pop_back();
    return {};
  }

  ReadOn on_array_begin(error_code&) {
    if (!open_.empty() && !open_.back().isList) {
      open_.push_back({open_.back().node, std::move(key_), true});
      key_.clear();
      return {};
    }
    ptree& node = addNode();
    mark(node, Array);
    open_.push_back({&node, {}, true});
    return {};
  }
  ReadOn on_array_end(std::size_t count, error_code&) {
    const Frame& list = open_.back();
    if (count == 1 && !isListName(list.name)) {
      mark(list.node->back().second, OneElementList);
    }
    open_.pop_back();
    return {};
  }

  ReadOn on_key_part(string_view part, std::size_t, error_code&) {
    key_.append(part.data(), part.size());
    return {};
  }
  ReadOn on_key(string_view rest, std::size_t, error_code&) {
    key_.append(rest.data(), rest.size());
    return {};
  }

  ReadOn on_string_part(string_view part, std::size_t, error_code&) { return addText(part); }
  ReadOn on_string(string_view rest, std::size_t, error_code&) {
    addText(rest);
    const bool ambiguous = needsQuotedFlag(text_);
    const ptree& node = addLeaf();
    if (ambiguous) {
      mark(node, Quoted);
    }
    return {};
  }

  ReadOn on_number_part(string_view part, error_code& error) {
    Checker::on_number_part(part, error);
    return addText(part);
  }
  ReadOn on_int64(std::int64_t, string_view rest, error_code&) { return addNumber(rest); }
  ReadOn on_uint64(std::uint64_t, string_view rest, error_code&) { return addNumber(rest); }
  ReadOn on_double(double, string_view rest, error_code&) { return addNumber(rest); }

  ReadOn on_bool(bool value, error_code&) {
    text_ = value ? "true" : "false";
    addLeaf();
    return {};
  }
  ReadOn on_null(error_code&) {
    text_ = "null";
    addLeaf();
    return {};
  }

 private:
  // An object or array that is still open. An array adds its elements to `node` under one name.
  struct Frame {
    ptree* node;
    std::string name;
    bool isList;
  };

  ReadOn addText(string_view part) {
    text_.append(part.data(), part.size());
    return {};
  }

  ReadOn addNumber(string_view rest) {
    addText(rest);
    addLeaf();
    return {};
  }

  // The node of the value that starts now: the root, or a new child of the innermost open node.
  ptree& addNode() {
    if (open_.empty()) {
      return document_.root;
    }
    Frame& parent = open_.back();
    if (parent.isList) {
      return append(*parent.node, parent.name);
    }
    ptree& node = append(*parent.node, key_);
    key_.clear();
    return node;
  }

  // A property tree copies each new child. Copying a blank child that is kept for each name, instead of one
  // that is made each time, saves two of five allocations; documents repeat few names.
  ptree& append(ptree& parent, const std::string& name) {
    constexpr std::size_t maxBlanks = 64;
    if (blanks_.size() == maxBlanks) {
      blanks_.clear();
    }
    return parent.push_back(*blanks_.try_emplace(name).first)->second;
  }

  ptree& addLeaf() {
    ptree& node = addNode();
    node.data() = text_;
    text_.clear();
    return node;
  }

  void mark(const ptree& node, Notation flag) { document_.notation[&node] |= flag; }

  Document& document_;
  std::vector<Frame> open_;
  std::unordered_map<std::string, ptree> blanks_;
  std::string key_;
  std::string text_;
};

boost::json::parse_options strictOptions() {
  boost::json::parse_options options;
  options.max_depth = static_cast<std::size_t>(SettingsManager::MAX_DEPTH);
  return options;
}

// Gives the parser a text. Of an exponent that it would refuse, it gets only the first digits; the others go
// to the handler directly. The value that the parser computes is then wrong, but nobody uses it: the handler
// keeps the text. Returns how much of the text was read.
template <typename Handler>
std::size_t feed(boost::json::basic_parser<Handler>& parser, std::string_view text, bool more,
                 error_code& error) {
  std::size_t used = 0;
  Part digits = findLongExponent(text, 0);
  while (digits.begin < text.size()) {
    parser.handler().isInNumber = false;
    used += parser.write_some(true, text.data() + used, digits.begin - used, error);
    if (error || used < digits.begin) {
      return used;
    }
    if (parser.handler().isInNumber) {  // and not in a string
      parser.handler().on_number_part(text.substr(digits.begin, digits.end - digits.begin), error);
      used = digits.end;
    }
    digits = findLongExponent(text, digits.end);
  }
  return used + parser.write_some(more, text.data() + used, text.size() - used, error);
}

// Line and column of the next character.
struct Position {
  std::size_t line = 1;
  std::size_t column = 1;

  void advance(std::string_view text) {
    for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
      text.remove_prefix(end + 1);
      ++line;
      column = 1;
    }
    for (const char c : text) {
      const bool startsCharacter = (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
      column += startsCharacter ? 1 : 0;
    }
  }
};

std::string describe(const error_code& error, const Position& at) {
  std::string reason = error.message();
  if (error == boost::json::error::too_deep) {
    reason = "nested deeper than " + std::to_string(SettingsManager::MAX_DEPTH) + " levels";
  } else if (error == boost::json::error::incomplete) {
    reason = "the document ends too early";
  } else if (error == boost::json::error::extra_data) {
    reason = "text after the document";
  }
  return "JSON error in line " + std::to_string(at.line) + ", column " + std::to_string(at.column) + ": " +
         reason;
}

std::string_view withoutByteOrderMark(std::string_view text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

void setParent(ptree& node, const ptree* parent) {
  // NOLINTNEXTLINE(bugprone-sizeof-expression): the address is what is kept
  node.data().assign(reinterpret_cast<const char*>(&parent), sizeof(parent));
}

ptree* parentOf(const ptree& node) {
  ptree* parent = nullptr;
  std::memcpy(&parent, node.data().data(), sizeof(parent));  // NOLINT(bugprone-sizeof-expression)
  return parent;
}

}  // namespace

std::string read(std::istream& in, Document& document) {
  boost::json::basic_parser<TreeBuilder> parser(strictOptions(), document);
  // Not on the stack beside the parser: the parser returns its own address to say "stopped early", so the end
  // of the block must not be that address.
  std::vector<char> block(16384);
  std::size_t held = 0;  // bytes at the start of the block that the parser has yet to read
  Position at;
  bool first = true;
  while (in) {
    if (held == block.size()) {
      block.resize(2 * block.size());
    }
    try {
      in.read(block.data() + held, static_cast<std::streamsize>(block.size() - held));
    } catch (const std::ios_base::failure&) {
      // A host's stream may be set to throw, also at its end. Its state tells what happened.
    }
    std::string_view text(block.data(), held + static_cast<std::size_t>(in.gcount()));
    if (first) {
      text = withoutByteOrderMark(text);
      first = false;
    }
    if (text.empty()) {
      break;
    }
    const std::string_view ready = in ? text.substr(0, endOfLastToken(text)) : text;
    error_code error;
    const std::size_t used = feed(parser, ready, true, error);
    at.advance(ready.substr(0, used));
    if (!error && used < ready.size()) {
      error = boost::json::error::extra_data;
    }
    if (error) {
      return describe(error, at);
    }
    held = text.size() - ready.size();
    std::memmove(block.data(), ready.data() + ready.size(), held);
  }
  if (!in.eof()) {
    return "the stream cannot be read";
  }
  error_code error;
  parser.write_some(false, nullptr, 0, error);
  return error ? describe(error, at) : std::string();
}

bool isReadable(std::string_view text) {
  boost::json::basic_parser<Checker> parser(strictOptions());
  error_code error;
  return feed(parser, text, false, error) == text.size() && !error;
}

void copy(const ptree& from, ptree& to) {
  to.data() = from.data();
  std::vector<std::pair<const ptree*, ptree*>> open = {{&from, &to}};
  while (!open.empty()) {
    const auto [source, target] = open.back();
    open.pop_back();
    for (const auto& [name, child] : *source) {
      ptree& added = target->push_back({name, ptree(child.data())})->second;
      if (!child.empty()) {
        open.emplace_back(&child, &added);
      }
    }
  }
}

void clear(ptree& root) noexcept {
  // On the way down, each node stores the address of its parent in place of its text, which needs no memory.
  ptree* node = &root;
  setParent(root, &root);
  while (!root.empty()) {
    ptree& last = node->back().second;
    if (!last.empty()) {
      setParent(last, node);
      node = &last;
      continue;
    }
    node->pop_back();
    if (node->empty()) {
      node = parentOf(*node);
    }
  }
}

Document::~Document() {
  clear(root);
}

void Document::moveRootTo(ptree& node) noexcept {
  auto entry = notation.extract(&root);
  if (entry) {
    entry.key() = &node;
    notation.insert(std::move(entry));
  }
  root.swap(node);
}

}  // namespace orvantis::json
