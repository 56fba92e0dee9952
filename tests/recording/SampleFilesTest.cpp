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
#include "recording/ReadError.h"

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

struct SampleFile {
  std::string name;
  ColumnNames columns;
  std::string points;  // the file with them
};

std::vector<SampleFile> sampleFiles() {
  std::istringstream list(contentOf("expected.txt"));
  std::vector<SampleFile> files;
  for (std::string name, columns, points; list >> name >> columns >> points;) {
    files.push_back({name, columns == "-" ? ColumnNames() : parseColumnNames(columns), points});
  }
  return files;
}

TEST(SampleFiles, GiveThePointsThatWereWritten) {
  FrameReader reader;
  for (const auto& [name, columns, points] : sampleFiles()) {
    SCOPED_TRACE(name);
    const std::string bytes = contentOf(name);
    const Frame frame = reader.read(testing::bytesOf(bytes), frameKindOf(name).value(), columns);
    EXPECT_EQ(exactly(testing::pointsOf(frame.points)), exactly(pointsIn(points)));
    // Nothing is widened: what is written as float32 stays float32.
    EXPECT_EQ(testing::areFloats(frame.points), points == "floats.txt" || points == "flat.txt");
  }
  EXPECT_EQ(sampleFiles().size(), 35U);
}

// A row of text that is cut inside its last number is another number, which nobody can tell.
TEST(SampleFiles, CutAtAnyByteGiveTheFirstPointsOrAReason) {
  FrameReader reader;
  for (const auto& [name, columns, pointsFile] : sampleFiles()) {
    const std::string bytes = contentOf(name);
    const std::vector<Point> whole = pointsIn(pointsFile);
    const FrameKind kind = frameKindOf(name).value();
    const bool isText = kind == FrameKind::Text || bytes.find("ascii") != std::string::npos;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      SCOPED_TRACE(name + " cut after " + std::to_string(size) + " bytes");
      std::vector<Point> points;
      try {
        const std::string cut = bytes.substr(0, size);
        points = testing::pointsOf(reader.read(testing::bytesOf(cut), kind, columns).points);
      } catch (const ReadError& error) {
        ASSERT_NE(std::string(error.what()), "");
        continue;
      }
      if (isText && !points.empty() && bytes[size] != '\n' && bytes[size] != '\r') {
        points.pop_back();
      }
      ASSERT_LE(points.size(), whole.size());
      ASSERT_EQ(exactly(points), exactly({whole.begin(), whole.begin() + static_cast<long>(points.size())}));
    }
  }
}

}  // namespace
}  // namespace orvantis::toolkit
