#pragma once

#include <string>
#include <vector>

#include "planar/ExactRegion.h"

namespace orvantis::testing {

/// A pair of polygons and the answers that follow from how it was drawn.
struct RelationRow {
  std::string what;
  GridPolygon argument;
  GridRing zone;
  Relation expected;
};

/// The answers that a word stands for, seen from the argument: disjoint, touches, overlaps, within, contains,
/// equal.
Relation relationNamed(const std::string& word);

/// Reads a table of tests/data/relations; its first lines explain its form.
std::vector<RelationRow> readRelationRows(const std::string& fileName);

/// Every way in which two boxes can lie to each other: the 13 relations of two intervals on either axis.
std::vector<RelationRow> boxRows();
/// A square frame with a hole, and a box that lies to the hole in each of those 169 ways.
std::vector<RelationRow> frameRows();
/// A comb of `teeth` teeth and a bar laid across them, at every height that tells something.
std::vector<RelationRow> combRows();
/// Triangles up to 100,000 long and one high, beside, on and across each other.
std::vector<RelationRow> needleRows();
/// A shape, and the same shape drawn larger about one of its vertices or moved along one of its edges.
std::vector<RelationRow> copyRows();

}  // namespace orvantis::testing
