#include <algorithm>
#include <array>
#include <fstream>
#include <numeric>
#include <stdexcept>
#include <string>

#include "CloudCheck.h"
#include "Words.h"

namespace orvantis::app {
namespace {

// The reader takes lines of up to 1023 bytes and splits longer ones.
constexpr std::size_t longestLine = 1023;
// Larger figures belong to no scan and could overflow a product of two.
constexpr std::uint64_t mostPoints = std::uint64_t{1} << 32U;

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
  std::string line;
  for (int i = 0; i < longestHeader && std::getline(in, line) && line.size() <= longestLine; ++i) {
    const auto parts = words(line);
    if (parts.size() < 2 || parts[0].starts_with('#')) {
      continue;
    }
    const std::string_view key = parts[0];
    if (key == "FIELDS" || key == "COLUMNS") {
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

void checkCoordinates(const Header& header) {
  for (const char* name : {"x", "y", "z"}) {
    const auto field = std::ranges::find(header.fields, name, &Field::name);
    if (field == header.fields.end()) {
      throw std::runtime_error("it has no field \"" + std::string(name) + "\"");
    }
    // 8-byte numbers would be read as 0.
    const bool known = (field->type == 'F' && field->size == 4) ||
                       ((field->type == 'I' || field->type == 'U') &&
                        (field->size == 1 || field->size == 2 || field->size == 4));
    if (field->count != 1 || (!known && header.data != "ascii")) {
      throw std::runtime_error("field \"" + std::string(name) + "\" is of TYPE " + field->type + ", SIZE " +
                               std::to_string(field->size) + ", COUNT " + std::to_string(field->count) +
                               ", which is not read; one float of 4 bytes is");
    }
  }
}

// Where the columns x, y and z of a text line are.
std::array<std::size_t, 3> coordinateColumns(const Header& header) {
  std::array<std::size_t, 3> columns{};
  std::size_t column = 0;
  for (const Field& field : header.fields) {
    if (const std::size_t axis = std::string_view("xyz").find(field.name);
        field.name.size() == 1 && axis < 3) {
      columns[axis] = column;
    }
    column += field.count;
  }
  return columns;
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
                      std::ranges::all_of(coordinates, [&](std::size_t c) { return isNumber(columns[c]); });
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
}

}  // namespace

std::uint64_t checkPcd(const std::string& path, std::uint64_t size) {
  std::ifstream in(path, std::ios::binary);
  const Header header = readHeader(in);
  checkCoordinates(header);
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
  return header.points;
}

}  // namespace orvantis::app
