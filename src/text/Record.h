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

/// What is told of one thing, key by key. JSON objects, rows of tables and sentences are made from it, so
/// that they say the same.
using Record = std::vector<Entry>;

/// A time is written as the exact decimal number of seconds: a double would lose nanoseconds of the seconds
/// since 1970.
using Value =
    std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::chrono::nanoseconds,
                 std::string, std::vector<double>, std::vector<std::string>, Record, std::vector<Record>>;

struct Entry {
  std::string key;          ///< in JSON; empty: not there
  std::string column = {};  ///< in tables; empty: not there
  Value value;
};

/// One JSON object on one line; a number that is not finite, which JSON does not know, becomes null.
std::string toJson(const Record& record);

/// The value as the cell of a table: nothing for null, a list of texts with blanks between.
std::string toCell(const Value& value);

/// A row of a table, with its line end: the entries in the order of the columns, empty where there is none.
std::string toRow(const Record& record, const std::vector<std::string>& columns);

/// A sentence: each {key} of the pattern becomes the value of that entry, times and numbers with at most
/// three decimals, texts printable on a terminal.
std::string toSentence(const Record& record, std::string_view pattern);

}  // namespace orvantis::toolkit
