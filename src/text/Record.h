#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace orvantis::toolkit {

struct Entry;

/// Named values about one thing. JSON objects, rows of tables and sentences are made from it, so that all of
/// them say the same.
using Record = std::vector<Entry>;

/// A time is written as the exact decimal number of seconds: for seconds since 1970, a double would lose
/// nanoseconds.
using Value =
    std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::chrono::nanoseconds,
                 std::string, std::vector<double>, std::vector<std::string>, Record, std::vector<Record>>;

struct Entry {
  std::string key;          ///< in JSON; empty: not in JSON
  std::string column = {};  ///< in tables; empty: not in tables
  Value value;
};

/// One JSON object on one line. A number that is not finite becomes null, because JSON has no such numbers.
std::string toJson(const Record& record);

/// The value as the cell of a table: an empty text for null; the texts of a list with blanks between them.
std::string toCell(const Value& value);

/// A row of a table with its line end: the entries in the order of the columns. A column without an entry has
/// an empty cell.
std::string toRow(const Record& record, const std::vector<std::string>& columns);

/// A sentence: each {key} of the pattern becomes the value of that entry. Times and numbers have at most
/// three decimals, and texts are made printable on a terminal.
std::string toSentence(const Record& record, std::string_view pattern);

}  // namespace orvantis::toolkit
