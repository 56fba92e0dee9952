#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <gtest/gtest.h>

#include "Program.h"
#include "session/ExplanationRecords.h"
#include "support/TemporaryFolder.h"

namespace orvantis::testing {
namespace {

using boost::property_tree::ptree;

const std::string site = ORVANTIS_SOURCE_DIR "/examples/crossing/crossing.json";

// A box from (0, 0) to (10, 10) and 0 to 2 m that trips at 2 points after 200 ms; inside it an exclusion
// zone up to x = 2; a line along y = 5 from the left to the right end of the box.
constexpr const char* box = R"({"ZoneDetector":{"version":"1.1","debounceTimeMs":200,"sensitivity":9,
    "EvaluationField":[{"name":"Yard","index":0,"Zone":[{"name":"Box","index":1,"zMin":0,"zMax":2,
      "shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":0,"y":0},{"x":10,"y":10}]}}]}],
    "ExclusionZone":[{"name":"Tree","zMin":0,"zMax":2,
      "shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":0,"y":0},{"x":2,"y":10}]}}]},
    "CounterLines":{"CounterLine":[{"name":"Door","first":{"x":0,"y":5},"second":{"x":10,"y":5}}]}})";

const std::string header = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n";

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::vector<ptree> objectsOf(const std::string& text) {
  std::vector<ptree> objects;
  for (const std::string& line : linesOf(text)) {
    std::istringstream in(line);
    read_json(in, objects.emplace_back());
  }
  return objects;
}

std::vector<ptree> ofType(const std::vector<ptree>& objects, const std::string& type) {
  std::vector<ptree> result;
  std::ranges::copy_if(objects, std::back_inserter(result),
                       [&type](const ptree& object) { return object.get<std::string>("type") == type; });
  return result;
}

// The box and frames with so many points in it; the first of them lies in the exclusion zone.
class Session : public ::testing::Test {
 protected:
  Session() { folder_.write("site.json", box); }

  void writeFrames(const std::vector<int>& counts) {
    for (std::size_t i = 0; i < counts.size(); ++i) {
      std::string text = "1 1 1\n90 90 90\n";
      for (int k = 0; k < counts[i]; ++k) {
        text += "5 5 1\n";
      }
      folder_.write("f" + std::to_string(i) + ".xyz", text);
      frames_.push_back("f" + std::to_string(i) + ".xyz");
    }
  }

  Outcome run(std::vector<std::string> arguments) const { return zoneDetector(arguments, folder_.path()); }
  Outcome runFrames(const std::string& command, const std::vector<std::string>& options) const {
    std::vector<std::string> arguments = {command, "site.json"};
    arguments.insert(arguments.end(), frames_.begin(), frames_.end());
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments);
  }

  TemporaryFolder folder_;
  std::vector<std::string> frames_;
};

TEST_F(Session, ZoneEventsFollowTheDebounceTime) {
  writeFrames({0, 2, 2, 2, 2, 1, 1, 1, 0});
  const Outcome outcome = runFrames("run", {"--rate", "10"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out,
            "     0.000 s  outputs of field 0: low low low\n"
            "     0.300 s  zone 0/1 \"Box\" occupied, since 0.100 s\n"
            "     0.300 s  outputs of field 0: low high low\n"
            "     0.700 s  zone 0/1 \"Box\" cleared, since 0.500 s\n"
            "     0.700 s  outputs of field 0: low low low\n"
            "\n"
            "  FIELD   ZONE   OCCUPIED s  TIMES  PEAK POINTS\n"
            "  0 Yard  1 Box       0.400      1            2\n");
  EXPECT_EQ(outcome.err.find("9 frames, without reading the files: "), 0U) << outcome.err;
}

TEST_F(Session, TheRateGivesTheFramesTheirStamps) {
  writeFrames({0, 2, 2, 2});
  // At 4 Hz one frame later is 250 ms later, at the rate of 10 Hz that counts without an option 100 ms.
  const auto began = [this](const std::vector<std::string>& options) {
    const std::vector<ptree> zones = ofType(objectsOf(runFrames("run", options).out), "zone");
    return zones.empty() ? -1.0 : zones[0].get<double>("stamp");
  };
  EXPECT_EQ(began({"--json", "--rate", "4"}), 0.5);
  EXPECT_EQ(began({"--json", "--rate", "1000"}), -1.0);
  EXPECT_EQ(began({"--json", "--csv", "tables"}), 0.3);
}

TEST_F(Session, AListGivesPathsAndStamps) {
  writeFrames({0, 2, 2});
  const std::string list = "# stamp, path\r\n-1.5,f0.xyz\r\n\n0 f1.xyz\n1e1,  f2.xyz";
  folder_.write("list", list);
  const Outcome outcome = run({"run", "--json", "site.json", "--stamps", "list"});
  ASSERT_EQ(outcome.code, 0) << outcome.err;
  const std::vector<ptree> objects = objectsOf(outcome.out);
  EXPECT_EQ(objects.back().get<double>("begin"), -1.5);
  EXPECT_EQ(objects.back().get<double>("end"), 10.0);
  const std::vector<ptree> zones = ofType(objects, "zone");
  ASSERT_EQ(zones.size(), 1U);
  EXPECT_EQ(zones[0].get<double>("began"), 0.0);
  EXPECT_EQ(zones[0].get<double>("stamp"), 10.0);
  // The paths are relative to the list, wherever the command runs.
  EXPECT_EQ(zoneDetector({"run", "--json", folder_.path("site.json"), "--stamps", folder_.path("list")}).out,
            outcome.out);
}

TEST_F(Session, ABadListIsRefusedWithLineColumnAndReason) {
  const std::vector<std::pair<std::string, std::string>> lists = {
      {"0,f0.xyz\nsoon,f1.xyz\n", "list:2:1: stamp is not a number: \"soon\""},
      {"0,f0.xyz\n\n0.0 f1.xyz\n", "list:3:1: stamp is not later than the one before, 0 s"},
      {"0\n", "list:1:2: there is no path after the stamp"},
      {"0, \n", "list:1:4: there is no path after the stamp"},
      {"f0.xyz\n", "list:1:1: stamp is not a number: \"f0.xyz\""},
      {"# nothing\n", "list: lists no frames"},
      {"0,missing.xyz\n", "missing.xyz: cannot be read: No such file or directory"},
  };
  for (const auto& [text, reason] : lists) {
    folder_.write("list", text);
    const Outcome outcome = run({"run", "site.json", "--stamps", "list"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "zone-detector: " + reason + "\n");
  }
}

TEST_F(Session, ABadRowEndsTheRunAndWritesNothing) {
  folder_.write("tracks.csv", header + "0,1,a,5,1,1,1,0,0,1\n1,1,a,5,2,1,1,0,0,1\n2,1,a,5,4,1,1,0,0,nan\n");
  const Outcome outcome =
      run({"run", "site.json", "--tracks", "tracks.csv", "--csv", "t", "--plot", "p.svg"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "zone-detector: tracks.csv:4:19: zmax is not finite\n");
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path("t")));
  EXPECT_FALSE(std::filesystem::exists(folder_.path("p.svg")));
}

TEST_F(Session, TracksEnterLeaveCrossAndGetLost) {
  folder_.write("tracks.csv", header +
                                  "0,1,a,5,-3,1,1,0,0,1\n"
                                  "1,1,a,5,1,1,1,0,0,1\n"
                                  "1,2,,5,9,1,1,0,0,1\n"
                                  "2,1,a,5,9,1,1,0,0,1\n"
                                  "3,1,b,5,13,1,1,0,0,1\n"
                                  "4,1,b,5,13,1,1,0,0,1\n");
  const Outcome outcome = run({"run", "site.json", "--tracks", "tracks.csv"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out,
            "     1.000 s  a 1 entered zone 0/1 \"Box\"\n"
            "     1.000 s  track 2 entered zone 0/1 \"Box\"\n"
            "     2.000 s  a 1 crossed line \"Door\" from right to left at 1.500 s, (5, 5)\n"
            "     3.000 s  track 2 lost in zone 0/1 \"Box\" after 0.000 s, last seen at 1.000 s\n"
            "     3.000 s  b 1 left zone 0/1 \"Box\" after 2.000 s\n"
            "\n"
            "  FIELD   ZONE   PEAK OBJECTS  VISITS  MEDIAN DWELL s  LONGEST s\n"
            "  0 Yard  1 Box             2       2           1.000      2.000\n"
            "\n"
            "  COUNTER LINE  CLASS  TO LEFT  TO RIGHT  NET TO LEFT\n"
            "  Door          all          1         0           +1\n"
            "                a            1         0           +1\n");
}

TEST_F(Session, AVisitThatIsNotOverCountsUpToTheLastSighting) {
  folder_.write("tracks.csv",
                header + "0,1,a,5,1,1,1,0,0,1\n0.5,1,a,5,2,1,1,0,0,1\n1.5,2,a,50,2,1,1,0,0,1\n");
  const Outcome outcome = run({"run", "--json", "site.json", "--tracks", "tracks.csv"});
  const std::vector<ptree> zones = ofType(objectsOf(outcome.out), "zoneSummary");
  ASSERT_EQ(zones.size(), 1U);
  EXPECT_EQ(zones[0].get<double>("longestDwell"), 0.5);
  EXPECT_EQ(zones[0].get<int>("visits"), 1);
}

TEST_F(Session, PointsAndTracksShareOneTimeLine) {
  writeFrames({2, 2, 2, 2});
  folder_.write("tracks.csv", header + "0.25,1,a,5,1,1,1,0,0,1\n0.3,1,a,5,9,1,1,0,0,1\n");
  const Outcome outcome = runFrames("run", {"--json", "--tracks", "tracks.csv"});
  std::vector<std::string> order;
  for (const ptree& object : objectsOf(outcome.out)) {
    if (object.count("stamp") > 0) {
      order.push_back(object.get<std::string>("stamp") + " " + object.get<std::string>("type"));
    }
  }
  EXPECT_EQ(order, (std::vector<std::string>{"0 outputs", "0.2 zone", "0.2 outputs", "0.25 object",
                                             "0.3 crossing"}));
}

TEST_F(Session, TablesHoldEventsFramesZonesAndLines) {
  writeFrames({2, 2, 2, 0});
  folder_.write("tracks.csv", header + "0.1,1,\"a;b\",5,1,1,1,0,0,1\n0.25,1,\"a;b\",5,9,1,1,0,0,1\n");
  folder_.write("tables.txt", "");
  const Outcome outcome = runFrames("run", {"--tracks", "tracks.csv", "--csv", "new/tables"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(readAll(folder_.path("new/tables/events.csv")),
            "stamp,type,event,field,zone,zone_name,line,track,class,began,dwell,met,x,y\n"
            "0,outputs,low low low,0,,,,,,,,,,\n"
            "0.1,object,entered,0,1,Box,,1,\"\"\"a;b\"\"\",,,,,\n"
            "0.2,zone,occupied,0,1,Box,,,,0,,,,\n"
            "0.2,outputs,low high low,0,,,,,,,,,,\n"
            "0.25,crossing,to left,,,,Door,1,\"\"\"a;b\"\"\",,,0.175,5,5\n");
  EXPECT_EQ(
      readAll(folder_.path("new/tables/zones.csv")),
      "field,field_name,zone,zone_name,occupied,activations,peak_points,peak_objects,visits,median_dwell,"
      "longest_dwell\n"
      "0,Yard,1,Box,0.1,1,2,1,1,0.15,0.15\n");
  EXPECT_EQ(readAll(folder_.path("new/tables/lines.csv")),
            "line,class,to_left,to_right,net_to_left\n"
            "Door,*,1,0,1\n"
            "Door,\"\"\"a;b\"\"\",1,0,1\n");
  // The time taken differs from run to run.
  std::string frames;
  for (std::string line : linesOf(readAll(folder_.path("new/tables/frames.csv")))) {
    std::size_t begin = 0;
    for (int column = 0; column < 9; ++column) {
      begin = line.find(',', begin) + 1;
    }
    EXPECT_GT(line.find(',', begin), begin) << line;
    frames += line.erase(begin, line.find(',', begin) - begin) + "\n";
  }
  EXPECT_EQ(frames,
            "stamp,cloud,points,no_returns,excluded,objects,output_0,output_1,output_2,,"
            "points_0_1,occupied_0_1,objects_0_1\n"
            "0,f0.xyz,4,0,1,,low,low,low,,2,0,\n"
            "0.1,f1.xyz,4,0,1,1,low,low,low,,2,0,1\n"
            "0.2,f2.xyz,4,0,1,,low,high,low,,2,1,\n"
            "0.25,,,,,1,,,,,,,1\n"
            "0.3,f3.xyz,2,0,1,,low,high,low,,0,1,\n");
}

TEST_F(Session, AFolderThatCannotBeMadeIsReported) {
  writeFrames({0});
  folder_.write("taken", "");
  const Outcome outcome = runFrames("run", {"--csv", "taken"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_NE(outcome.err.find("zone-detector: taken"), std::string::npos) << outcome.err;
  EXPECT_EQ(readAll(folder_.path("taken")), "");
}

TEST_F(Session, ThePictureShowsTracksCrossingsAndOccupancy) {
  writeFrames({2, 2, 2, 0});
  folder_.write("tracks.csv", header + "0.1,41,a,5,1,1,1,0,0,1\n0.25,41,a,5,9,1,1,0,0,1\n");
  EXPECT_EQ(runFrames("run", {"--tracks", "tracks.csv", "--plot", "run.svg"}).code, 0);
  const std::string svg = readAll(folder_.path("run.svg"));
  std::istringstream in(svg);
  ptree tree;
  read_xml(in, tree);
  for (const std::string text : {">41<", ">Crossing counted<", ", id at its end<", ">time in seconds<",
                                 ">occupied<", ">objects inside<"}) {
    EXPECT_NE(svg.find(text), std::string::npos) << text;
  }
}

TEST_F(Session, TheAxisOfLateStampsCountsFromTheBegin) {
  folder_.write("tracks.csv", header + "1699999999.5,1,a,5,1,1,1,0,0,1\n1700000001.5,1,a,5,1,1,1,0,0,1\n");
  EXPECT_EQ(run({"run", "site.json", "--tracks", "tracks.csv", "--plot", "run.svg"}).code, 0);
  const std::string svg = readAll(folder_.path("run.svg"));
  EXPECT_NE(svg.find(">seconds after 1699999999<"), std::string::npos);
  EXPECT_NE(svg.find(">2.4<"), std::string::npos);
  EXPECT_EQ(svg.find(">2.6<"), std::string::npos);
}

TEST_F(Session, AClassCannotSteerTheTerminal) {
  folder_.write("tracks.csv", header + "0,1,\033[2J,5,1,1,1,0,0,1\n1,1,\033[2J,5,9,1,1,0,0,1\n");
  for (const std::vector<std::string>& format : {std::vector<std::string>{}, {"--json"}}) {
    std::vector<std::string> arguments = {"run", "site.json", "--tracks", "tracks.csv"};
    arguments.insert(arguments.end(), format.begin(), format.end());
    const Outcome outcome = run(arguments);
    EXPECT_NE(outcome.out.find("[2J"), std::string::npos);
    EXPECT_EQ(outcome.out.find('\033'), std::string::npos) << outcome.out;
  }
}

TEST_F(Session, AFullDiskIsReported) {
  folder_.write("tracks.csv", header);
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"run", "site.json", "--tracks", "tracks.csv"},
           {"run", "--json", "site.json", "--tracks", "tracks.csv"},
       }) {
    const Outcome outcome = zoneDetector(arguments, folder_.path(), "/dev/full");
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err, "zone-detector: cannot write to the standard output: No space left on device\n");
  }
}

// An id that comes back after it was forgotten is somebody else: no line joins the two.
TEST_F(Session, APathEndsWhereATrackIsForgotten) {
  const auto paths = [this](const std::string& stamp) {
    folder_.write("tracks.csv",
                  header + "0,8,a,1,1,1,1,0,0,1\n1,8,a,3,1,1,1,0,0,1\n" + stamp + ",8,a,9,1,1,1,0,0,1\n");
    EXPECT_EQ(run({"run", "site.json", "--tracks", "tracks.csv", "--plot", "run.svg"}).code, 0);
    const std::string svg = readAll(folder_.path("run.svg"));
    std::size_t ids = 0;
    for (std::size_t at = svg.find(">8</text>"); at != std::string::npos;
         at = svg.find(">8</text>", at + 1)) {
      ++ids;
    }
    return ids;
  };
  // One is on the y axis, another on the x axis of the plan.
  const std::size_t onAxes = 2;
  EXPECT_EQ(paths("2.999"), onAxes + 1);
  EXPECT_EQ(paths("3"), onAxes + 2);
}

TEST_F(Session, WrongUsageIsRefused) {
  writeFrames({0});
  folder_.write("tracks.csv", header);
  const std::vector<std::vector<std::string>> wrong = {
      {"run", "site.json"},
      {"run", "site.json", "f0.xyz", "--rate", "0"},
      {"run", "site.json", "f0.xyz", "--rate", "-1"},
      {"run", "site.json", "f0.xyz", "--stamps", "list"},
      {"run", "site.json", "--stamps", "list", "--rate", "10"},
      {"run", "site.json", "f0.xyz", "--tracks-format", "kitti"},
      {"run", "site.json", "--tracks", "tracks.csv", "--tracks-format", "xml"},
      {"run", "site.json", "f0.xyz", "--rate", "10", "--reference"},
      {"explain", "site.json", "--at", "0"},
      {"explain", "site.json", "f0.xyz", "--at", "soon"},
      {"explain", "site.json", "f0.xyz", "--at", "1s"},
      {"explain", "site.json", "f0.xyz", "--at", "4.6e9"},
      {"explain", "site.json", "--at", "0", "--tracks", "tracks.csv"},
      {"explain", "site.json", "--at", "0", "--tracks", "tracks.csv", "--track", "1"},
      {"explain", "site.json", "f0.xyz", "--at", "0", "--line", "Door", "--track", "1"},
  };
  for (const std::vector<std::string>& arguments : wrong) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 2) << ::testing::PrintToString(arguments) << outcome.err;
    EXPECT_EQ(outcome.out, "");
  }
}

TEST_F(Session, ExplainTellsWhatCountsWhatIsTakenAndWhatIsMissing) {
  writeFrames({0, 2, 2, 2, 1});
  const auto at = [this](const std::string& stamp) { return runFrames("explain", {"--at", stamp}).out; };
  const std::string headings =
      "  FIELD   ZONE   POINTS  ≥ 2  TAKEN  BY EXCLUSION ZONE  BELOW  ABOVE  FROM z  TO z  NEAREST m  STATE";
  // Without a change in sight nothing stands at the end of the row.
  EXPECT_EQ(at("0"),
            "f0.xyz at 0 s\n" + headings +
                "    WILL CHANGE\n"
                "  0 Yard  1 Box       0  no       1  Tree 1                 0      0                      "
                "     cleared\n");
  EXPECT_EQ(at("0.15"),
            "f1.xyz at 0.1 s\n" + headings +
                "    WILL CHANGE\n"
                "  0 Yard  1 Box       2  yes      1  Tree 1                 0      0                   "
                "        cleared  trips in 0.2 s\n");
  EXPECT_EQ(at("0.3"),
            "f3.xyz at 0.3 s\n" + headings +
                "     WILL CHANGE\n"
                "  0 Yard  1 Box       2  yes      1  Tree 1                 0      0                    "
                "       occupied\n");
  EXPECT_EQ(at("99"),
            "f4.xyz at 0.4 s\n" + headings +
                "     WILL CHANGE\n"
                "  0 Yard  1 Box       1  no       1  Tree 1                 0      0                     "
                "      occupied  clears in 0.2 s\n");
  const Outcome early = runFrames("explain", {"--at", "-0.1"});
  EXPECT_EQ(early.code, 1);
  EXPECT_EQ(early.err, "zone-detector: found no points at or before -0.1 s\n");
}

TEST_F(Session, NoOutputTakesThePlaceOfAnInput) {
  const std::string row = header + "0,1,a,5,1,1,1,0,0,1\n";
  writeFrames({1});
  folder_.write("site.svg", readAll(folder_.path("site.json")));
  folder_.write("tracks.svg", row);
  folder_.write("frames.csv", "0 f0.xyz\n");
  folder_.write("lines.csv", row);
  std::filesystem::create_directory(folder_.path("scans"));
  folder_.write("scans/zones.csv", "1,1,1\n");
  std::filesystem::create_symlink("site.json", folder_.path("link.svg"));
  const std::size_t files = folder_.fileCount();
  const auto refused = [this](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "run");
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "");
    return outcome.err;
  };
  const std::string drawn = ": cannot be written: the picture is drawn from it\n";
  EXPECT_EQ(refused({"site.svg", "f0.xyz", "--plot", "site.svg"}), "zone-detector: site.svg" + drawn);
  EXPECT_EQ(refused({"site.json", "f0.xyz", "--plot", "link.svg"}), "zone-detector: link.svg" + drawn);
  EXPECT_EQ(refused({"site.json", "--tracks", "tracks.svg", "--plot", "./tracks.svg"}),
            "zone-detector: ./tracks.svg" + drawn);
  EXPECT_EQ(refused({"site.json", "f0.xyz", "--plot", "f0.xyz"}), "zone-detector: f0.xyz" + drawn);
  EXPECT_EQ(
      refused({"site.json", "f0.xyz", "--plot", "plan.png"}),
      "zone-detector: plan.png: cannot be written: pictures are SVG; give a name that ends with .svg, and "
      "convert it with a program such as rsvg-convert or a browser\n");
  const std::string made =
      ": cannot be written: it exists, and is not a table of an earlier run; give another folder\n";
  EXPECT_EQ(refused({"site.json", "--stamps", "frames.csv", "--csv", "."}),
            "zone-detector: ./frames.csv" + made);
  std::filesystem::remove(folder_.path("frames.csv"));
  EXPECT_EQ(refused({"site.json", "--tracks", "lines.csv", "--csv", "."}),
            "zone-detector: ./lines.csv" + made);
  EXPECT_EQ(refused({"site.json", "scans", "--csv", "scans"}), "zone-detector: scans/zones.csv" + made);
  // Named in a list only.
  folder_.write("sensors.json", R"({"sensors":[{"name":"a","files":["scans/zones.csv"]}]})");
  EXPECT_EQ(refused({"site.json", "--sensors", "sensors.json", "--csv", "scans"}),
            "zone-detector: scans/zones.csv" + made);
  EXPECT_EQ(folder_.fileCount(), files);  // without frames.csv, with sensors.json
  EXPECT_EQ(readAll(folder_.path("scans/zones.csv")), "1,1,1\n");
  EXPECT_EQ(readAll(folder_.path("site.svg")), readAll(folder_.path("site.json")));
  EXPECT_EQ(readAll(folder_.path("lines.csv")), row);

  folder_.write("scans/a.xyz", "1 1 1\n");
  std::filesystem::remove(folder_.path("scans/zones.csv"));
  EXPECT_EQ(run({"run", "site.json", "scans", "--csv", "scans", "--plot", "scans/run.svg"}).code, 0);
  EXPECT_EQ(run({"run", "site.json", "scans/a.xyz", "--csv", "scans", "--plot", "scans/run.svg"}).code, 0);
}

TEST_F(Session, TheDocumentsHaveEveryWordForAVerdict) {
  const std::string docs = readAll(ORVANTIS_SOURCE_DIR "/docs/command.md");
  for (int i = 0; i <= static_cast<int>(filter::monitor::CrossingVerdict::BeganOnLine); ++i) {
    const std::string word = toolkit::verdictName(static_cast<filter::monitor::CrossingVerdict>(i));
    EXPECT_NE(docs.find("`" + word + "`"), std::string::npos) << word;
  }
}

TEST_F(Session, ExplainOfALineNeedsATrackedObject) {
  folder_.write("site.json", readAll(ORVANTIS_SOURCE_DIR "/examples/crossing/crossing.json"));
  folder_.write("t.csv", "stamp,id,class,x,y,length,width,heading,zmin,zmax\n2,7,car,11,7,1,1,0,0,2\n");
  const auto fault = [this](std::vector<std::string> at) {
    at.insert(at.begin(), {"explain", "site.json", "--tracks", "t.csv", "--line", "Crossing"});
    const Outcome outcome = run(at);
    EXPECT_EQ(outcome.code, outcome.err.empty() ? 0 : 1);
    return outcome.err;
  };
  EXPECT_EQ(fault({}), "");
  EXPECT_EQ(fault({"--at", "1"}), "zone-detector: found no tracked objects at or before 1 s\n");
  folder_.write("t.csv", "stamp,id,class,x,y,length,width,heading,zmin,zmax\n");
  EXPECT_EQ(fault({}), "zone-detector: found no tracked objects\n");
}

TEST_F(Session, ExplainTakesAnInstantToTheNanosecond) {
  writeFrames({1, 2});
  folder_.write("list", "1699999999.123456789 f0.xyz\n1699999999.123456790 f1.xyz\n");
  const auto at = [this](const std::string& stamp) {
    const std::string out = run({"explain", "site.json", "--stamps", "list", "--at", stamp}).out;
    return out.substr(0, out.find('\n'));
  };
  EXPECT_EQ(at("1699999999.123456789"), "f0.xyz at 1699999999.123456789 s");
  EXPECT_EQ(at("1699999999.12345679"), "f1.xyz at 1699999999.12345679 s");
}

TEST_F(Session, ExplainOfAWholeRecordingTellsTheBestFrameOfEachZone) {
  writeFrames({0, 2, 3, 3, 1});
  EXPECT_EQ(
      runFrames("explain", {}).out,
      "  FIELD   ZONE   POINTS  ≥ 2  TAKEN  BY EXCLUSION ZONE  BELOW  ABOVE  FROM z  TO z  NEAREST m  AT s  "
      "FRAME\n"
      "  0 Yard  1 Box       3  yes      1  Tree 1                 0      0                            0.2  "
      "f2.xyz\n");
}

TEST_F(Session, ExplainOfALineTellsOfEveryTrackAlsoOfForgottenOnes) {
  folder_.write("tracks.csv", header + "0,1,a,5,1,1,1,0,0,1\n2,1,a,5,9,1,1,0,0,1\n5,2,,5,5,1,1,0,0,1\n");
  const Outcome outcome = run({"explain", "site.json", "--tracks", "tracks.csv", "--line", "Door"});
  EXPECT_EQ(outcome.out,
            "line \"Door\": 3 tracks\n"
            "  TRACK  CLASS  FIRST SEEN s  LAST SEEN s  COUNTED  DECIDED FROM s  TO s  VERDICT\n"
            "      1  a                 0            0        0                     0  has stayed clear of "
            "the line on "
            "one side\n"
            "      1  a                 2            2        0                     2  has stayed clear of "
            "the line on "
            "one side\n"
            "      2                    5            5        0                     5  has not been clear of "
            "the line yet\n");
}

TEST_F(Session, ExplainTellsWhyATrackDidOrDidNotCount) {
  folder_.write("tracks.csv", header + "0,1,a,5,1,1,1,0,0,1\n1,1,a,5,5,1,1,0,0,1\n2,1,a,5,9,1,1,0,0,1\n");
  const auto at = [this](const std::string& stamp, const std::string& track) {
    return run({"explain", "site.json", "--tracks", "tracks.csv", "--at", stamp, "--line", "Door", "--track",
                track})
        .out;
  };
  const std::string headings = "\n  SEEN AT s  SIDE   CLEAR  OFF THE LINE m  x  y\n";
  const std::string first = "          0  right  yes            -4.000  5  1\n";
  const std::string second = "          1  on     no              0.000  5  5\n";
  EXPECT_EQ(at("0", "1"),
            "track 1 and line \"Door\" at 0 s\n  has stayed clear of the line on one side\n"
            "  last clear of the line on its right side\n" +
                headings + first);
  EXPECT_EQ(at("1.9", "1"),
            "track 1 and line \"Door\" at 1 s\n  is not clear of the line now\n"
            "  last clear of the line on its right side\n" +
                headings + first + second);
  EXPECT_EQ(
      at("2", "1"),
      "track 1 and line \"Door\" at 2 s\n  went over the line\n"
      "  last clear of the line on its left side\n"
      "  last crossing from right to left: met the line at 1.000 s, (5, 5), found clear of it at 2.000 s\n" +
          headings + first + second + "          2  left   yes             4.000  5  9\n");
  EXPECT_EQ(at("2", "9"), "track 9 and line \"Door\" at 2 s\n  was not seen, or is forgotten\n");
  const Outcome unknown =
      run({"explain", "site.json", "--tracks", "tracks.csv", "--at", "1", "--line", "Gate", "--track", "1"});
  EXPECT_EQ(unknown.code, 1);
  EXPECT_EQ(unknown.err, "zone-detector: site.json: has no counter line \"Gate\"\n");
}

// What the scene of the example does, worked out by hand from its places and speeds.
TEST_F(Session, TheExampleCountsWhatCrossesInItsScene) {
  ASSERT_EQ(runProgram(CROSSING_RECORDING, {folder_.path()}).code, 0);
  const Outcome outcome = run({"run", "--json", site, "--tracks", "tracks.csv"});
  std::map<std::string, std::string> found;
  std::map<std::string, double> met;
  for (const ptree& crossing : ofType(objectsOf(outcome.out), "crossing")) {
    const std::string key = crossing.get<std::string>("class") + " " + crossing.get<std::string>("track");
    found[key] += crossing.get<std::string>("line") + " to " + crossing.get<std::string>("to");
    met[key] = crossing.get<double>("met");
  }
  EXPECT_EQ(found, (std::map<std::string, std::string>{{"pedestrian 1", "Crossing to left"},
                                                       {"pedestrian 2", "Crossing to right"},
                                                       {"pedestrian 5", "Cell gate to right"},
                                                       {"car 7", "Lane west entry to left"},
                                                       {"cyclist 8", "Lane east exit to left"}}));
  EXPECT_NEAR(met["pedestrian 1"], (7.5 - 6.2) / 1.4, 1e-6);
  EXPECT_NEAR(met["pedestrian 2"], (8.7 - 7.5) / 1.3, 1e-6);
  EXPECT_NEAR(met["cyclist 8"], (17.0 - 14.6) / 5.0, 1e-6);
  EXPECT_NEAR(met["car 7"], 0.6 + 0.1 * (20.430 - 20.0) / (20.430 - 19.957), 1e-6);
}

// As far apart as two stamps can be: what is measured between them must not overflow.
TEST_F(Session, StampsFromTheFirstToTheLast) {
  writeFrames({2, 2});
  folder_.write("list.txt", "-4599999999 f0.xyz\n4599999999 f1.xyz\n");
  folder_.write("tracks.csv", header + "-4599999999,1,a,5,1,1,1,0,0,1\n4599999999,1,a,5,9,1,1,0,0,1\n");
  const Outcome outcome = run({"run", "--json", "site.json", "--stamps", "list.txt", "--tracks", "tracks.csv",
                               "--csv", "tables", "--plot", "run.svg"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  const std::vector<ptree> summaries = ofType(objectsOf(outcome.out), "summary");
  ASSERT_EQ(summaries.size(), 1U);
  EXPECT_EQ(summaries[0].get<double>("end") - summaries[0].get<double>("begin"), 9199999998.0);
}

}  // namespace
}  // namespace orvantis::testing
