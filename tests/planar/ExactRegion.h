#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

/// An independent judge of polygons with integer coordinates, too plain to be wrong: every edge is cut
/// wherever it meets the other polygon, and the middle of every piece and what lies to its left and right are
/// located by counting crossings, all in exact integers. Coordinates may reach 2^18 in size.
///
/// Edges that run back over themselves count twice where they are crossed, so they are border without an
/// interior.
namespace orvantis::testing {

struct GridPoint {
  std::int64_t x = 0;
  std::int64_t y = 0;

  friend bool operator==(const GridPoint&, const GridPoint&) = default;
};

/// Vertices of a closed ring; the first one is not repeated.
using GridRing = std::vector<GridPoint>;
/// The outer ring, then the holes.
using GridPolygon = std::vector<GridRing>;

enum class Place { Inside, Border, Outside };

/// What the three questions answer for an argument and a zone.
struct Relation {
  bool within = false;
  bool intersects = false;
  bool overlaps = false;

  friend bool operator==(const Relation&, const Relation&) = default;
};

Place locate(const GridPolygon& polygon, GridPoint point);
Relation relate(const GridPolygon& argument, const GridPolygon& zone);
bool segmentMeets(GridPoint first, GridPoint second, const GridPolygon& polygon);

/// Whether the ring has an area and its edges meet nowhere but where neighbours join.
bool isSimple(const GridRing& ring);
/// Twice the signed area, positive for a clockwise ring.
std::int64_t doubledArea(const GridRing& ring);

std::string toText(const GridPolygon& polygon);
std::ostream& operator<<(std::ostream& out, const Relation& relation);

}  // namespace orvantis::testing
