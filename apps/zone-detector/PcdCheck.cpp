#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <string>

#include "CloudCheck.h"
#include "text/Words.h"

namespace orvantis::app {

using toolkit::bytesLeft;
using toolkit::isNumber;
using toolkit::wholeNumber;
using toolkit::words;

namespace {

// The reader takes lines of up to 1023 bytes and splits longer ones.
constexpr std::size_t longestLine = 1023;
// Larger figures belong to no scan and could overflow a product of two.
constexpr std::uint64_t mostPoints = std::uint64_t{1} << 32U;
// The reader counts points and bytes in int.
constexpr std::uint64_t mostCounted = std::numeric_limits<int>::max();

// In the order that the format demands. A header that repeats or swaps lines means something else to the
// reader than it says, up to memory that was never written.
constexpr std::array<std::string_view, 10> keys = {"VERSION", "FIELDS", "SIZE",      "TYPE",   "COUNT",
                                                   "WIDTH",   "HEIGHT", "VIEWPOINT", "POINTS", "DATA"};

// What parts words for the reader alone, and what also ends a line for it.
constexpr std::string_view otherBlanks = "\v\f";
constexpr std::string_view notText("\v\f\0", 3);

struct Field {
  std::string name;
  std::uint64_t size = 4;
  char type = 'F';
  std::uint64_t count = 1;
};

struct Header {
  std::vector<Field> fields;
  std::uint64_t points = 0;
  std::string data;

  std::uint64_t columns() const {
    return sum([](const Field& field) { return field.count; });
  }
  std::uint64_t pointSize() const {
    return sum([](const Field& field) { return field.count * field.size; });
  }

 private:
  template <typename Amount>
  std::uint64_t sum(Amount amount) const {
    return std::accumulate(fields.begin(), fields.end(), std::uint64_t{0},
                           [&](std::uint64_t total, const Field& field) { return total + amount(field); });
  }
};

std::uint64_t boundedNumber(std::string_view key, std::string_view text, std::uint64_t most) {
  const std::uint64_t value = wholeNumber(key, text);
  if (value > most) {
    throw std::runtime_error(std::string(key) + " is too large: " + std::string(text));
  }
  return value;
}

// Reads the values of one line for all fields.
template <typename Store>
void forEachField(Header& header, const std::vector<std::string_view>& parts, Store store) {
  if (parts.size() != header.fields.size() + 1) {
    throw std::runtime_error(std::string(parts[0]) + " does not have a value for each of the " +
                             std::to_string(header.fields.size()) + " fields");
  }
  for (std::size_t i = 0; i < header.fields.size(); ++i) {
    store(header.fields[i], parts[i + 1]);
  }
}

Header readHeader(std::istream& in) {
  constexpr int longestHeader = 100;  // lines
  Header header;
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  bool hasPoints = false;
  const auto* expected = keys.begin();
  std::string line;
  for (int i = 0; i < longestHeader && std::getline(in, line) && line.size() <= longestLine; ++i) {
    const auto parts = words(line);
    const std::string_view key = parts.empty() ? "" : parts[0] == "COLUMNS" ? "FIELDS" : parts[0];
    // The reader takes a line for the one that it begins like, and skips those that begin like none.
    const bool isKnown =
        std::ranges::any_of(keys, [&](std::string_view known) { return key.starts_with(known); });
    if (line.find_first_of(isKnown ? notText : otherBlanks) != std::string::npos) {
      throw std::runtime_error("its header is no text");
    }
    if (!isKnown) {
      continue;
    }
    const auto* const place = std::find(expected, keys.end(), key);
    if (place == keys.end() || parts.size() < 2) {
      throw std::runtime_error("unexpected line in its header: " + line.substr(0, 40));
    }
    expected = place + 1;
    if (key == "FIELDS") {
      header.fields.clear();
      for (std::size_t k = 1; k < parts.size(); ++k) {
        header.fields.push_back({std::string(parts[k])});
      }
    } else if (key == "SIZE") {
      forEachField(header, parts,
                   [](Field& field, std::string_view text) { field.size = boundedNumber("SIZE", text, 8); });
    } else if (key == "TYPE") {
      forEachField(header, parts, [](Field& field, std::string_view text) { field.type = text[0]; });
    } else if (key == "COUNT") {
      forEachField(header, parts, [](Field& field, std::string_view text) {
        field.count = boundedNumber("COUNT", text, 1U << 16U);
      });
    } else if (key == "WIDTH") {
      width = boundedNumber(key, parts[1], mostPoints);
    } else if (key == "HEIGHT") {
      height = boundedNumber(key, parts[1], mostPoints);
    } else if (key == "POINTS") {
      header.points = boundedNumber(key, parts[1], mostPoints);
      hasPoints = true;
    } else if (key == "DATA") {
      header.data = parts[1];
      break;
    }
  }
  if (header.data.empty()) {
    throw std::runtime_error("it has no PCD header with a DATA line");
  }
  if (!hasPoints) {
    throw std::runtime_error("its header has no POINTS");
  }
  if (width * height != header.points) {
    throw std::runtime_error("its header contradicts itself: WIDTH " + std::to_string(width) +
                             " times HEIGHT " + std::to_string(height) + " are not POINTS " +
                             std::to_string(header.points));
  }
  return header;
}

void checkFields(const Header& header) {
  const auto occurrences = [&](const char* name) {
    return std::ranges::count(header.fields, name, &Field::name);
  };
  for (const char* name : {"x", "y", "z"}) {
    const auto field = std::ranges::find(header.fields, name, &Field::name);
    if (field == header.fields.end()) {
      throw std::runtime_error("it has no field \"" + std::string(name) + "\"");
    }
    if (occurrences(name) != 1) {
      throw std::runtime_error("it has the field \"" + std::string(name) + "\" twice");
    }
    // Numbers of other kinds would be read as 0. In a text, the size says nothing.
    const bool isText = header.data == "ascii";
    const bool isWhole = field->type == 'I' || field->type == 'U';
    const bool known = (field->type == 'F' && (isText || field->size == 4)) ||
                       (isWhole && (isText || field->size == 1 || field->size == 2 || field->size == 4));
    if (field->count != 1 || !known) {
      throw std::runtime_error("field \"" + std::string(name) + "\" is of TYPE " + field->type + ", SIZE " +
                               std::to_string(field->size) + ", COUNT " + std::to_string(field->count) +
                               ", which is not read; one float of 4 bytes is");
    }
  }
  if (const auto empty = std::ranges::find(header.fields, 0U, &Field::count); empty != header.fields.end()) {
    throw std::runtime_error("field \"" + empty->name + "\" has COUNT 0");
  }
  // The reader makes room for normals only when all three are there, but stores each it finds.
  const auto normals = occurrences("normal_x") + occurrences("normal_y") + occurrences("normal_z");
  const bool isWhole =
      occurrences("normal_x") != 0 && occurrences("normal_y") != 0 && occurrences("normal_z") != 0;
  if (normals != 0 && !isWhole) {
    throw std::runtime_error("it has only some of the fields \"normal_x\", \"normal_y\" and \"normal_z\"");
  }
}

struct Column {
  std::size_t number = 0;
  char type = 'F';
};

// Where x, y and z of a text line are.
std::vector<Column> coordinateColumns(const Header& header) {
  std::vector<Column> columns;
  std::size_t number = 0;
  for (const Field& field : header.fields) {
    if (field.name == "x" || field.name == "y" || field.name == "z") {
      columns.push_back({number, field.type});
    }
    number += field.count;
  }
  return columns;
}

// Whole numbers must be plain: the reader takes a leading 0 for octal, and less than nothing for a very large
// number.
bool isCoordinate(std::string_view text, char type) {
  if (type == 'F') {
    return isNumber(text);
  }
  std::int64_t value = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  return error == std::errc() && end == last && std::to_string(value) == text && (type == 'I' || value >= 0);
}

void checkText(std::istream& in, const Header& header) {
  const auto coordinates = coordinateColumns(header);
  std::string line;
  for (std::uint64_t point = 0; point < header.points;) {
    if (!std::getline(in, line)) {
      throw std::runtime_error("ends after " + std::to_string(point) + " of " +
                               std::to_string(header.points) + " points");
    }
    const auto columns = words(line);
    if (columns.empty()) {
      continue;
    }
    const bool good = columns.size() >= header.columns() && line.size() <= longestLine &&
                      line.find('\0') == std::string::npos &&
                      std::ranges::all_of(coordinates, [&](const Column& column) {
                        return isCoordinate(columns[column.number], column.type);
                      });
    if (!good) {
      throw std::runtime_error("point " + std::to_string(point) + " is not " +
                               std::to_string(header.columns()) + " numbers");
    }
    ++point;
  }
}

std::uint64_t littleEndian(std::istream& in) {
  std::array<char, 4> bytes{};
  in.read(bytes.data(), bytes.size());
  std::uint64_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) {
    value = value << 8U | static_cast<unsigned char>(bytes[i]);
  }
  return value;
}

[[noreturn]] void failTooShort(const Header& header) {
  throw std::runtime_error("too short for the " + std::to_string(header.points) + " points of its header");
}

void checkCompressed(std::istream& in, const Header& header, std::uint64_t size) {
  const std::uint64_t compressed = littleEndian(in);
  const std::uint64_t uncompressed = littleEndian(in);
  if (!in || compressed > bytesLeft(in, size)) {
    failTooShort(header);
  }
  if (uncompressed != header.points * header.pointSize()) {
    throw std::runtime_error("its compressed block of " + std::to_string(uncompressed) +
                             " bytes does not hold the " + std::to_string(header.points) +
                             " points of its header");
  }
  constexpr std::uint64_t bestRatio = 264;  // of bytes that one byte of this compression can stand for
  if (uncompressed / bestRatio > compressed) {
    failTooShort(header);
  }
  if (uncompressed > mostCounted) {
    throw std::runtime_error("its compressed block of " + std::to_string(uncompressed) +
                             " bytes is too large");
  }
}

}  // namespace

std::uint64_t checkPcd(const std::string& path, std::uint64_t size) {
  std::ifstream in(path, std::ios::binary);
  in.exceptions(std::ios::badbit);
  const Header header = readHeader(in);
  checkFields(header);
  if (header.points == 0) {
    return 0;
  }
  if (header.data == "ascii") {
    checkText(in, header);
  } else if (header.data == "binary") {
    if (header.points > bytesLeft(in, size) / header.pointSize()) {
      failTooShort(header);
    }
  } else if (header.data == "binary_compressed") {
    checkCompressed(in, header, size);
  } else {
    throw std::runtime_error("DATA is neither ascii, binary nor binary_compressed: " + header.data);
  }
  if (header.points > mostCounted) {
    throw std::runtime_error("it has too many points: " + std::to_string(header.points));
  }
  return header.points;
}

}  // namespace orvantis::app
