// Frames that numpy and liblzf wrote (tests/data/recording/make.py), and the points that it wrote into them.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FrameFiles.h"

namespace orvantis::toolkit {
namespace {

using testing::Point;

const std::filesystem::path folder =
    std::filesystem::path(ORVANTIS_SOURCE_DIR) / "tests" / "data" / "recording";

std::string contentOf(const std::string& name) {
  std::ifstream in(folder / name, std::ios::binary);
  EXPECT_TRUE(in) << name;
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<Point> pointsIn(const std::string& name) {
  std::istringstream in(contentOf(name));
  std::vector<Point> points;
  for (std::string x, y, z; in >> x >> y >> z;) {
    points.push_back(
        {std::strtod(x.c_str(), nullptr), std::strtod(y.c_str(), nullptr), std::strtod(z.c_str(), nullptr)});
  }
  return points;
}

// Tells zeros of both signs apart, and no two ways to write that there is no number.
std::string exactly(const std::vector<Point>& points) {
  std::ostringstream out;
  out << std::hexfloat;
  for (const Point& point : points) {
    for (const double value : point) {
      if (value == value) {
        out << value << ' ';
      } else {
        out << "nan ";
      }
    }
    out << '\n';
  }
  return out.str();
}

TEST(SampleFiles, GiveThePointsThatWereWritten) {
  std::istringstream list(contentOf("expected.txt"));
  std::size_t numFiles = 0;
  FrameReader reader;
  for (std::string name, columns, points; list >> name >> columns >> points; ++numFiles) {
    SCOPED_TRACE(name);
    const std::string bytes = contentOf(name);
    const Frame frame = reader.read(testing::bytesOf(bytes), frameKindOf(name).value(),
                                    columns == "-" ? ColumnNames() : parseColumnNames(columns));
    EXPECT_EQ(exactly(testing::pointsOf(frame.points)), exactly(pointsIn(points)));
    // Nothing is widened: what is written as float32 stays float32.
    EXPECT_EQ(testing::areFloats(frame.points), points == "floats.txt" || points == "flat.txt");
  }
  EXPECT_EQ(numFiles, 35U);
}

}  // namespace
}  // namespace orvantis::toolkit
