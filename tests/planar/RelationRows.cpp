#include "planar/RelationRows.h"

#include <fstream>
#include <map>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

namespace orvantis::testing {
namespace {

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) {
    const std::size_t begin = part.find_first_not_of(' ');
    parts.push_back(begin == std::string::npos ? std::string()
                                               : part.substr(begin, part.find_last_not_of(' ') + 1 - begin));
  }
  return parts;
}

GridRing readRing(const std::string& text) {
  GridRing ring;
  for (const std::string& vertex : split(text, ',')) {
    std::istringstream in(vertex);
    GridPoint point;
    EXPECT_TRUE(in >> point.x >> point.y && in.eof()) << "no vertex: '" << vertex << "'";
    ring.push_back(point);
  }
  return ring;
}

GridPolygon readPolygon(const std::string& text) {
  GridPolygon polygon;
  for (const std::string& ring : split(text, '/')) {
    polygon.push_back(readRing(ring));
  }
  return polygon;
}

GridRing box(std::int64_t left, std::int64_t bottom, std::int64_t right, std::int64_t top) {
  return {{left, bottom}, {left, top}, {right, top}, {right, bottom}};
}

struct Interval {
  std::int64_t low;
  std::int64_t high;
};

// The 13 ways to lie to the interval from 10 to 20.
const std::vector<std::pair<std::string, Interval>>& intervals() {
  static const std::vector<std::pair<std::string, Interval>> all = {
      {"before", {2, 8}},    {"meets", {4, 10}},       {"overlaps", {6, 14}},       {"starts", {10, 15}},
      {"during", {12, 17}},  {"finishes", {13, 20}},   {"equals", {10, 20}},        {"finished by", {5, 20}},
      {"contains", {6, 25}}, {"started by", {10, 26}}, {"overlapped by", {16, 24}}, {"met by", {20, 23}},
      {"after", {22, 29}}};
  return all;
}

constexpr Interval reference = {10, 20};

bool touches(Interval a, Interval b) {
  return a.low <= b.high && b.low <= a.high;
}
bool shareLength(Interval a, Interval b) {
  return a.low < b.high && b.low < a.high;
}
bool liesIn(Interval a, Interval b) {
  return b.low <= a.low && a.high <= b.high;
}
bool liesStrictlyIn(Interval a, Interval b) {
  return b.low < a.low && a.high < b.high;
}

GridRing moved(GridRing ring, std::int64_t dx, std::int64_t dy) {
  for (GridPoint& point : ring) {
    point.x += dx;
    point.y += dy;
  }
  return ring;
}

GridRing scaledAbout(const GridRing& ring, GridPoint centre, std::int64_t factor) {
  GridRing scaled;
  for (const GridPoint& point : ring) {
    scaled.push_back({centre.x + (point.x - centre.x) * factor, centre.y + (point.y - centre.y) * factor});
  }
  return scaled;
}

}  // namespace

Relation relationNamed(const std::string& word) {
  static const std::map<std::string, Relation> known = {
      {"disjoint", {false, false, false}}, {"touches", {false, true, false}},
      {"overlaps", {false, true, true}},   {"within", {true, true, false}},
      {"contains", {false, true, false}},  {"equal", {true, true, false}}};
  const auto found = known.find(word);
  EXPECT_TRUE(found != known.end()) << "unknown relation '" << word << "'";
  return found == known.end() ? Relation{} : found->second;
}

std::vector<RelationRow> readRelationRows(const std::string& fileName) {
  std::ifstream in(std::string(ORVANTIS_SOURCE_DIR "/tests/data/relations/") + fileName);
  EXPECT_TRUE(in) << fileName;
  std::vector<RelationRow> rows;
  int lineNumber = 0;
  for (std::string line; std::getline(in, line);) {
    ++lineNumber;
    if (line.empty() || line.front() == '#') {
      continue;
    }
    const std::string place = fileName + ":" + std::to_string(lineNumber);
    const std::vector<std::string> columns = split(line, '|');
    if (columns.size() != 4) {
      ADD_FAILURE() << place << " has " << columns.size() << " columns";
      continue;
    }
    rows.push_back({place + ", " + columns[3], readPolygon(columns[1]), readRing(columns[2]),
                    relationNamed(columns[0])});
  }
  return rows;
}

std::vector<RelationRow> boxRows() {
  std::vector<RelationRow> rows;
  for (const auto& [alongX, x] : intervals()) {
    for (const auto& [alongY, y] : intervals()) {
      Relation expected;
      expected.intersects = touches(x, reference) && touches(y, reference);
      expected.within = liesIn(x, reference) && liesIn(y, reference);
      const bool contains = liesIn(reference, x) && liesIn(reference, y);
      expected.overlaps =
          shareLength(x, reference) && shareLength(y, reference) && !expected.within && !contains;
      rows.push_back({"box " + alongX + " in x and " + alongY + " in y",
                      {box(x.low, y.low, x.high, y.high)},
                      box(reference.low, reference.low, reference.high, reference.high),
                      expected});
    }
  }
  return rows;
}

std::vector<RelationRow> frameRows() {
  const GridPolygon frame = {box(0, 0, 30, 30),
                             box(reference.low, reference.low, reference.high, reference.high)};
  std::vector<RelationRow> rows;
  for (const auto& [alongX, x] : intervals()) {
    for (const auto& [alongY, y] : intervals()) {
      // The box never covers the frame, so the frame is never within it.
      const bool inHole = liesIn(x, reference) && liesIn(y, reference);
      Relation expected;
      expected.intersects = !(liesStrictlyIn(x, reference) && liesStrictlyIn(y, reference));
      expected.overlaps = !inHole && shareLength(x, reference) && shareLength(y, reference);
      rows.push_back({"frame, and a box " + alongX + " its hole in x and " + alongY + " in y", frame,
                      box(x.low, y.low, x.high, y.high), expected});
    }
  }
  return rows;
}

std::vector<RelationRow> combRows() {
  std::vector<RelationRow> rows;
  for (const int teeth : {2, 3, 7}) {
    // Teeth of width 2 and gaps of width 2, from the back (0 to 4 high) up to 10.
    GridRing comb = {{0, 0}};
    for (int i = 0; i < teeth; ++i) {
      const std::int64_t left = 4 * i;
      comb.insert(comb.end(), {{left, i == 0 ? 0 : 4}, {left, 10}, {left + 2, 10}, {left + 2, 4}});
    }
    const std::int64_t width = 4 * teeth - 2;
    comb.erase(comb.begin());  // the first tooth brought the corner along
    comb.back() = {width, 0};
    const std::string name = "comb of " + std::to_string(teeth) + " teeth, and a bar ";
    const auto add = [&](const std::string& what, const GridRing& bar, const char* word) {
      rows.push_back({name + what, {bar}, comb, relationNamed(word)});
    };
    add("across all teeth", box(-1, 6, width + 1, 8), "overlaps");
    add("across all teeth, flush with both sides", box(0, 6, width, 8), "overlaps");
    add("across all teeth along their tips", box(0, 8, width, 10), "overlaps");
    add("resting on the tips", box(-1, 10, width + 1, 12), "touches");
    add("above the tips", box(-1, 11, width + 1, 12), "disjoint");
    add("in the first gap", box(2, 4, 4, 10), "touches");
    add("in the first gap, touching one side", box(2, 5, 3, 9), "touches");
    add("in the first gap, touching its bottom", GridRing{{3, 4}, {2, 12}, {3, 14}, {4, 12}}, "touches");
    add("hanging free in the first gap", GridRing{{3, 5}, {2, 12}, {4, 12}}, "disjoint");
    add("along the inside of the back", box(0, 0, width, 4), "within");
    add("across the back", box(1, 1, width - 1, 3), "within");
    add("below the back", box(0, -3, width, 0), "touches");
    add("over the whole comb", box(0, 0, width, 10), "contains");
    add("that fills the first gap and more of the back", box(2, 3, 4, 10), "overlaps");
    add("in the first tooth, as wide as the tooth", box(0, 5, 2, 10), "within");
  }
  return rows;
}

std::vector<RelationRow> needleRows() {
  std::vector<RelationRow> rows;
  for (const std::int64_t length : {100, 10000, 100000}) {
    const GridRing needle = {{0, 0}, {length, 1}, {length, 0}};
    const std::string name = "needle " + std::to_string(length) + " long, ";
    const auto add = [&](const std::string& what, const GridRing& argument, const GridRing& zone,
                         const char* word) {
      rows.push_back({name + what, {argument}, zone, relationNamed(word)});
    };
    add("equal", needle, needle, "equal");
    add("in a box of its size", needle, box(0, 0, length, 1), "within");
    add("and, as argument, the box of its size", box(0, 0, length, 1), needle, "contains");
    add("and its mirror image across the long side", {{0, 0}, {length, 0}, {length, -1}}, needle, "touches");
    add("and the other half of its box", {{0, 0}, {0, 1}, {length, 1}}, needle, "touches");
    add("and the needle from the other end", {{length, 0}, {0, 1}, {0, 0}}, needle, "overlaps");
    add("and one that meets its tip", {{0, 0}, {-length, 1}, {-length, 0}}, needle, "touches");
    add("and one just above its tip", {{0, 1}, {-length, 1}, {-length, 2}}, needle, "disjoint");
    add("through a box", needle, box(length / 4, -1, length / 2, 1), "overlaps");
    add("with its tip in a box", needle, box(-1, -1, 1, 1), "overlaps");
    add("with its tip on the side of a box", needle, box(-2, -1, 0, 1), "touches");
    add("and one of half its length inside it", {{length / 2, 0}, {length, 1}, {length, 0}}, needle,
        "within");
    add("and a box at its blunt end", box(length, 0, length + 1, 1), needle, "touches");
    add("and a sliver along its slanted side", {{0, 0}, {0, 1}, {length, 2}, {length, 1}}, needle, "touches");
    add("and, as argument, a box that reaches below it", {{0, -1}, {0, 1}, {length, 1}, {length, -1}}, needle,
        "contains");
    add("and a sliver one above it", {{0, 1}, {0, 2}, {length, 3}, {length, 2}}, needle, "disjoint");
  }
  return rows;
}

std::vector<RelationRow> copyRows() {
  const std::vector<std::pair<std::string, GridRing>> convexShapes = {
      {"triangle", {{0, 0}, {1, 5}, {4, 2}}},
      {"square", box(0, 0, 4, 4)},
      {"lozenge", {{0, 0}, {2, 3}, {4, 0}, {2, -3}}},
      {"pentagon", {{0, 0}, {-1, 3}, {2, 6}, {5, 3}, {4, 0}}},
      {"octagon", {{0, 0}, {-2, 2}, {-2, 5}, {0, 7}, {3, 7}, {5, 5}, {5, 2}, {3, 0}}}};
  std::vector<RelationRow> rows;
  for (const auto& [name, shape] : convexShapes) {
    rows.push_back({name + " and itself", {shape}, shape, relationNamed("equal")});
    for (std::size_t i = 0; i < shape.size(); ++i) {
      const GridPoint vertex = shape[i];
      const GridPoint next = shape[(i + 1) % shape.size()];
      const std::string at = name + ", vertex " + std::to_string(i) + ": ";
      rows.push_back({at + "smaller one within, sharing two edges",
                      {shape},
                      scaledAbout(shape, vertex, 3),
                      relationNamed("within")});
      rows.push_back({at + "larger one around, sharing two edges",
                      {scaledAbout(shape, vertex, 2)},
                      shape,
                      relationNamed("contains")});
      rows.push_back({at + "turned half about the vertex",
                      {scaledAbout(shape, vertex, -1)},
                      shape,
                      relationNamed("touches")});
      rows.push_back({at + "larger one turned half about the vertex",
                      {scaledAbout(shape, vertex, -4)},
                      shape,
                      relationNamed("touches")});
      rows.push_back(
          {at + "moved along the edge by its length",
           {moved(shape, next.x - vertex.x, next.y - vertex.y)},
           shape,
           relationNamed(name == "triangle" || name == "square" || name == "lozenge" ? "touches"
                                                                                     : "overlaps")});
      rows.push_back({at + "twice as large, moved half along the edge",
                      {moved(scaledAbout(shape, vertex, 2), next.x - vertex.x, next.y - vertex.y)},
                      scaledAbout(shape, vertex, 2),
                      relationNamed("overlaps")});
    }
  }
  return rows;
}

}  // namespace orvantis::testing
