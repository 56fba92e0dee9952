#include <optional>
#include <random>
#include <string>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include "Documents.h"
#include "IndependentReading.h"
#include "text/JsonText.h"

// Nothing is dropped without a word: documents are broken in one or two places, and whatever is then loaded
// is what an independent reading of the document says, or it is refused.

namespace orvantis::toolkit {
namespace {

using boost::json::array;
using boost::json::object;
using boost::json::value;
using testing::contentOf;

const char* const good = R"({
  "ZoneDetector": {
    "version": "1.1", "debounceTimeMs": 200, "sensitivity": 6, "triggerActiveLevel": "low",
    "useSoftwareAPICommand": true,
    "EvaluationField": [
      { "name": "front", "index": 2, "Zone": [
        { "name": "a", "index": 1, "shape": "polygon", "zMin": 0.25, "zMax": 2.5,
          "Polygon": { "Point": [ {"x": 0, "y": 0}, {"x": 0, "y": 3}, {"x": 4, "y": 0} ] } },
        { "name": "b", "index": 0, "shape": "rectangle", "zMin": -1, "zMax": 1,
          "Rectangle": { "rotation": 30, "Point": [ {"x": 1, "y": 1}, {"x": 2, "y": 3} ] } } ] },
      { "name": "back", "index": 0, "Zone": [
        { "name": "c", "index": 2, "shape": "sector", "zMin": 0.5, "zMax": 1.5,
          "Sector": { "minAngle": -1, "maxAngle": 1.5, "radius": 3 } } ] } ],
    "ExclusionZone": [
      { "name": "post", "shape": "polygon", "zMin": 0.1, "zMax": 3,
        "Polygon": { "Point": [ {"x": 5, "y": 5}, {"x": 5, "y": 6}, {"x": 6, "y": 5} ] } } ]
  },
  "CounterLines": { "CounterLine": [
    { "name": "in", "first": {"x": 1, "y": 2}, "second": {"x": 3, "y": 4} },
    { "name": "out", "first": {"x": 5, "y": 6}, "second": {"x": 7, "y": 9} } ] }
})";

class Breaker {
 public:
  explicit Breaker(unsigned seed) : random_(seed) {}

  // Breaks one place of the document. Whether it still means what it did: a key was misspelt or moved.
  bool breakOnce(value& document) {
    value& place = pick(document);
    if (auto* list = place.if_array()) {
      breakList(*list);
      return false;
    }
    if (auto* inside = place.if_object(); inside != nullptr && !inside->empty()) {
      return breakObject(*inside, document);
    }
    place = something();
    return false;
  }

 private:
  std::size_t below(std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_);
  }

  value& pick(value& from) {
    value* place = &from;
    while (below(5) != 0) {
      if (auto* list = place->if_array(); list != nullptr && !list->empty()) {
        place = &(*list)[below(list->size())];
      } else if (auto* inside = place->if_object(); inside != nullptr && !inside->empty()) {
        place = &(inside->begin() + static_cast<std::ptrdiff_t>(below(inside->size())))->value();
      } else {
        break;
      }
    }
    return *place;
  }

  value something() {
    static const array things = {nullptr,
                                 true,
                                 -1,
                                 0,
                                 1,
                                 7,
                                 99,
                                 1.5,
                                 "",
                                 "abc",
                                 "2",
                                 "2.5",
                                 "1e5m",
                                 "true",
                                 "sector",
                                 "polygon",
                                 object(),
                                 array(),
                                 array{1},
                                 array{1, 2},
                                 "low",
                                 2000000000.0,
                                 object{{"x", 1}}};
    return things[below(things.size())];
  }

  void breakList(array& list) {
    if (list.empty() || below(4) == 0) {
      list.push_back(something());
    } else if (below(3) == 0) {
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(below(list.size())));
    } else if (below(2) == 0) {
      list.push_back(list[below(list.size())]);
    } else {
      const value copy = list[0];
      list[0] = array{copy};
    }
  }

  bool breakObject(object& inside, value& document) {
    const auto member = inside.begin() + static_cast<std::ptrdiff_t>(below(inside.size()));
    const std::string key = std::string(member->key());
    const value content = member->value();
    switch (below(6)) {
      case 0:
        inside.erase(key);
        return false;
      case 1: {
        inside.erase(key);
        std::string other = misspelt(key);
        inside[other] = content;
        return true;
      }
      case 2: {
        // Into another object; where that one has such a key, or is inside the moved one, this says little.
        inside.erase(key);
        auto* other = pick(document).if_object();
        if (other == nullptr || other->contains(key)) {
          return false;
        }
        (*other)[key] = content;
        return true;
      }
      case 3:
        inside[key] = array{content};
        return false;
      case 4:
        inside["comment"] = something();
        return true;
      default:
        inside[key] = something();
        return false;
    }
  }

  std::string misspelt(std::string key) {
    const std::size_t at = below(key.size());
    switch (below(3)) {
      case 0:
        key[at] = static_cast<char>(key[at] ^ 0x20);
        break;
      case 1:
        key.insert(at, 1, 'e');
        break;
      default:
        key[at] = key[at] == 'i' ? 'y' : 'i';
        break;
    }
    return key;
  }

  std::mt19937 random_;
};

std::optional<std::string> reading(const value& document) {
  try {
    return contentOf(document);
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

TEST(Dropped, AGoodDocumentIsReadTheSameWay) {
  const CheckedDocument document = check(good);
  ASSERT_TRUE(document.configuration);
  EXPECT_EQ(document.findings.size(), 0U);
  EXPECT_EQ(contentOf(*document.configuration), contentOf(boost::json::parse(good)));
}

TEST(Dropped, WhatIsLoadedOfABrokenDocumentIsWhatItSays) {
  int loaded = 0;
  int refused = 0;
  for (unsigned seed = 0; seed < 6000; ++seed) {
    value json = boost::json::parse(good);
    Breaker(seed).breakOnce(json);
    const std::string text = toJson(json);
    const CheckedDocument document = check(text);
    const auto expected = reading(json);
    if (!document.configuration) {
      ++refused;
      continue;
    }
    ++loaded;
    ASSERT_TRUE(expected) << text;
    ASSERT_EQ(contentOf(*document.configuration), *expected) << text;
  }
  EXPECT_GT(loaded, 800);
  EXPECT_GT(refused, 800);
}

TEST(Dropped, AMisspeltOrMovedKeyIsRefusedUnlessNothingIsLost) {
  const std::string whole = contentOf(boost::json::parse(good));
  int loaded = 0;
  int refused = 0;
  for (unsigned seed = 10000; seed < 16000; ++seed) {
    value json = boost::json::parse(good);
    if (!Breaker(seed).breakOnce(json)) {
      continue;
    }
    const std::string text = toJson(json);
    const CheckedDocument document = check(text);
    if (document.configuration) {
      ++loaded;
      ASSERT_EQ(contentOf(*document.configuration), whole) << text;
    } else {
      ++refused;
    }
  }
  EXPECT_GT(loaded, 200);
  EXPECT_GT(refused, 500);
}

TEST(Dropped, WhatAnIndependentReadingUnderstandsIsSeldomRefused) {
  // What is stricter than the reading: keys that hide known ones, empty lists, and what stands twice where
  // nothing is read.
  for (unsigned seed = 20000; seed < 26000; ++seed) {
    value json = boost::json::parse(good);
    Breaker(seed).breakOnce(json);
    const std::string text = toJson(json);
    const CheckedDocument document = check(text);
    if (document.configuration || !reading(json)) {
      continue;
    }
    for (const Finding& finding : document.findings) {
      if (finding.severity() == Severity::Error) {
        const bool isKnown =
            finding.kind == FindingKind::MisspeltKey || finding.kind == FindingKind::MisplacedKey ||
            finding.kind == FindingKind::MissingTopNode || finding.kind == FindingKind::EmptyDocument ||
            finding.kind == FindingKind::RepeatedKey || finding.text.find("an empty list") == 0;
        ASSERT_TRUE(isKnown) << text << "\n" << finding.path << ": " << finding.text;
      }
    }
  }
}

}  // namespace
}  // namespace orvantis::toolkit
