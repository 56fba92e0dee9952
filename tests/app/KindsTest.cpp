// The same clouds, written in every kind of file by other programs (tests/data/recording), give the same
// counts.

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include "support/TemporaryFolder.h"

namespace orvantis::testing {
namespace {

const std::string folder = ORVANTIS_SOURCE_DIR "/tests/data/recording/";

struct Box {
  std::array<double, 3> low;
  std::array<double, 3> high;
};
const std::vector<Box> boxes = {{{-15.5, -12.25, -20.0}, {18.5, 22.25, 11.5}},
                                {{0.25, -40.0, -9.5}, {50.0, 9.5, 30.0}}};

std::string siteOf(const std::vector<Box>& zones) {
  std::ostringstream out;
  out << R"({"ZoneDetector":{"version":"1.1","EvaluationField":[{"name":"F","index":0,"Zone":[)";
  for (std::size_t i = 0; i < zones.size(); ++i) {
    const auto& [low, high] = zones[i];
    out << (i == 0 ? "" : ",") << R"({"name":"Z)" << i << R"(","index":)" << i << R"(,"zMin":)" << low[2]
        << R"(,"zMax":)" << high[2] << R"(,"shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":)"
        << low[0] << R"(,"y":)" << low[1] << R"(},{"x":)" << high[0] << R"(,"y":)" << high[1] << "}]}}";
  }
  out << "]}]}}";
  return out.str();
}

// "points noReturns inFirst inSecond", by looking at every point.
std::string expectedOf(const std::string& pointsFile) {
  std::ifstream in(folder + pointsFile);
  std::uint64_t points = 0;
  std::uint64_t noReturns = 0;
  std::array<std::uint64_t, 2> inside{};
  for (std::array<std::string, 3> row; in >> row[0] >> row[1] >> row[2]; ++points) {
    std::array<double, 3> p{};
    bool isReturn = true;
    for (std::size_t i = 0; i < 3; ++i) {
      p[i] = std::strtod(row[i].c_str(), nullptr);
      isReturn = isReturn && p[i] - p[i] == 0.0;
    }
    noReturns += isReturn ? 0U : 1U;
    for (std::size_t zone = 0; zone < 2; ++zone) {
      bool isInside = isReturn;
      for (std::size_t i = 0; i < 3; ++i) {
        isInside = isInside && boxes[zone].low[i] <= p[i] && p[i] <= boxes[zone].high[i];
      }
      inside[zone] += isInside ? 1U : 0U;
    }
  }
  return std::to_string(points) + " " + std::to_string(noReturns) + " " + std::to_string(inside[0]) + " " +
         std::to_string(inside[1]);
}

std::string countsOf(const std::string& line) {
  std::string text;
  std::size_t at = 0;
  for (const char* const key : {"\"points\":", "\"noReturns\":", "\"points\":", "\"points\":"}) {
    at = line.find(key, at) + std::string(key).size();
    text += (text.empty() ? "" : " ") + line.substr(at, line.find_first_of(",}", at) - at);
  }
  return text;
}

TEST(Kinds, OfFilesWithTheSamePointsGiveTheSameCounts) {
  const TemporaryFolder here;
  here.write("site.json", siteOf(boxes));
  std::ifstream list(folder + "expected.txt");
  int numFiles = 0;
  for (std::string name, columns, points; list >> name >> columns >> points; ++numFiles) {
    std::vector<std::string> arguments = {"run", "--json", "--quiet", "site.json", folder + name};
    if (columns != "-") {
      arguments.insert(arguments.end(), {"--columns", columns});
    }
    const Outcome outcome = zoneDetector(arguments, here.path());
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(countsOf(outcome.out), expectedOf(points)) << name << ": " << outcome.out;
  }
  EXPECT_EQ(numFiles, 35);
}

}  // namespace
}  // namespace orvantis::testing
