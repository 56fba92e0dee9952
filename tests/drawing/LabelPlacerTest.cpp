#include <random>

#include <gtest/gtest.h>

#include "drawing/LabelPlacer.h"

namespace orvantis::toolkit {
namespace {

TEST(LabelPlacer, AFreePlaceAtTheAnchorIsTaken) {
  LabelPlacer placer({0, 0, 400, 300});
  const auto box = placer.place({200, 100}, 60, 16, nullptr);
  ASSERT_TRUE(box);
  EXPECT_EQ(box->centre().x, 200.0);
  EXPECT_EQ(box->centre().y, 100.0);
}

TEST(LabelPlacer, LabelsKeepOutOfRegionsThatTheyDoNotName) {
  const PixelRing other = {{150, 50}, {250, 50}, {250, 150}, {150, 150}};
  LabelPlacer placer({0, 0, 400, 300});
  placer.avoidRing(other);
  const auto stranger = placer.place({240, 100}, 20, 10, nullptr);
  const auto own = placer.place({200, 100}, 20, 10, &other);
  ASSERT_TRUE(stranger && own);
  EXPECT_FALSE(isInside(other, stranger->centre()));
  EXPECT_TRUE(isInside(other, own->centre()));
}

TEST(LabelPlacer, LabelsKeepOffLines) {
  LabelPlacer placer({0, 0, 400, 300});
  placer.avoidLine({0, 100}, {400, 100});
  const auto box = placer.place({200, 100}, 60, 16, nullptr);
  ASSERT_TRUE(box);
  EXPECT_TRUE(box->top > 100.0 || box->top + box->height < 100.0);
}

TEST(LabelPlacer, AFullPictureTakesNoMore) {
  LabelPlacer placer({0, 0, 100, 20});
  EXPECT_TRUE(placer.place({50, 10}, 100, 20, nullptr));
  EXPECT_FALSE(placer.place({50, 10}, 10, 10, nullptr));
}

TEST(LabelPlacer, NoLabelCoversAnotherOrLeavesThePicture) {
  std::mt19937 engine(7);
  const auto random = [&engine](unsigned limit) { return static_cast<double>(engine() % limit); };
  for (int round = 0; round < 5; ++round) {
    const PixelBox area{10, 20, 500, 400};
    LabelPlacer placer(area);
    std::vector<PixelBox> placed;
    for (int i = 0; i < 40; ++i) {
      const Pixel anchor{10.0 + random(500), 20.0 + random(400)};
      if (const auto box = placer.place(anchor, 30.0 + random(80), 17, nullptr)) {
        EXPECT_GE(box->left, area.left);
        EXPECT_GE(box->top, area.top);
        EXPECT_LE(box->left + box->width, area.left + area.width);
        EXPECT_LE(box->top + box->height, area.top + area.height);
        for (const PixelBox& other : placed) {
          // Written apart from the placer: one of four sides separates two boxes.
          EXPECT_TRUE(box->left >= other.left + other.width || other.left >= box->left + box->width ||
                      box->top >= other.top + other.height || other.top >= box->top + box->height)
              << "round " << round << ", label " << i;
        }
        placed.push_back(*box);
      }
    }
    EXPECT_GT(placed.size(), 30U);
  }
}

TEST(VisualCentre, OfAnLShapeIsInsideIt) {
  const PixelRing shape = {{0, 0}, {100, 0}, {100, 20}, {20, 20}, {20, 100}, {0, 100}};
  EXPECT_TRUE(isInside(shape, visualCentre(shape, {})));
}

TEST(VisualCentre, AvoidsASmallerRegionInside) {
  const PixelRing large = {{0, 0}, {100, 0}, {100, 100}, {0, 100}};
  const PixelRing small = {{30, 0}, {100, 0}, {100, 100}, {30, 100}};
  EXPECT_LT(visualCentre(large, {&small}).x, 30.0);
}

TEST(IsInside, HoldsForEitherWinding) {
  EXPECT_TRUE(isInside({{0, 0}, {4, 0}, {4, 4}, {0, 4}}, {1, 3}));
  EXPECT_TRUE(isInside({{0, 4}, {4, 4}, {4, 0}, {0, 0}}, {1, 3}));
  EXPECT_FALSE(isInside({{0, 0}, {4, 0}, {4, 4}, {0, 4}}, {5, 3}));
}

}  // namespace
}  // namespace orvantis::toolkit
