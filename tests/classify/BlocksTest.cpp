#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "classify/Blocks.h"

// Which points are read where they lie. Copied points have the same answers, only later.

namespace orvantis::testing {
namespace {

using filter::classify::Block;
using filter::classify::Blocks;
using filter::classify::Layout;
using filter::classify::PointsView;

struct Piece {
  Layout layout;
  bool isDirect;  // read where it lies
  std::size_t first;
  std::size_t size;

  bool operator==(const Piece& other) const {
    return layout == other.layout && isDirect == other.isDirect && first == other.first && size == other.size;
  }
};

// Writes the number of each point as its mask, block by block.
template <typename Real>
std::vector<Piece> piecesOf(const PointsView<Real>& points) {
  std::vector<Piece> pieces;
  std::vector<std::uint64_t> masks(points.size);
  Blocks<Real> blocks(points, masks.data());
  std::size_t first = 0;
  while (blocks.next()) {
    const Block<Real>& block = blocks.block();
    const auto* const at = static_cast<const unsigned char*>(points.x) + first * points.stride;
    const bool isDirect = block.points.x == at;
    EXPECT_EQ(isDirect, block.masks == masks.data() + first);
    pieces.push_back({block.layout, isDirect, first, blocks.size()});
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      block.masks[i] = first + i;
    }
    blocks.finish();
    first += blocks.size();
  }
  for (std::size_t i = 0; i < masks.size(); ++i) {
    EXPECT_EQ(masks[i], i);
  }
  return pieces;
}

using Pieces = std::vector<Piece>;

template <typename Real>
class BlocksOf : public ::testing::Test {};
using Reals = ::testing::Types<float, double>;
TYPED_TEST_SUITE(BlocksOf, Reals);

TYPED_TEST(BlocksOf, ArraysAreReadInPlaceInWholeGroups) {
  const std::vector<TypeParam> values(100);
  EXPECT_EQ(piecesOf(PointsView<TypeParam>::separate(values.data(), values.data(), values.data(), 100)),
            (Pieces{{Layout::Arrays, true, 0, 96}, {Layout::Arrays, false, 96, 4}}));
  EXPECT_EQ(piecesOf(PointsView<TypeParam>::separate(values.data(), values.data(), values.data(), 96)),
            (Pieces{{Layout::Arrays, true, 0, 96}}));
}

// What reads a record may read past its z, so the last record is always copied.
TYPED_TEST(BlocksOf, RecordsAreReadInPlaceButForTheLast) {
  const std::vector<std::array<TypeParam, 4>> records(97);
  const auto pieces = [&](std::size_t size) {
    return piecesOf(PointsView<TypeParam>::interleaved(records.data(), sizeof(records[0]), size));
  };
  EXPECT_EQ(pieces(97), (Pieces{{Layout::Records, true, 0, 96}, {Layout::Arrays, false, 96, 1}}));
  EXPECT_EQ(pieces(96), (Pieces{{Layout::Records, true, 0, 80}, {Layout::Arrays, false, 80, 16}}));
  EXPECT_EQ(pieces(1), (Pieces{{Layout::Arrays, false, 0, 1}}));
  EXPECT_EQ(pieces(0), Pieces());
}

TYPED_TEST(BlocksOf, RareLayoutsAreCopied) {
  const std::vector<TypeParam> values(800);
  const TypeParam* const x = values.data();
  const auto pieces = [](const TypeParam* ofX, const TypeParam* ofY, const TypeParam* ofZ,
                         std::size_t stride) {
    PointsView<TypeParam> points = PointsView<TypeParam>::separate(ofX, ofY, ofZ, 97);
    points.stride = stride;
    return piecesOf(points);
  };
  const Pieces copied{{Layout::Arrays, false, 0, 97}};
  const std::size_t record = 4 * sizeof(TypeParam);
  EXPECT_EQ(pieces(x + 2, x + 1, x, record), copied);
  EXPECT_EQ(pieces(x, x + 2, x + 3, record), copied);
  EXPECT_EQ(pieces(x, x + 1, x + 3, record), copied);
  EXPECT_EQ(pieces(x, x + 1, x + 2, 0), copied);
}

}  // namespace
}  // namespace orvantis::testing
