#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "classify/Combining.h"
#include "classify/Palette.h"

// The sets of zones that cells are made of. A table that tells too little leaves the answers right and makes
// them slow.

namespace orvantis::testing {
namespace {

using filter::classify::combined;
using filter::classify::CrossedCell;
using filter::classify::Decision;
using filter::classify::Grid;
using filter::classify::Palette;

TEST(Palette, SetsHaveCodesInTheOrderInWhichTheyAreSeen) {
  Palette palette;
  std::mt19937_64 random(20261122);
  std::vector<std::uint64_t> sets{0};
  while (sets.size() < 5000) {
    sets.push_back(sets.size() % 2 == 0 ? random()
                                        : std::uint64_t{1} << sets.size() % 64 | sets.size() << 8U);
  }
  std::map<std::uint64_t, std::uint32_t> codes;
  for (int round = 0; round < 2; ++round) {
    for (const std::uint64_t set : sets) {
      codes.emplace(set, static_cast<std::uint32_t>(codes.size()));
      ASSERT_EQ(palette.codeOf(set), codes.at(set)) << set;
    }
  }
  ASSERT_EQ(palette.sets().size(), codes.size());
  for (const auto& [set, code] : codes) {
    EXPECT_EQ(palette.sets()[code], set);
  }
}

Decision decisionOf(std::uint8_t bit, std::uint16_t first, std::uint16_t second, unsigned known,
                    unsigned inside) {
  Decision decision{{first, second}, bit, 0, 0};
  decision.known = static_cast<std::uint8_t>(known & 0xFU);
  decision.inside = static_cast<std::uint8_t>(inside & 0xFU);
  return decision;
}

TEST(Combining, OfMoreThanThreeCurvesOrOfOneThatDecidesNothingIsNotMade) {
  Palette palette;
  const Decision plain = decisionOf(0, 5, 6, 15, 8);
  EXPECT_TRUE(combined(std::vector{plain, decisionOf(1, 6, 7, 15, 8)}, 0, palette));
  EXPECT_FALSE(combined(std::vector{plain, decisionOf(1, 7, 8, 15, 8)}, 0, palette));
  EXPECT_FALSE(combined(std::vector{decisionOf(0, Grid::curveOfZero, 6, 15, 8)}, 0, palette));
  EXPECT_FALSE(combined(std::vector{plain, decisionOf(1, 5, Grid::curveOfZero, 15, 8)}, 0, palette));
  EXPECT_FALSE(combined(std::vector<Decision>(), 0, palette));
}

// Each side of each curve is tried, and each decision is asked by itself.
TEST(Combining, KnowsASetWhereAllDecisionsKnowTheirZone) {
  std::mt19937_64 random(20261123);
  const auto upTo = [&random](unsigned most) { return static_cast<unsigned>(random() % (most + 1)); };
  for (int round = 0; round < 2000; ++round) {
    Palette palette;
    palette.codeOf(random());
    const unsigned numCurves = 1 + upTo(2);
    std::vector<Decision> decisions;
    const unsigned numDecisions = 1 + upTo(3);
    for (unsigned k = 0; k < numDecisions; ++k) {
      const auto curve = [&] { return static_cast<std::uint16_t>(10 + upTo(numCurves - 1)); };
      decisions.push_back(
          decisionOf(static_cast<std::uint8_t>(7 * k), curve(), curve(), 15U & ~(1U << upTo(12)), upTo(15)));
    }
    const std::uint64_t decided = std::uint64_t{1} << 50U;
    const std::optional<CrossedCell> cell = combined(decisions, decided, palette);
    ASSERT_TRUE(cell) << round;
    EXPECT_EQ(palette.sets()[cell->decided], decided);
    std::set<std::uint16_t> curves;
    std::uint64_t asked = 0;
    for (const Decision& decision : decisions) {
      curves.insert(decision.curves.begin(), decision.curves.end());
      asked |= std::uint64_t{1} << decision.bit;
    }
    EXPECT_EQ(cell->asked, asked);
    EXPECT_EQ(std::set<std::uint16_t>(cell->curves.begin(), cell->curves.end()), curves) << round;
    for (unsigned sides = 0; sides < 8; ++sides) {
      std::map<std::uint16_t, unsigned> sideOf;
      bool canOccur = true;
      for (unsigned k = 0; k < 3; ++k) {
        const unsigned side = sides >> k & 1U;
        canOccur = canOccur && sideOf.emplace(cell->curves[k], side).first->second == side;
      }
      bool isKnown = canOccur;
      std::uint64_t zones = decided;
      for (const Decision& decision : decisions) {
        const unsigned own = sideOf.at(decision.curves[0]) | sideOf.at(decision.curves[1]) << 1U;
        isKnown = isKnown && (decision.known >> own & 1U) != 0;
        zones |= (decision.inside >> own & 1U) != 0 ? std::uint64_t{1} << decision.bit : 0;
      }
      const std::uint16_t code = cell->zonesOn[sides];
      ASSERT_EQ(code != CrossedCell::noSet, isKnown) << round << ", " << sides;
      if (isKnown) {
        ASSERT_EQ(palette.sets()[code], zones) << round << ", " << sides;
      }
    }
  }
}

}  // namespace
}  // namespace orvantis::testing
