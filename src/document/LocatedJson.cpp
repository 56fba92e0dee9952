#include "document/LocatedJson.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>

#include <boost/json/basic_parser_impl.hpp>

#include <settings/SettingsManager.h>

namespace orvantis::toolkit {
namespace {

using boost::json::error_code;
using boost::json::string_view;

// Receives the parser's events; the parser prescribes the names. The parser gets the text piece by piece, and
// a piece has at most one bracket, text or literal. So an event belongs to the last piece. The exception is a
// number, whose end the parser sees only in the next piece; so the last literal is remembered.
class Builder {
 public:
  static constexpr std::size_t max_array_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_object_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_string_size = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t max_key_size = std::numeric_limits<std::size_t>::max();

  // An object or array that is still open. An array adds its elements to `node` under one name.
  struct Frame {
    LocatedNode* node;
    std::string name;
    Position key;
    Position begin;
    bool isArray;
  };

  explicit Builder(LocatedNode& root) : root_(root) {}

  void setPosition(const Position& at, bool isLiteral) {
    at_ = at;
    if (isLiteral) {
      literal_ = at;
    }
  }
  const std::vector<Frame>& open() const { return open_; }
  // Adds digits of the current number that the parser does not get.
  void addDigits(std::string_view digits) { text_ += digits; }

  bool on_document_begin(error_code&) { return true; }
  bool on_document_end(error_code&) { return true; }
  bool on_object_begin(error_code&) {
    open_.push_back({&add(LocatedNode::Kind::Object, at_), {}, {}, at_, false});
    return true;
  }
  bool on_object_end(std::size_t, error_code&) { return close(); }
  bool on_array_begin(error_code&) {
    if (open_.empty() || open_.back().isArray) {
      open_.push_back({&add(LocatedNode::Kind::Array, at_), {}, {}, at_, true});
    } else {
      open_.push_back({open_.back().node, std::exchange(key_, {}), keyAt_, at_, true});
    }
    return true;
  }
  bool on_array_end(std::size_t count, error_code&) {
    if (count == 0 && !open_.back().name.empty()) {
      open_.back().node->emptyArrays.push_back({open_.back().name, open_.back().key});
    }
    return close();
  }
  bool on_key_part(string_view part, std::size_t, error_code&) {
    keyAt_ = at_;
    return append(key_, part);
  }
  bool on_key(string_view part, std::size_t, error_code&) {
    keyAt_ = at_;
    return append(key_, part);
  }
  bool on_string_part(string_view part, std::size_t, error_code&) { return append(text_, part); }
  bool on_string(string_view part, std::size_t, error_code&) {
    append(text_, part);
    return addLeaf(LocatedNode::Kind::Text, at_);
  }
  bool on_number_part(string_view part, error_code&) { return append(text_, part); }
  bool on_int64(std::int64_t, string_view part, error_code&) { return addLiteral(part); }
  bool on_uint64(std::uint64_t, string_view part, error_code&) { return addLiteral(part); }
  bool on_double(double, string_view part, error_code&) { return addLiteral(part); }
  bool on_bool(bool value, error_code&) { return addLiteral(value ? "true" : "false"); }
  bool on_null(error_code&) { return addLiteral("null"); }
  bool on_comment_part(string_view, error_code&) { return true; }
  bool on_comment(string_view, error_code&) { return true; }

 private:
  static bool append(std::string& text, string_view part) {
    text.append(part.data(), part.size());
    return true;
  }
  bool addLiteral(string_view part) {
    append(text_, part);
    return addLeaf(LocatedNode::Kind::Literal, literal_);
  }
  bool addLeaf(LocatedNode::Kind kind, const Position& at) {
    LocatedNode& node = add(kind, at);
    node.text = std::exchange(text_, {});
    return true;
  }
  bool close() {
    open_.pop_back();
    return true;
  }

  LocatedNode& add(LocatedNode::Kind kind, const Position& at) {
    if (open_.empty()) {
      root_.key = root_.value = at;
      root_.kind = kind;
      return root_;
    }
    const Frame& parent = open_.back();
    LocatedNode& node = parent.node->children.emplace_back();
    node.name = parent.isArray ? parent.name : std::exchange(key_, {});
    node.key = !parent.isArray ? keyAt_ : parent.name.empty() ? at : parent.key;
    node.value = at;
    node.kind = kind;
    node.isElement = parent.isArray;
    return node;
  }

  LocatedNode& root_;
  std::vector<Frame> open_;
  Position at_;
  Position literal_;
  Position keyAt_;
  std::string key_;
  std::string text_;
};

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view marks = "{}[]:,";

// The bytes of the next piece: a run of blanks, a bracket or mark, a text, or a literal.
std::size_t pieceSize(std::string_view text) {
  if (blanks.find(text[0]) != std::string_view::npos) {
    return std::min(text.find_first_not_of(blanks), text.size());
  }
  if (marks.find(text[0]) != std::string_view::npos) {
    return 1;
  }
  if (text[0] != '"') {
    return std::min(text.find_first_of(" \t\r\n{}[]:,\""), text.size());
  }
  std::size_t at = 1;
  while (at < text.size() && text[at] != '"') {
    at += text[at] == '\\' ? 2 : 1;
  }
  return std::min(at + 1, text.size());
}

bool isLiteral(std::string_view piece) {
  return blanks.find(piece[0]) == std::string_view::npos && marks.find(piece[0]) == std::string_view::npos;
}

// How many bytes of a piece the parser gets. It refuses exponents that do not fit into an int, although JSON
// allows them; nine digits always fit.
std::size_t parsedSize(std::string_view piece) {
  constexpr std::size_t keptDigits = 9;
  if (!isLiteral(piece) || piece[0] == '"') {
    return piece.size();
  }
  const std::size_t letter = piece.find_first_of("eE");
  if (letter == std::string_view::npos) {
    return piece.size();
  }
  const std::size_t digits = std::min(piece.find_first_not_of("+-", letter + 1), piece.size());
  const bool isExponent = piece.find_first_not_of("0123456789", digits) == std::string_view::npos;
  return isExponent ? std::min(digits + keptDigits, piece.size()) : piece.size();
}

void advance(Position& position, std::string_view text) {
  for (const char c : text) {
    if (c == '\n') {
      ++position.line;
      position.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
      ++position.column;
    }
  }
}

SyntaxFault::Reason reasonOf(const error_code& error) {
  if (error == boost::json::error::too_deep) {
    return SyntaxFault::Reason::TooDeep;
  }
  return error == boost::json::error::incomplete ? SyntaxFault::Reason::CutOff : SyntaxFault::Reason::Syntax;
}

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

const LocatedNode::EmptyArray* LocatedNode::findEmptyArray(std::string_view arrayName) const {
  for (const EmptyArray& array : emptyArrays) {
    if (array.name == arrayName) {
      return &array;
    }
  }
  return nullptr;
}

LocatedDocument parseLocated(std::string_view json) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  boost::json::parse_options options;
  options.max_depth = static_cast<std::size_t>(SettingsManager::MAX_DEPTH);
  LocatedDocument result;
  LocatedNode root;
  // On the heap: the parser returns its own address to say "stopped early", so the text must not end there.
  const auto parser = std::make_unique<boost::json::basic_parser<Builder>>(options, root);
  Position at;
  const auto fail = [&](SyntaxFault::Reason reason, std::size_t offset) {
    const auto& open = parser->handler().open();
    result.fault = {reason, offset, at, !open.empty() && !open.back().isArray, {}};
    if (!open.empty()) {
      result.fault.open = open.back().begin;
    }
    return result;
  };
  error_code error;
  for (std::size_t offset = json.substr(0, 3) == byteOrderMark ? 3 : 0; offset < json.size();) {
    const std::string_view piece = json.substr(offset, pieceSize(json.substr(offset)));
    parser->handler().setPosition(at, isLiteral(piece));
    const std::string_view parsed = piece.substr(0, parsedSize(piece));
    const std::size_t used = parser->write_some(true, parsed.data(), parsed.size(), error);
    if (error || used != parsed.size()) {
      advance(at, piece.substr(0, used));
      return fail(error ? reasonOf(error) : SyntaxFault::Reason::TextAfterwards, offset + used);
    }
    parser->handler().addDigits(piece.substr(used));
    advance(at, piece);
    offset += piece.size();
  }
  parser->write_some(false, nullptr, 0, error);
  if (error) {
    return fail(reasonOf(error), json.size());
  }
  result.root = std::move(root);
  return result;
}

}  // namespace orvantis::toolkit
