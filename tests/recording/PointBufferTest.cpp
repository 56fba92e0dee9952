#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "recording/PointBuffer.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

using filter::classify::PointsView;

class Memory {
 public:
  template <typename Number>
  Memory& add(Number number, bool isBigEndian = false) {
    unsigned char bytes[sizeof(Number)];
    std::memcpy(bytes, &number, sizeof(Number));  // the tests run on little-endian machines
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
      bytes_.push_back(static_cast<std::byte>(bytes[isBigEndian ? sizeof(Number) - 1 - i : i]));
    }
    return *this;
  }
  const std::byte* data() const { return bytes_.data(); }

 private:
  std::vector<std::byte> bytes_;
};

template <typename Real>
std::vector<double> values(const void* first, std::size_t stride, std::size_t size) {
  std::vector<double> result;
  for (std::size_t i = 0; i < size; ++i) {
    Real value{};
    std::memcpy(&value, static_cast<const char*>(first) + i * stride, sizeof(Real));
    result.push_back(static_cast<double>(value));
  }
  return result;
}

template <typename Real>
void expectPoints(const Points& points, const std::vector<double>& x, const std::vector<double>& y,
                  const std::vector<double>& z) {
  const auto* const view = std::get_if<PointsView<Real>>(&points);
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(values<Real>(view->x, view->stride, view->size), x);
  EXPECT_EQ(values<Real>(view->y, view->stride, view->size), y);
  EXPECT_EQ(values<Real>(view->z, view->stride, view->size), z);
}

TEST(PointBuffer, FloatsInRecordsAreSeenWhereTheyLie) {
  Memory memory;
  memory.add(9.0F).add(3.0F).add(std::uint8_t{7}).add(1.0F).add(2.0F);
  memory.add(9.0F).add(6.0F).add(std::uint8_t{7}).add(4.0F).add(5.0F);
  PointBuffer buffer;
  const Points points = buffer.view(
      memory.data(), 2, {17, false, {9, NumberType::F4}, {13, NumberType::F4}, {4, NumberType::F4}});
  expectPoints<float>(points, {1, 4}, {2, 5}, {3, 6});
  EXPECT_EQ(std::get<PointsView<float>>(points).x, memory.data() + 9);
}

TEST(PointBuffer, DoublesInRecordsAreSeenWhereTheyLie) {
  Memory memory;
  memory.add(1.1).add(2.2).add(3.3).add(4.4).add(5.5).add(6.6);
  PointBuffer buffer;
  const Points points = buffer.view(
      memory.data(), 2, {24, false, {0, NumberType::F8}, {8, NumberType::F8}, {16, NumberType::F8}});
  expectPoints<double>(points, {1.1, 4.4}, {2.2, 5.5}, {3.3, 6.6});
  EXPECT_EQ(std::get<PointsView<double>>(points).z, memory.data() + 16);
}

TEST(PointBuffer, ColumnsAreSeenWhereTheyLie) {
  Memory memory;
  memory.add(1.0F).add(4.0F).add(9.0F).add(9.0F).add(3.0F).add(6.0F).add(2.0F).add(5.0F);
  PointBuffer buffer;
  const Points points = buffer.viewColumns(
      memory.data(), 2, {0, false, {0, NumberType::F4}, {24, NumberType::F4}, {16, NumberType::F4}});
  expectPoints<float>(points, {1, 4}, {2, 5}, {3, 6});
  EXPECT_EQ(std::get<PointsView<float>>(points).y, memory.data() + 24);
}

TEST(PointBuffer, FloatsOfTheOtherByteOrderStayFloats) {
  Memory memory;
  memory.add(1.5F, true).add(-2.0F, true).add(3.0F, true).add(std::uint8_t{7});
  memory.add(4.0F, true).add(5.0F, true).add(6.25F, true).add(std::uint8_t{7});
  PointBuffer buffer;
  expectPoints<float>(buffer.view(memory.data(), 2,
                                  {13, true, {0, NumberType::F4}, {4, NumberType::F4}, {8, NumberType::F4}}),
                      {1.5, 4}, {-2, 5}, {3, 6.25});
}

TEST(PointBuffer, DoublesOfTheOtherByteOrderStayDoubles) {
  Memory memory;
  memory.add(1.1, true).add(2.2, true).add(3.3, true);
  PointBuffer buffer;
  expectPoints<double>(
      buffer.view(memory.data(), 1,
                  {24, true, {0, NumberType::F8}, {8, NumberType::F8}, {16, NumberType::F8}}),
      {1.1}, {2.2}, {3.3});
}

TEST(PointBuffer, SmallIntegersBecomeFloatsAndLargeOnesDoubles) {
  for (const bool isBigEndian : {false, true}) {
    Memory small;
    small.add(std::int8_t{-128}, isBigEndian).add(std::uint8_t{255}, isBigEndian);
    small.add(std::int16_t{-32768}, isBigEndian).add(std::uint16_t{65535}, isBigEndian);
    PointBuffer buffer;
    expectPoints<float>(
        buffer.view(small.data(), 1,
                    {6, isBigEndian, {0, NumberType::I1}, {1, NumberType::U1}, {2, NumberType::I2}}),
        {-128}, {255}, {-32768});
    expectPoints<float>(
        buffer.view(small.data(), 1,
                    {6, isBigEndian, {4, NumberType::U2}, {1, NumberType::I1}, {0, NumberType::U1}}),
        {65535}, {-1}, {128});
    Memory large;
    large.add(std::int32_t{-2147483647 - 1}, isBigEndian).add(std::uint32_t{4294967295U}, isBigEndian);
    large.add(std::int64_t{-9007199254740993}, isBigEndian)
        .add(std::uint64_t{18446744073709551615U}, isBigEndian);
    expectPoints<double>(
        buffer.view(large.data(), 1,
                    {24, isBigEndian, {0, NumberType::I4}, {4, NumberType::U4}, {8, NumberType::I8}}),
        {-2147483648.0}, {4294967295.0}, {-9007199254740992.0});
    expectPoints<double>(
        buffer.view(large.data(), 1,
                    {24, isBigEndian, {16, NumberType::U8}, {0, NumberType::U4}, {4, NumberType::I4}}),
        {18446744073709551616.0}, {2147483648.0}, {-1.0});
  }
}

TEST(PointBuffer, CoordinatesOfTwoKindsBecomeTheWiderOne) {
  Memory memory;
  memory.add(1.5F).add(2.2).add(std::int16_t{3});
  PointBuffer buffer;
  expectPoints<double>(
      buffer.view(memory.data(), 1,
                  {14, false, {0, NumberType::F4}, {4, NumberType::F8}, {12, NumberType::I2}}),
      {1.5}, {2.2}, {3});
  expectPoints<float>(
      buffer.view(memory.data(), 1,
                  {14, false, {0, NumberType::F4}, {0, NumberType::F4}, {12, NumberType::I2}}),
      {1.5}, {1.5}, {3});
}

TEST(PointBuffer, ColumnsOfDifferentSizesAreConverted) {
  Memory memory;
  memory.add(std::int8_t{1})
      .add(std::int8_t{4})
      .add(2.5F)
      .add(5.5F)
      .add(std::int16_t{3})
      .add(std::int16_t{6});
  PointBuffer buffer;
  expectPoints<float>(
      buffer.viewColumns(memory.data(), 2,
                         {0, false, {0, NumberType::I1}, {2, NumberType::F4}, {10, NumberType::I2}}),
      {1, 4}, {2.5, 5.5}, {3, 6});
}

TEST(PointBuffer, NoRecordsNeedNoMemory) {
  PointBuffer buffer;
  EXPECT_EQ(sizeOf(buffer.view(nullptr, 0, {16, false, {4, NumberType::F4}, {}, {}})), 0U);
  EXPECT_EQ(sizeOf(buffer.viewColumns(nullptr, 0, {16, false, {4, NumberType::F8}, {}, {}})), 0U);
}

TEST(Place, IsTold) {
  EXPECT_EQ(toText(atByte(4096)), "byte 4096");
  EXPECT_EQ(toText(atLine(12)), "line 12");
  EXPECT_EQ(toText(atLine(12, 5)), "line 12, column 5");
  const ReadError error(atLine(3, 4), "x is missing");
  EXPECT_STREQ(error.what(), "x is missing");
  EXPECT_EQ(toText(error.place()), "line 3, column 4");
}

}  // namespace
}  // namespace orvantis::toolkit
