#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "planar/Drawing.h"
#include "planar/ExactRegion.h"
#include "planar/RelationRows.h"

namespace orvantis::testing {
namespace {

constexpr Scale asDrawn = {0.0, 1.0};
constexpr Scale farAway = {1.0e7, 1.0 / 1024};          // steps that a double holds exactly
constexpr Scale farAwayInMillimetres = {1.0e7, 0.001};  // steps that are rounded

class RelationTable : public ::testing::TestWithParam<const char*> {};

std::string describe(const RelationRow& row, int symmetry) {
  return row.what + "\n  argument " + toText(row.argument) + "\n  zone " + toText({row.zone}) +
         "\n  symmetry " + std::to_string(symmetry);
}

// How many of the ways to write a ring down are tried: all in every symmetry, or each in one of the eight.
enum class Writings { All, EachOnce };

void expectAnswers(const RelationRow& row, const Scale& scale, Writings writings) {
  for (int symmetry = 0; symmetry < 8; ++symmetry) {
    const GridPolygon argument = mirrored(row.argument, symmetry);
    const GridRing zone = mirrored({row.zone}, symmetry).front();
    const std::vector<Writing> argumentWritings = writingsOf(argument.front());
    const std::vector<Writing> zoneWritings = writingsOf(zone);
    // Both lists from end to end; the shorter one starts again, one further, so that other pairs meet.
    const std::size_t steps = std::max(argumentWritings.size(), zoneWritings.size());
    const std::size_t stride = writings == Writings::All ? 1 : 8;
    for (std::size_t i = stride == 1 ? 0 : static_cast<std::size_t>(symmetry); i < steps; i += stride) {
      const auto pick = [&](const std::vector<Writing>& ways) {
        return ways[(i + i / ways.size()) % ways.size()];
      };
      GridPolygon rewritten = argument;
      for (GridRing& ring : rewritten) {
        Writing writing = pick(argumentWritings);
        writing.start %= ring.size();
        ring = written(ring, writing);
      }
      const GridRing rewrittenZone = written(zone, pick(zoneWritings));
      const Relation answer = answers(planar(rewritten, scale), points(rewrittenZone, scale));
      ASSERT_EQ(answer, row.expected) << describe(row, symmetry) << "\n  written as " << toText(rewritten)
                                      << "\n  and " << toText({rewrittenZone});
    }
  }
}

std::vector<RelationRow> allDrawnRows() {
  std::vector<RelationRow> all;
  for (const char* file :
       {"corners.txt", "edges.txt", "nested.txt", "concave.txt", "holes.txt", "millimetres.txt"}) {
    const std::vector<RelationRow> rows = readRelationRows(file);
    all.insert(all.end(), rows.begin(), rows.end());
  }
  return all;
}

std::vector<RelationRow> allBuiltRows() {
  std::vector<RelationRow> all;
  for (const auto& rows : {boxRows(), frameRows(), combRows(), needleRows(), copyRows()}) {
    all.insert(all.end(), rows.begin(), rows.end());
  }
  return all;
}

TEST_P(RelationTable, HoldsInEverySymmetryAndHoweverTheRingsAreWritten) {
  for (const RelationRow& row : readRelationRows(GetParam())) {
    expectAnswers(row, asDrawn, Writings::All);
  }
}

TEST_P(RelationTable, HoldsTenMillionAwayInStepsOfAThousandth) {
  for (const RelationRow& row : readRelationRows(GetParam())) {
    expectAnswers(row, farAway, Writings::EachOnce);
  }
}

INSTANTIATE_TEST_SUITE_P(Drawn, RelationTable,
                         ::testing::Values("corners.txt", "edges.txt", "nested.txt", "concave.txt",
                                           "holes.txt", "spikes.txt"),
                         [](const auto& table) {
                           const std::string name = table.param;
                           return name.substr(0, name.find('.'));
                         });

TEST(RelationRows, HoldInMillimetresTenMillionMetresAway) {
  for (const RelationRow& row : readRelationRows("millimetres.txt")) {
    expectAnswers(row, farAwayInMillimetres, Writings::All);
  }
}

TEST(RelationRows, TwoBoxesLieToEachOtherIn169Ways) {
  const std::vector<RelationRow> rows = boxRows();
  ASSERT_EQ(rows.size(), 169U);
  for (const RelationRow& row : rows) {
    expectAnswers(row, asDrawn, Writings::EachOnce);
    expectAnswers(row, farAwayInMillimetres, Writings::EachOnce);
  }
}

TEST(RelationRows, ABoxLiesToTheHoleOfAFrameIn169Ways) {
  const std::vector<RelationRow> rows = frameRows();
  ASSERT_EQ(rows.size(), 169U);
  for (const RelationRow& row : rows) {
    expectAnswers(row, asDrawn, Writings::EachOnce);
    expectAnswers(row, farAwayInMillimetres, Writings::EachOnce);
  }
}

TEST(RelationRows, CombsAndBars) {
  for (const RelationRow& row : combRows()) {
    expectAnswers(row, asDrawn, Writings::EachOnce);
  }
}

TEST(RelationRows, Needles) {
  for (const RelationRow& row : needleRows()) {
    expectAnswers(row, asDrawn, Writings::EachOnce);
    expectAnswers(row, farAway, Writings::EachOnce);
  }
}

TEST(RelationRows, ShapesAndTheirCopies) {
  for (const RelationRow& row : copyRows()) {
    expectAnswers(row, asDrawn, Writings::EachOnce);
    expectAnswers(row, farAway, Writings::EachOnce);
  }
}

TEST(RelationRows, AreConfirmedByTheExactJudge) {
  std::vector<RelationRow> rows = allDrawnRows();
  EXPECT_GE(rows.size(), 270U);
  const std::vector<RelationRow> built = allBuiltRows();
  rows.insert(rows.end(), built.begin(), built.end());
  EXPECT_GE(rows.size(), 700U);
  for (const RelationRow& row : rows) {
    EXPECT_TRUE(isSimple(row.zone)) << row.what;
    for (const GridRing& ring : row.argument) {
      EXPECT_TRUE(isSimple(ring)) << row.what;
    }
    for (std::size_t i = 1; i < row.argument.size(); ++i) {
      EXPECT_TRUE(relate({row.argument[i]}, {row.argument.front()}).within) << "hole outside: " << row.what;
    }
    EXPECT_EQ(relate(row.argument, {row.zone}), row.expected) << row.what;
  }
}

TEST(RelationRows, OfSpikesAreConfirmedByTheExactJudge) {
  const std::vector<RelationRow> rows = readRelationRows("spikes.txt");
  EXPECT_GE(rows.size(), 70U);
  for (const RelationRow& row : rows) {
    EXPECT_EQ(relate(row.argument, {row.zone}), row.expected) << row.what;
  }
}

TEST(RelationRows, KeepTheirRelationWhenArgumentAndZoneChangePlaces) {
  for (const RelationRow& row : allBuiltRows()) {
    if (row.argument.size() != 1) {
      continue;
    }
    const Relation there = row.expected;
    const Relation back = answers(planar({row.zone}), points(row.argument.front()));
    EXPECT_EQ(back.intersects, there.intersects) << row.what;
    EXPECT_EQ(back.overlaps, there.overlaps) << row.what;
    EXPECT_EQ(back.within, relate({row.zone}, row.argument).within) << row.what;
  }
}

}  // namespace
}  // namespace orvantis::testing
