#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/Finding.h"

namespace orvantis::toolkit {

/// The kinds of objects that a document is made of, and, the last three, a list of sensors.
enum class ObjectKind {
  Document,
  Detector,
  Field,
  Zone,
  ExclusionZone,
  SensorZone,
  Sensors,
  Polygon,
  Rectangle,
  Sector,
  Point,
  Lines,
  Line,
  SensorList,
  Sensor,
  Pose,
};

enum class ValueType { Text, Number, WholeNumber, Truth, Object };

/// A key that the library reads, and all that is known of it: what a document may say, what is told about it.
struct Key {
  std::string_view name;
  ValueType type = ValueType::Text;  ///< of each entry, where it is a list
  std::string_view description;
  bool isRequired = false;
  std::string_view unit{};        ///< empty: none
  std::string_view byDefault{};   ///< as JSON; empty: what is there stays, or the key is required
  std::optional<double> least{};  ///< of a number
  std::optional<double> most{};   ///< of a number
  bool isAboveLeast = false;      ///< whether `least` itself is not allowed
  FindingKind outside = FindingKind::OutOfRange;  ///< what a number outside is
  std::string_view hint{};                        ///< what is said about a number outside
  std::vector<std::string_view> words{};  ///< the texts that are allowed, in any letter case; empty: any
  bool isName = false;                    ///< whether the limits of names hold for it
  bool isLabel = false;                   ///< whether it only names things, so that it does no harm elsewhere
  bool isList = false;
  std::size_t fewest = 0;                   ///< entries of a list
  std::optional<std::size_t> many{};        ///< entries of a list, at most
  std::string_view plural{};                ///< what the entries of a list are
  ObjectKind holds = ObjectKind::Document;  ///< of an object, or of each entry of a list of objects
};

/// The keys of such an object, in the order in which they are described.
const std::vector<Key>& keysOf(ObjectKind object);
/// The key of that name; null when such an object has none.
const Key* findKey(ObjectKind object, std::string_view name);

/// What is allowed under a key, such as "a whole number from 0 to 7", "a number (m)" or "a list of 1 to 3
/// zones".
std::string allowed(const Key& key);
/// The same of one entry of a list.
std::string allowedEntry(const Key& key);

}  // namespace orvantis::toolkit
