#include "recording/PlyHeader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <system_error>
#include <utility>

#include "recording/FieldCursor.h"
#include "recording/Quoted.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

using Words = std::vector<std::string_view>;

// The header is kept in memory, so it must be limited.
constexpr std::size_t mostLines = 1000;

// The words of a line, at most one more than any valid line has.
Words wordsOf(const LineCursor& lines) {
  return splitRow(lines.line(), ' ', 6);
}

NumberType typeOf(std::string_view name, std::uint64_t line) {
  static constexpr std::array<std::pair<std::string_view, NumberType>, 18> types = {
      {{"char", NumberType::I1},
       {"uchar", NumberType::U1},
       {"int8", NumberType::I1},
       {"uint8", NumberType::U1},
       {"short", NumberType::I2},
       {"ushort", NumberType::U2},
       {"int16", NumberType::I2},
       {"uint16", NumberType::U2},
       {"int", NumberType::I4},
       {"uint", NumberType::U4},
       {"int32", NumberType::I4},
       {"uint32", NumberType::U4},
       {"int64", NumberType::I8},
       {"uint64", NumberType::U8},
       {"float", NumberType::F4},
       {"float32", NumberType::F4},
       {"double", NumberType::F8},
       {"float64", NumberType::F8}}};
  const auto* const found =
      std::find_if(types.begin(), types.end(), [&](const auto& type) { return type.first == name; });
  if (found == types.end()) {
    throw ReadError(atLine(line), "unknown type of a property: " + quoted(name) +
                                      "; char, uchar, short, ushort, int, uint, float and double, and int8 "
                                      "to uint64, float32 and float64 are read");
  }
  return found->second;
}

PlyFormat formatOf(const Words& words, std::uint64_t line) {
  if (words.size() == 3 && words[2] == "1.0") {
    if (words[1] == "ascii") {
      return PlyFormat::Ascii;
    }
    if (words[1] == "binary_little_endian") {
      return PlyFormat::LittleEndian;
    }
    if (words[1] == "binary_big_endian") {
      return PlyFormat::BigEndian;
    }
  }
  throw ReadError(
      atLine(line),
      "unknown format; ascii, binary_little_endian and binary_big_endian of version 1.0 are read");
}

PlyElement elementOf(const Words& words, std::uint64_t line) {
  std::uint64_t count = 0;
  const bool isWhole = words.size() == 3 && [&] {
    const char* const last = words[2].data() + words[2].size();
    const auto [end, error] = std::from_chars(words[2].data(), last, count);
    return end == last && error == std::errc();
  }();
  if (!isWhole) {
    throw ReadError(atLine(line), "an element needs a name and a whole number");
  }
  return {std::string(words[1]), count, line, {}};
}

PlyProperty propertyOf(const Words& words, std::uint64_t line) {
  PlyProperty property;
  property.name = words.back();
  if (words.size() == 3) {
    property.type = typeOf(words[1], line);
  } else if (words.size() == 5 && words[1] == "list") {
    property.isList = true;
    property.lengthType = typeOf(words[2], line);
    property.type = typeOf(words[3], line);
    if (property.lengthType >= NumberType::F4) {
      throw ReadError(atLine(line),
                      "the length of a list is of type " + quoted(words[2]) + "; it must be a whole number");
    }
  } else {
    throw ReadError(atLine(line), "a property needs a type and a name, or \"list\", two types and a name");
  }
  return property;
}

}  // namespace

bool PlyElement::hasList() const {
  return std::any_of(properties.begin(), properties.end(),
                     [](const PlyProperty& property) { return property.isList; });
}

std::uint64_t PlyElement::size() const {
  std::uint64_t size = 0;
  for (const PlyProperty& property : properties) {
    size += sizeOf(property.type);
  }
  return size;
}

PlyHeader readPlyHeader(LineCursor& lines) {
  if (!lines.next() || wordsOf(lines) != Words{"ply"}) {
    throw ReadError(atLine(1), "the first line of a PLY file is \"ply\", not " + quoted(lines.line()));
  }
  PlyHeader header;
  std::optional<PlyFormat> format;
  std::size_t kept = 0;
  while (lines.next()) {
    const Words words = wordsOf(lines);
    const std::string_view key = words.empty() ? "comment" : words[0];
    if (key == "end_header" && words.size() == 1) {
      if (!format) {
        throw ReadError(atLine(lines.number()), "the header has no line \"format\"");
      }
      header.format = *format;
      return header;
    }
    if (key == "format" && !format) {
      format = formatOf(words, lines.number());
    } else if (key == "element") {
      header.elements.push_back(elementOf(words, lines.number()));
      ++kept;
    } else if (key == "property" && !header.elements.empty()) {
      header.elements.back().properties.push_back(propertyOf(words, lines.number()));
      ++kept;
    } else if (key == "property") {
      throw ReadError(atLine(lines.number()), "a property stands before the first element");
    } else if (key != "comment" && key != "obj_info") {
      throw ReadError(atLine(lines.number()),
                      "unexpected line in the header: " + quoted(lines.line()) +
                          "; format, comment, obj_info, element, property and end_header are read");
    }
    if (kept > mostLines) {
      throw ReadError(atLine(lines.number()),
                      "the header has more than " + std::to_string(mostLines) + " elements and properties");
    }
  }
  throw ReadError(atLine(lines.number()), "the header has no line \"end_header\"");
}

}  // namespace orvantis::toolkit
