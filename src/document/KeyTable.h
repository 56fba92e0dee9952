#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/Finding.h"

namespace orvantis::toolkit {

/// The kinds of objects of a document. The last three are those of a list of sensors.
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

/// A key that is read, with the values that it may have and the texts that describe it.
struct Key {
  std::string_view name;
  ValueType type = ValueType::Text;  ///< in a list, of each entry
  std::string_view description;
  bool isRequired = false;
  std::string_view unit{};        ///< empty: none
  std::string_view byDefault{};   ///< as JSON; empty: the key is required, or without it nothing changes
  std::optional<double> least{};  ///< of a number
  std::optional<double> most{};   ///< of a number
  bool isAboveLeast = false;      ///< whether `least` itself is not allowed
  FindingKind outside = FindingKind::OutOfRange;  ///< the finding for a number outside
  std::string_view hint{};                        ///< what the finding adds about a number outside
  std::vector<std::string_view> words{};  ///< the texts that are allowed, in any letter case; empty: any
  bool isName = false;                    ///< whether it must keep the limits of names
  bool isLabel = false;  ///< whether it only describes, so that it is harmless in a wrong place
  bool isList = false;
  std::size_t fewest = 0;                   ///< entries of a list
  std::optional<std::size_t> many{};        ///< entries of a list, at most
  std::string_view plural{};                ///< the word for the entries of a list
  ObjectKind holds = ObjectKind::Document;  ///< of an object, or of each entry of a list of objects
};

/// The keys of that kind of object, in the order of their descriptions.
const std::vector<Key>& keysOf(ObjectKind object);
/// The key of that name; null when that kind of object does not have it.
const Key* findKey(ObjectKind object, std::string_view name);

/// What is allowed under a key, such as "a whole number from 0 to 7", "a number (m)" or "a list of 1 to 3
/// zones".
std::string allowed(const Key& key);
/// The same for one entry of a list.
std::string allowedEntry(const Key& key);

}  // namespace orvantis::toolkit
