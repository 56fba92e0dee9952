#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "CloudCheck.h"
#include "text/Words.h"

namespace orvantis::app {

using toolkit::bytesLeft;
using toolkit::isNumber;
using toolkit::wholeNumber;
using toolkit::words;

namespace {

struct Property {
  std::string name;
  std::uint64_t size = 0;       // of one value in the binary formats
  std::uint64_t countSize = 0;  // of the number of values before a list; 0: no list
};

struct Element {
  std::string name;
  std::uint64_t count = 0;
  std::vector<Property> properties;
};

struct Header {
  std::string format;
  std::vector<Element> elements;
};

std::uint64_t sizeOf(std::string_view type) {
  static constexpr std::array<std::pair<std::string_view, std::uint64_t>, 16> sizes = {{{"char", 1},
                                                                                        {"uchar", 1},
                                                                                        {"int8", 1},
                                                                                        {"uint8", 1},
                                                                                        {"short", 2},
                                                                                        {"ushort", 2},
                                                                                        {"int16", 2},
                                                                                        {"uint16", 2},
                                                                                        {"int", 4},
                                                                                        {"uint", 4},
                                                                                        {"int32", 4},
                                                                                        {"uint32", 4},
                                                                                        {"float", 4},
                                                                                        {"float32", 4},
                                                                                        {"double", 8},
                                                                                        {"float64", 8}}};
  const auto* const entry =
      std::ranges::find(sizes, type, &std::pair<std::string_view, std::uint64_t>::first);
  if (entry == sizes.end()) {
    throw std::runtime_error("unknown type of a property: " + std::string(type));
  }
  return entry->second;
}

void readProperty(const std::vector<std::string_view>& parts, Header& header) {
  if (header.elements.empty()) {
    throw std::runtime_error("a property stands before any element");
  }
  Property property;
  property.name = parts.back();
  if (parts.size() == 5 && parts[1] == "list") {
    property.countSize = sizeOf(parts[2]);
    property.size = sizeOf(parts[3]);
    if (parts[2].starts_with("float") || parts[2] == "double") {
      throw std::runtime_error("the length of a list is of type " + std::string(parts[2]));
    }
  } else if (parts.size() == 3) {
    property.size = sizeOf(parts[1]);
  } else {
    throw std::runtime_error("a property of the header cannot be read");
  }
  header.elements.back().properties.push_back(std::move(property));
}

// The reader splits the header into words wherever its lines end, and takes the rest of a line, or the next
// one when there is none, for a comment. It agrees with what is checked here only where each line is whole.
Header readHeader(std::istream& in) {
  constexpr int longestHeader = 1000;       // lines
  constexpr std::size_t longestLine = 255;  // bytes; the reader takes little more
  std::string line;
  std::getline(in, line);
  if (const auto magic = words(line); magic.size() != 1 || magic[0] != "ply") {
    throw std::runtime_error("does not begin with \"ply\"");
  }
  // The reader looks at this line's end to know how many bytes end the header.
  const std::string lastLine = line == "ply\r" ? "end_header\r" : "end_header";
  Header header;
  for (int i = 0; i < longestHeader && std::getline(in, line) && line.size() <= longestLine; ++i) {
    if (line == lastLine) {
      return header;
    }
    const auto parts = words(line);
    if (parts.empty()) {
      continue;
    }
    const bool isRemark = parts[0] == "comment" || parts[0] == "obj_info";
    if (line.find('\0') != std::string::npos) {
      throw std::runtime_error("the header is no text");
    }
    if (parts.size() == 3 && parts[0] == "format") {
      header.format = parts[1];
    } else if (parts.size() == 3 && parts[0] == "element") {
      header.elements.push_back({std::string(parts[1]), wholeNumber("the number of elements", parts[2]), {}});
    } else if (parts[0] == "property") {
      readProperty(parts, header);
    } else if (!isRemark || (parts.size() == 1 && line.ends_with(parts[0]))) {
      throw std::runtime_error("unexpected line in the header: " + line.substr(0, 40));
    }
  }
  throw std::runtime_error("the header has no \"end_header\"");
}

void checkVertices(const Header& header) {
  const auto vertex = std::ranges::find(header.elements, "vertex", &Element::name);
  if (vertex == header.elements.end() || vertex->count == 0) {
    throw std::runtime_error("it holds no vertices");
  }
  for (const char* name : {"x", "y", "z"}) {
    const auto property = std::ranges::find(vertex->properties, name, &Property::name);
    if (property == vertex->properties.end() || property->countSize != 0) {
      throw std::runtime_error("its vertices have no property \"" + std::string(name) + "\"");
    }
  }
}

[[noreturn]] void failTooShort(const Element& element) {
  throw std::runtime_error("too short for the " + std::to_string(element.count) + " elements \"" +
                           element.name + "\" of its header");
}

// Walks over the data of a binary file.
class Walk {
 public:
  Walk(std::istream& in, std::uint64_t left, bool bigEndian) : in_(in), left_(left), bigEndian_(bigEndian) {}

  void over(const Element& element) {
    const bool hasList = std::ranges::any_of(
        element.properties, [](const Property& property) { return property.countSize != 0; });
    if (!hasList) {
      std::uint64_t size = 0;
      for (const Property& property : element.properties) {
        size += property.size;
      }
      skip(element.count, size, element);
      return;
    }
    for (std::uint64_t i = 0; i < element.count; ++i) {
      for (const Property& property : element.properties) {
        skip(property.countSize == 0 ? 1 : readCount(property.countSize, element), property.size, element);
      }
    }
  }

 private:
  void skip(std::uint64_t count, std::uint64_t size, const Element& element) {
    take(count, size, element);
    in_.seekg(static_cast<std::streamoff>(count * size), std::ios::cur);
  }

  std::uint64_t readCount(std::uint64_t size, const Element& element) {
    take(1, size, element);
    std::array<char, 8> bytes{};
    in_.read(bytes.data(), static_cast<std::streamsize>(size));
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < size; ++i) {
      value = value << 8U | static_cast<unsigned char>(bytes[bigEndian_ ? i : size - 1 - i]);
    }
    return value;
  }

  void take(std::uint64_t count, std::uint64_t size, const Element& element) {
    if (size != 0 && count > left_ / size) {
      failTooShort(element);
    }
    left_ -= count * size;
  }

  std::istream& in_;
  std::uint64_t left_;
  bool bigEndian_;
};

}  // namespace

// The reader of PLY files makes room for as many vertices as the header says, hands out coordinates that were
// never written when a property is missing, and ends the whole program when binary data are cut short.
void checkPly(const std::string& path, std::uint64_t size) {
  std::ifstream in(path, std::ios::binary);
  in.exceptions(std::ios::badbit);
  const Header header = readHeader(in);
  checkVertices(header);
  for (const Element& element : header.elements) {
    // Each takes a byte at least. The reader counts even those that have no properties, one by one.
    if (element.count > size) {
      failTooShort(element);
    }
  }
  const bool bigEndian = header.format == "binary_big_endian";
  if (bigEndian || header.format == "binary_little_endian") {
    Walk walk(in, bytesLeft(in, size), bigEndian);
    for (const Element& element : header.elements) {
      walk.over(element);
    }
  } else if (header.format != "ascii") {
    throw std::runtime_error("unknown format: " + header.format);
  }
}

}  // namespace orvantis::app
