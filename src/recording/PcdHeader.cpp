#include "recording/PcdHeader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <system_error>

#include "recording/FieldCursor.h"
#include "recording/NumberRows.h"
#include "recording/Quoted.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

using Words = std::vector<std::string_view>;

constexpr std::array<std::string_view, 10> keys = {"VERSION", "FIELDS", "SIZE",      "TYPE",   "COUNT",
                                                   "WIDTH",   "HEIGHT", "VIEWPOINT", "POINTS", "DATA"};

// The header is kept in memory, so it must be limited.
constexpr std::size_t mostFields = 1000;

std::optional<NumberType> numberType(std::string_view type, std::uint64_t size) {
  for (int i = 0; i <= static_cast<int>(NumberType::F8); ++i) {
    const auto number = static_cast<NumberType>(i);
    if (type.size() == 1 && nameOf(number)[0] == type[0] && sizeOf(number) == size) {
      return number;
    }
  }
  return std::nullopt;
}

// One line of the header.
struct Entry {
  Words words;  // the key, then the values
  std::uint64_t line = 0;
};

class HeaderLines {
 public:
  explicit HeaderLines(LineCursor& lines) : lines_(lines) {
    while (lines_.next()) {
      if (isSkipped(lines_.line(), true)) {
        continue;
      }
      const Words parts = splitRow(lines_.line(), ' ', mostFields + 2);
      Entry& entry = entries_[place(parts[0])];
      if (!entry.words.empty()) {
        refuse(std::string(parts[0]) + " stands twice in the header");
      }
      if (parts.size() < 2) {
        refuse(std::string(parts[0]) + " has no value");
      }
      if (parts.size() > mostFields + 1) {
        refuse(std::string(parts[0]) + " has more than " + std::to_string(mostFields) + " values");
      }
      entry = {parts, lines_.number()};
      if (parts[0] == "DATA") {
        return;
      }
    }
    refuse("the header has no DATA line");
  }

  const Entry& operator[](std::string_view key) const {
    return entries_[static_cast<std::size_t>(std::find(keys.begin(), keys.end(), key) - keys.begin())];
  }
  bool has(std::string_view key) const { return !(*this)[key].words.empty(); }

  const Entry& needed(std::string_view key) const {
    if (!has(key)) {
      refuse("the header has no " + std::string(key));
    }
    return (*this)[key];
  }

  std::uint64_t number(std::string_view key) const { return number(needed(key), 1); }

  // No scan has larger numbers, and the product of two such numbers does not overflow.
  static std::uint64_t number(const Entry& entry, std::size_t i, std::uint64_t most = 0xFFFFFFFFU) {
    const std::string_view text = entry.words[i];
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
      throw ReadError(atLine(entry.line),
                      std::string(entry.words[0]) + " is not a whole number: " + quoted(text));
    }
    if (error != std::errc() || value > most) {
      throw ReadError(atLine(entry.line), std::string(entry.words[0]) + " is too large: " + quoted(text) +
                                              "; at most " + std::to_string(most) + " is read");
    }
    return value;
  }

 private:
  [[noreturn]] void refuse(const std::string& reason) const {
    throw ReadError(atLine(std::max<std::uint64_t>(lines_.number(), 1)), reason);
  }

  std::size_t place(std::string_view key) const {
    const std::string_view name = key == "COLUMNS" ? "FIELDS" : key;
    const auto* const found = std::find(keys.begin(), keys.end(), name);
    if (found == keys.end()) {
      refuse("not a line of a PCD header: " + quoted(lines_.line()) +
             "; a header has VERSION, FIELDS, SIZE, TYPE, COUNT, WIDTH, HEIGHT, VIEWPOINT, POINTS and DATA");
    }
    return static_cast<std::size_t>(found - keys.begin());
  }

  LineCursor& lines_;
  std::array<Entry, keys.size()> entries_;
};

void checkVersion(const Entry& version) {
  static constexpr std::array<std::string_view, 6> known = {".5", ".6", ".7", "0.5", "0.6", "0.7"};
  if (!version.words.empty() && std::find(known.begin(), known.end(), version.words[1]) == known.end()) {
    throw ReadError(atLine(version.line),
                    "VERSION " + quoted(version.words[1]) + " is not known; 0.5, 0.6 and 0.7 are read");
  }
}

const Entry& valuesOf(const HeaderLines& header, std::string_view key, std::size_t numFields) {
  const Entry& entry = header.needed(key);
  if (entry.words.size() != numFields + 1) {
    throw ReadError(atLine(entry.line), std::string(key) + " has " + std::to_string(entry.words.size() - 1) +
                                            " values; FIELDS has " + std::to_string(numFields));
  }
  return entry;
}

std::vector<Column> fieldsOf(const HeaderLines& header) {
  const Entry& names = header.needed("FIELDS");
  const std::size_t numFields = names.words.size() - 1;
  const Entry& sizes = valuesOf(header, "SIZE", numFields);
  const Entry& types = valuesOf(header, "TYPE", numFields);
  std::vector<Column> fields;
  for (std::size_t i = 1; i <= numFields; ++i) {
    const auto type = numberType(types.words[i], HeaderLines::number(sizes, i));
    if (!type) {
      throw ReadError(atLine(types.line), "field " + quoted(names.words[i]) + " is of TYPE " +
                                              quoted(types.words[i]) + " and SIZE " +
                                              std::string(sizes.words[i]) +
                                              "; I and U of 1, 2, 4 and 8 bytes and F of 4 and 8 are read");
    }
    fields.push_back({std::string(names.words[i]), *type, 1});
  }
  if (header.has("COUNT")) {
    const Entry& counts = valuesOf(header, "COUNT", numFields);
    for (std::size_t i = 1; i <= numFields; ++i) {
      constexpr std::uint64_t mostValues = 1U << 20U;
      fields[i - 1].count = static_cast<std::size_t>(HeaderLines::number(counts, i, mostValues));
      if (fields[i - 1].count == 0) {
        throw ReadError(atLine(counts.line),
                        "field " + quoted(names.words[i]) + " has COUNT 0; 1 is the least");
      }
    }
  }
  return fields;
}

std::uint64_t pointsOf(const HeaderLines& header) {
  if (!header.has("WIDTH") || !header.has("HEIGHT")) {
    return header.number("POINTS");
  }
  const std::uint64_t width = header.number("WIDTH");
  const std::uint64_t height = header.number("HEIGHT");
  if (header.has("POINTS") && header.number("POINTS") != width * height) {
    throw ReadError(atLine(header["POINTS"].line), "the header contradicts itself: WIDTH " +
                                                       std::to_string(width) + " times HEIGHT " +
                                                       std::to_string(height) + " are not POINTS " +
                                                       std::to_string(header.number("POINTS")));
  }
  return width * height;
}

PcdData dataOf(const Entry& data) {
  if (data.words[1] == "ascii") {
    return PcdData::Ascii;
  }
  if (data.words[1] == "binary") {
    return PcdData::Binary;
  }
  if (data.words[1] == "binary_compressed") {
    return PcdData::Compressed;
  }
  throw ReadError(atLine(data.line), "DATA " + quoted(data.words[1]) +
                                         " is not known; ascii, binary and binary_compressed are read");
}

}  // namespace

// These two do not overflow: a count is at most 2^20, and the header limits the number of fields.
std::uint64_t PcdHeader::pointSize() const {
  std::uint64_t size = 0;
  for (const Column& field : fields) {
    size += field.count * sizeOf(field.type);
  }
  return size;
}

std::uint64_t PcdHeader::columns() const {
  std::uint64_t count = 0;
  for (const Column& field : fields) {
    count += field.count;
  }
  return count;
}

PcdHeader readPcdHeader(LineCursor& lines) {
  const HeaderLines header(lines);
  checkVersion(header["VERSION"]);
  return {fieldsOf(header), header["FIELDS"].line, pointsOf(header), dataOf(header["DATA"])};
}

}  // namespace orvantis::toolkit
