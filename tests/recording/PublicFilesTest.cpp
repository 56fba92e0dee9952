// The frames that developers keep beside the repository, with the answers that other readers gave.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include "FrameFiles.h"
#include "Sha256.h"

namespace orvantis::toolkit {
namespace {

using boost::property_tree::ptree;
using testing::Point;

const std::filesystem::path folder =
    std::filesystem::path(ORVANTIS_SOURCE_DIR) / ".." / "shared" / "data" / "readers";

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// As the answers have it: doubles, with one way to write that there is no number.
std::string digestOf(const std::vector<Point>& points) {
  std::vector<unsigned char> bytes;
  for (const Point& point : points) {
    for (const double value : point) {
      const double number = std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value;
      const std::string raw = testing::raw(number);
      bytes.insert(bytes.end(), raw.begin(), raw.end());
    }
  }
  return testing::sha256(bytes);
}

struct Answer {
  std::size_t points = 0;
  std::size_t notFinite = 0;
  std::size_t atOrigin = 0;
  std::array<std::pair<double, double>, 3> extents{};
  std::string digest;

  bool operator==(const Answer&) const = default;
};

Answer answerOf(const ptree& tree) {
  Answer answer{tree.get<std::size_t>("points"),
                tree.get<std::size_t>("non_finite"),
                tree.get<std::size_t>("at_origin"),
                {},
                tree.get<std::string>("sha256_f64")};
  const char* const names[] = {"x", "y", "z"};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const ptree& extent = tree.get_child(names[axis]);
    if (extent.size() == 2) {
      answer.extents[axis] = {std::stod(extent.front().second.data()),
                              std::stod(extent.back().second.data())};
    }
  }
  return answer;
}

Answer answerOf(const std::vector<Point>& points) {
  Answer answer{points.size(), 0, 0, {}, digestOf(points)};
  bool isFirst = true;
  for (const Point& point : points) {
    answer.atOrigin += point == Point{0, 0, 0} ? 1U : 0U;
    if (!std::all_of(point.begin(), point.end(), [](double value) { return std::isfinite(value); })) {
      ++answer.notFinite;
      continue;
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
      auto& [least, greatest] = answer.extents[axis];
      least = isFirst ? point[axis] : std::min(least, point[axis]);
      greatest = isFirst ? point[axis] : std::max(greatest, point[axis]);
    }
    isFirst = false;
  }
  return answer;
}

TEST(PublicFiles, GiveThePointsThatOtherReadersGive) {
  if (!std::filesystem::exists(folder / "expected.json")) {
    GTEST_SKIP() << "there is no " << folder.lexically_normal().filename() << " beside the repository";
  }
  ptree expected;
  read_json((folder / "expected.json").string(), expected);
  std::size_t numRead = 0;
  FrameReader reader;
  for (const auto& [name, tree] : expected) {
    const auto kind = frameKindOf(name);
    if (!kind) {
      continue;
    }
    SCOPED_TRACE(name);
    const std::string bytes = contentOf(folder / name);
    const std::string verdict = tree.get<std::string>("verdict");
    try {
      std::vector<ColumnNames> ways = {{}};
      if (*kind == FrameKind::Records) {
        ways.push_back(defaultColumnNames(tree.get<std::size_t>("info.columns")));
      }
      for (const ColumnNames& names : ways) {
        const Frame frame = reader.read(testing::bytesOf(bytes), *kind, names);
        const Answer answer = answerOf(testing::pointsOf(frame.points));
        const bool isOther =
            (tree.count("as_float32") != 0 && answer == answerOf(tree.get_child("as_float32"))) ||
            (tree.count("also_accept") != 0 && answer == answerOf(tree.get_child("also_accept")));
        EXPECT_TRUE(answer == answerOf(tree) || isOther);
        EXPECT_TRUE(verdict == "read" || verdict == "either") << verdict;
        ++numRead;
      }
    } catch (const ReadError& error) {
      EXPECT_NE(verdict, "read") << toText(error.place()) << ": " << error.what();
    }
  }
  EXPECT_GE(numRead, 70U);
}

}  // namespace
}  // namespace orvantis::toolkit
