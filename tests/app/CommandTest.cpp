#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Program.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "support/TemporaryFolder.h"

namespace orvantis::testing {
namespace {

const std::string site = ORVANTIS_SOURCE_DIR "/examples/crossing/crossing.json";
const std::string documents = ORVANTIS_SOURCE_DIR "/tests/app/documents/";

TEST(Command, VersionIsTheProjects) {
  const Outcome outcome = zoneDetector({"--version"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out, "zone-detector " PROJECT_VERSION "\n");
}

TEST(Command, WrongUsageIsTwoAndSaysWhyOnTheErrorStream) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"unknown"},
                                             {"--unknown"},
                                             {"show"},
                                             {"run", site},
                                             {"show", "--unknown", site},
                                             {"plot"},
                                             {"plot", site, "a.pcd", "b.pcd"},
                                             {"plot", site, "-o"}}) {
    const Outcome outcome = zoneDetector(arguments);
    EXPECT_EQ(outcome.code, 2) << ::testing::PrintToString(arguments);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err, "");
  }
}

TEST(Command, ADocumentThatCannotBeReadIsOneForEverySubcommand) {
  const std::string reason = "missing.json: cannot be read: No such file or directory\n";
  const Outcome validated = zoneDetector({"validate", "missing.json"});
  EXPECT_EQ(validated.code, 1);
  EXPECT_EQ(validated.out, reason);
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"show", "missing.json"},
                                             {"run", "missing.json", "frame.pcd"},
                                             {"plot", "missing.json", "-o", "/dev/null"}}) {
    const Outcome outcome = zoneDetector(arguments);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "zone-detector: " + reason);
  }
}

TEST(Command, ADocumentWithErrorsIsNotLoadedAndEachIsNamed) {
  const std::string path = documents + "no_index.json";
  const std::string place = path + ":3:5: error: ";
  const TemporaryFolder folder;
  folder.write("a.xyz", "11 7 1\n");
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"show", path}, {"run", path, "a.xyz"}, {"explain", path, "a.xyz", "--at", "0"}, {"plot", path}}) {
    const Outcome outcome = zoneDetector(arguments, folder.path());
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "zone-detector: " + path + ": 2 errors\n" + path +
                  ":2:3: error: \"ZoneDetector\" is missing, without which no option is read; put "
                  "\"EvaluationField\" and what belongs to it into \"ZoneDetector\"\n" +
                  place + "EvaluationField[0]: \"index\" is missing; give a whole number from 0 to 7\n");
  }
}

TEST(Command, OfManyErrorsTheFirstTwentyAreNamed) {
  const TemporaryFolder folder;
  std::string lines;
  for (int i = 0; i < 22; ++i) {
    lines += (i == 0 ? "" : ",") + std::string("{\"name\":\"l") + std::to_string(i) +
             "\",\"first\":{\"x\":0,\"y\":0}}\n";
  }
  folder.write("site.json", "{\"CounterLines\":{\"CounterLine\":[" + lines + "]}}");
  const Outcome outcome = zoneDetector({"show", "site.json"}, folder.path());
  EXPECT_EQ(outcome.err.find("zone-detector: site.json: 22 errors\nsite.json:1:33: error: "), 0U)
      << outcome.err;
  EXPECT_NE(outcome.err.find("site.json:20:2: error"), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.err.find("site.json:21:2: error"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("\n2 more errors; \"zone-detector validate\" shows all\n"), std::string::npos);
}

// A document that is loaded but doubtful.
const std::string doubtful =
    R"({"ZoneDetector":{"EvaluationField":{"name":"f","index":0,"Zone":{"name":"z","index":0,
    "shape":"sector","zMin":3,"zMax":2,"Sector":{"minAngle":0,"maxAngle":1,"radius":1}}}}})";

TEST(Command, WarningsGoToTheErrorStreamOnceAndQuietKeepsThem) {
  const TemporaryFolder folder;
  folder.write("site.json", doubtful);
  folder.write("a.xyz", "11 7 2.5\n");
  const std::string warning =
      "site.json:2:29: warning: ZoneDetector/EvaluationField[0]/Zone[0]/zMin: zMin 3 is above zMax 2; the "
      "zone "
      "contains nothing\n";
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"show", "site.json"}, {"plot", "site.json"}}) {
    const Outcome outcome = zoneDetector(arguments, folder.path());
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, warning);
  }
  const Outcome run = zoneDetector({"run", "site.json", "a.xyz"}, folder.path());
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.err.find(warning), 0U) << run.err;
  EXPECT_EQ(run.err.find(warning, 1), std::string::npos) << run.err;
  EXPECT_EQ(zoneDetector({"show", "--quiet", "site.json"}, folder.path()).err, "");
}

TEST(Command, StrictMakesWarningsCount) {
  const TemporaryFolder folder;
  folder.write("site.json", doubtful);
  EXPECT_EQ(zoneDetector({"validate", "site.json"}, folder.path()).code, 0);
  EXPECT_EQ(zoneDetector({"validate", "--strict", "site.json"}, folder.path()).code, 1);
  EXPECT_EQ(zoneDetector({"validate", "--strict", site}).code, 0);
  EXPECT_EQ(zoneDetector({"validate", site, documents + "no_index.json"}).code, 1);
  EXPECT_EQ(zoneDetector({"validate", documents + "no_index.json", site}).code, 1);
}

TEST(Command, ValidateAsJsonIsAnObjectForEachFile) {
  const TemporaryFolder folder;
  folder.write("site.json", doubtful);
  folder.write("bad.json", "{\"a\" 1}");
  const std::string finding =
      R"({"kind":"empty-heights","severity":"warning","line":2,"column":29,)"
      R"("path":"ZoneDetector/EvaluationField[0]/Zone[0]/zMin","text":"zMin 3 is above zMax 2; the zone contains nothing"})";
  const Outcome outcome =
      zoneDetector({"validate", "--json", "site.json", "bad.json", "none.json"}, folder.path());
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(
      outcome.out,
      R"({"file":"site.json","ok":true,"findings":[)" + finding + "]}\n" +
          R"({"file":"bad.json","ok":false,"findings":[{"kind":"json-fault","severity":"error","line":1,)"
          R"("column":6,"path":"","text":"a colon is missing before \"1\""}]})" +
          "\n" +
          R"({"file":"none.json","ok":false,"findings":[{"kind":"unreadable","severity":"error","line":0,)"
          R"("column":0,"path":"","text":"cannot be read: No such file or directory"}]})" +
          "\n");
  EXPECT_EQ(zoneDetector({"validate", "--strict", "--json", "site.json"}, folder.path()).out,
            R"({"file":"site.json","ok":false,"findings":[)" + finding + "]}\n");
}

TEST(Command, AFileOverTheLimitIsRefused) {
  const TemporaryFolder folder;
  folder.write("below.json", doubtful + std::string(102399 - doubtful.size(), ' '));
  folder.write("at.json", doubtful + std::string(102400 - doubtful.size(), ' '));
  folder.write("above.json", doubtful + std::string(1000000, ' '));
  EXPECT_EQ(zoneDetector({"validate", "below.json"}, folder.path()).code, 0);
  for (const std::string name : {"at.json", "above.json"}) {
    EXPECT_EQ(
        zoneDetector({"validate", name}, folder.path()).out,
        name + ": 1 error\n" + name +
            ":1:1: error: the document is too large; give it fewer than 102400 bytes\n" + name +
            ": note: a host is told: Input file size exceeds maximum allowable size of 102400 bytes.\n");
  }
}

TEST(Command, ANewDocumentIsGoodAndLiesInTheMiddleOfTheScan) {
  const TemporaryFolder folder;
  EXPECT_EQ(zoneDetector({"new", "-o", "empty.json"}, folder.path()).code, 0);
  // Ground at -1.5 from (90, 40) to (110, 60), and a no return at the sensor.
  std::string rows = "0 0 0\n";
  for (int i = 0; i <= 20; ++i) {
    rows += std::to_string(90 + i) + " " + std::to_string(60 - i) + " -1.5\n";
  }
  folder.write("scan.xyz", rows);
  EXPECT_EQ(zoneDetector({"new", "-o", "scan.json", "scan.xyz"}, folder.path()).code, 0);
  for (const std::string name : {"empty.json", "scan.json"}) {
    EXPECT_EQ(zoneDetector({"validate", "--strict", name}, folder.path()).out, name + ": ok\n");
  }
  const std::string shown = zoneDetector({"show", "scan.json"}, folder.path()).out;
  EXPECT_NE(
      shown.find(
          "0/0 Move this zone  vertices  (97.75, 47.75) (97.75, 52.25) (102.25, 52.25) (102.25, 47.75)"),
      std::string::npos)
      << shown;
  EXPECT_NE(shown.find("-1.3     0.7"), std::string::npos) << shown;
  EXPECT_EQ(zoneDetector({"new"}).out, readAll(folder.path("empty.json")));
}

TEST(Command, ADocumentThatExistsIsNotWrittenOver) {
  const TemporaryFolder folder;
  folder.write("site.json", "mine");
  const Outcome outcome = zoneDetector({"new", "-o", "site.json"}, folder.path());
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "zone-detector: site.json: exists already; give another name, or remove it first\n");
  EXPECT_EQ(readAll(folder.path("site.json")), "mine");
}

TEST(Command, AScanWithoutPointsGivesNoNewDocument) {
  const TemporaryFolder folder;
  folder.write("scan.xyz", "0 0 0\nnan 1 1\n");
  const Outcome outcome = zoneDetector({"new", "-o", "site.json", "scan.xyz"}, folder.path());
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "zone-detector: scan.xyz: has no points to put a zone around\n");
  EXPECT_EQ(folder.fileCount(), 1U);
}

TEST(Command, TheExampleInTheDocumentationIsRight) {
  const std::string page = readAll(ORVANTIS_SOURCE_DIR "/docs/document.md");
  const std::size_t begin = page.find("```json\n") + 8;
  const TemporaryFolder folder;
  folder.write("site.json", page.substr(begin, page.find("```", begin) - begin));
  EXPECT_EQ(zoneDetector({"validate", "--strict", "site.json"}, folder.path()).out, "site.json: ok\n");
}

TEST(Command, FramesBeforeOneThatCannotBeReadStand) {
  const TemporaryFolder folder;
  folder.write("a.xyz", "11 7 1\n");
  folder.write("b.bin", "truncated");
  folder.write("c.xyz", "11 7 1\n");
  const Outcome alone = zoneDetector({"run", site, "a.xyz"}, folder.path());
  const Outcome outcome = zoneDetector({"run", site, "a.xyz", "b.bin", "c.xyz"}, folder.path());
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.out, alone.out);
  EXPECT_EQ(
      outcome.err,
      "zone-detector: b.bin: cannot be read: byte 9: 9 bytes are not a whole number of plausible records of "
      "3, 4, 5 or 6 float32 columns that begin with x, y, z; if the file is whole, say what a record holds "
      "with --columns, such as --columns 7 or --columns t,x,y,z\n");
}

TEST(Command, RunWarnsOfZonesThatNoPointsHeightReaches) {
  const TemporaryFolder folder;
  folder.write("site.json", R"({"ZoneDetector":{"EvaluationField":[{"name":"f","index":3,"Zone":[
      {"name":"low","index":0,"zMin":-2,"zMax":-1,"shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1}},
      {"name":"mid","index":1,"zMin":0,"zMax":2.5,"shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1}}
      ]}]}})");
  folder.write("a.xyz", "50 50 2.5\n");
  folder.write("b.xyz", "50 50 -2.5\nnan 50 -1.5\n");
  const Outcome outcome = zoneDetector({"run", "--json", "site.json", "a.xyz", "b.xyz"}, folder.path());
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(
      outcome.err,
      "zone-detector: warning: no point of any frame is between the heights of zone \"low\" (field 3), -2 to "
      "-1; are its heights in the frame of the points?\n");
}

TEST(Command, RunWarnsOfAZoneWithNearlyNoPointBetweenItsHeightsUnlessItIsToBeQuiet) {
  const TemporaryFolder folder;
  folder.write("site.json", R"({"ZoneDetector":{"EvaluationField":[{"name":"f","index":3,"Zone":[
      {"name":"z","index":0,"zMin":0.5,"zMax":2,"shape":"sector","Sector":{"minAngle":0,"maxAngle":0,"radius":9}}
      ]}]}})");
  std::string points = "1 1 1\n";
  for (int i = 0; i < 100; ++i) {
    points += "1 1 -0.25\n";
  }
  folder.write("a.xyz", points);
  EXPECT_EQ(
      zoneDetector({"run", "site.json", "a.xyz"}, folder.path()).err,
      "zone-detector: warning: zone \"z\" (field 3): under 1 % of the points inside its outline are between "
      "its heights, 0.5 to 2; the others are between -0.25 and -0.25. Is it empty, or are its heights in "
      "another frame than the points?\n");
  EXPECT_EQ(zoneDetector({"run", "--quiet", "site.json", "a.xyz"}, folder.path()).err, "");
}

TEST(Command, PointsThatAreNotFiniteAreDroppedAndCounted) {
  const TemporaryFolder folder;
  folder.write("a.xyz", "11 7 1\nnan 7 1\n11 inf 1\n11 7 -inf\n11 7 1\n");
  const Outcome outcome = zoneDetector({"run", "--json", site, "a.xyz"}, folder.path());
  EXPECT_EQ(outcome.out.find(R"({"frame":0,"file":"a.xyz","points":5,"noReturns":3,"excluded":0,)"), 0U)
      << outcome.out;
  EXPECT_NE(outcome.out.find(R"("name":"Walkway","points":2,)"), std::string::npos) << outcome.out;
}

TEST(Command, AFullDiskIsReported) {
  const TemporaryFolder folder;
  folder.write("a.xyz", "11 7 1\n");
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"validate", site},
                                             {"show", site},
                                             {"show", "--json", site},
                                             {"run", site, "a.xyz"},
                                             {"plot", site}}) {
    const Outcome outcome = zoneDetector(arguments, folder.path(), "/dev/full");
    EXPECT_EQ(outcome.code, 1) << arguments[0];
    EXPECT_EQ(outcome.err, "zone-detector: cannot write to the standard output: No space left on device\n");
  }
  const Outcome outcome = zoneDetector({"plot", site, "-o", "/dev/full"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "zone-detector: /dev/full: cannot be written: No space left on device\n");
}

// A reader that goes away ends the command: by the signal, or with code 1 where that is ignored.
TEST(Command, ABrokenPipeEndsTheCommand) {
  for (const auto handler : {SIG_DFL, SIG_IGN}) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
      ::signal(SIGPIPE, handler);
      ::close(ends[0]);
      ::dup2(ends[1], STDOUT_FILENO);
      ::close(STDERR_FILENO);
      ::execl(ZONE_DETECTOR, ZONE_DETECTOR, "show", site.c_str(), nullptr);
      ::_exit(127);
    }
    ::close(ends[1]);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (handler == SIG_DFL) {
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE) << status;
    } else {
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
    }
  }
}

TEST(Command, APictureThatCannotBeWrittenLeavesTheOldOne) {
  const TemporaryFolder folder;
  folder.write("plan.svg", "old");
  const Outcome outcome = zoneDetector({"plot", site, "missing.pcd", "-o", "plan.svg"}, folder.path());
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "zone-detector: missing.pcd: cannot be read: No such file or directory\n");
  EXPECT_EQ(readAll(folder.path("plan.svg")), "old");
  EXPECT_EQ(folder.fileCount(), 1U);
}

TEST(Command, APictureNeverTakesThePlaceOfWhatItIsDrawnFrom) {
  const TemporaryFolder folder;
  folder.write("a.xyz", "11 7 1\n");
  std::filesystem::create_symlink("a.xyz", folder.path("link.svg"));
  std::filesystem::copy_file(site, folder.path("site.svg"));
  EXPECT_EQ(zoneDetector({"plot", "site.svg", "-o", "site.svg"}, folder.path()).err,
            "zone-detector: site.svg: cannot be written: the picture is drawn from it\n");
  EXPECT_EQ(zoneDetector({"plot", site, "a.xyz", "-o", "link.svg"}, folder.path()).code, 1);
  EXPECT_EQ(readAll(folder.path("a.xyz")), "11 7 1\n");
  EXPECT_EQ(readAll(folder.path("site.svg")), readAll(site));
  const Outcome picture = zoneDetector({"plot", site, "-o", "plan.png"}, folder.path());
  EXPECT_EQ(picture.code, 1);
  EXPECT_EQ(
      picture.err,
      "zone-detector: plan.png: cannot be written: pictures are SVG; give a name that ends with .svg, and "
      "convert it with a program such as rsvg-convert or a browser\n");
  EXPECT_EQ(zoneDetector({"plot", site, "-o", "-"}).out, zoneDetector({"plot", site}).out);
}

TEST(Command, ShowTellsTheOptions) {
  const TemporaryFolder folder;
  std::string text = readAll(site);
  const auto replace = [&text](const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
  };
  replace("\"triggerActiveLevel\": \"high\"", "\"triggerActiveLevel\": \"low\"");
  replace("\"useSoftwareAPICommand\": false", "\"useSoftwareAPICommand\": true");
  folder.write("site.json", text);
  EXPECT_NE(zoneDetector({"show", "--json", "site.json"}, folder.path())
                .out.find(R"("triggerActiveLevel":"low","useSoftwareAPICommand":true,)"),
            std::string::npos);
  const std::string table = zoneDetector({"show", "site.json"}, folder.path()).out;
  EXPECT_NE(table.find("trigger active level  low\n  software API command  used\n"), std::string::npos)
      << table;
}

TEST(Command, ThePlanShowsTheExtentThatIsAskedFor) {
  EXPECT_NE(zoneDetector({"plot", site, "--extent=-10,-5,30,15"}).out.find("width=\"900\" height=\"450\""),
            std::string::npos);
  EXPECT_EQ(zoneDetector({"plot", site, "--extent", "1,1,0,2"}).err,
            "zone-detector: --extent must be x0,y0,x1,y1 in metres with x0 below x1 and y0 below y1, each "
            "less than 1e9 off zero, not \"1,1,0,2\"\n"
            "zone-detector plot --help shows the usage\n");
  EXPECT_EQ(zoneDetector({"plot", site, "--extent", "0,0,1e9,1"}).code, 2);
  EXPECT_EQ(zoneDetector({"plot", site, "--extent", "0,0,999999999,1"}).code, 0);
}

TEST(Command, NamesFromAFileCannotSteerTheTerminal) {
  const TemporaryFolder folder;
  folder.write("site.json", R"({"ZoneDetector":{"EvaluationField":[{"name":"\u001b[31mred","index":0,"Zone":[
      {"name":"\u009b2J","index":0,"shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1}}]}]}})");
  folder.write("a.xyz", "1 1 1\n");
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"validate", "site.json"},
                                             {"show", "site.json"},
                                             {"run", "site.json", "a.xyz"},
                                             {"plot", "site.json"}}) {
    const Outcome outcome = zoneDetector(arguments, folder.path());
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out.find('\033'), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find("\xC2\x9B"), std::string::npos) << outcome.out;
  }
  EXPECT_NE(zoneDetector({"show", "site.json"}, folder.path()).out.find("\\x1b[31mred"), std::string::npos);
}

// A folder of recordings may come from somebody else, names included.
TEST(Command, NamesOfFilesCannotSteerTheTerminal) {
  const TemporaryFolder folder;
  const std::string name = "\033[31m";
  folder.write(name + ".json", readAll(site));
  folder.write(name + "bad.json", "{\"a\":}");
  folder.write(name + ".xyz", "0 0 0\n");
  folder.write(name + "bad.xyz", "x\n");
  folder.write(name + ".list", "0 " + name + ".xyz\n0 x\n");
  folder.write(name + "cut.mcap",
               asMcap({{{"/" + name}}, {{0, 1, asCdr(floatCloud({{1, 1, 1}}, 1))}}}).substr(0, 290));
  folder.write(name + ".sensors", R"({"sensors":[{"name":"\u001b[31m","files":["a"]}]})");
  const std::string document = name + ".json";
  const std::string frame = name + ".xyz";
  const std::vector<std::vector<std::string>> rows = {
      {"validate", document, name + "bad.json"},
      {"validate", name},
      {"show", name},
      {"show", name + "bad.json"},
      {"info", frame, name + "bad.xyz", name, name + "cut.mcap"},
      {"run", document, frame, name + "bad.xyz"},
      {"run", document, name + "cut.mcap"},
      {"run", document, frame, "--csv", document},
      {"run", document, frame, "--plot", document},
      {"run", document, frame, "--rate", "1e-300", frame},
      {"run", document, "--stamps", name + ".list"},
      {"run", document, "--tracks", frame},
      {"run", document, "--sensors", frame},
      {"run", document, frame, "--sensors", name + ".sensors"},
      {"explain", document, name + "bad.xyz"},
      {"explain", document, frame, "--line", name},
      {"plot", document, frame, "-o", frame},
      {"plot", document, "-o", name + "/x.svg"},
      {"new", "-o", document},
      {"new", name + "bad.xyz"},
      {name},
      {"run", document, frame, "--pose", name},
      {"run", document, frame, "--columns", name},
      {"run", document, frame, "--extent", name},
      {"explain", document, frame, "--at", name},
      {"run", document, frame, "--" + name},
  };
  for (const std::vector<std::string>& arguments : rows) {
    const Outcome outcome = zoneDetector(arguments, folder.path());
    EXPECT_EQ((outcome.out + outcome.err).find('\033'), std::string::npos)
        << arguments[0] << " " << arguments.back() << ":\n"
        << outcome.out << outcome.err;
  }
  EXPECT_EQ(zoneDetector({"show", name}, folder.path()).err,
            "zone-detector: \\x1b[31m: cannot be read: No such file or directory\n");
}

TEST(Command, OffATerminalThereIsNoColourAndNoProgress) {
  const Outcome outcome = zoneDetector({"validate", documents + "doubtful.json"});
  EXPECT_EQ(outcome.out.find('\033'), std::string::npos);
  EXPECT_EQ(outcome.err, "");
}

// What the command writes to a terminal, error stream included.
std::string onATerminal(const std::string& command) {
  const TemporaryFolder folder;
  folder.write("a.xyz", "11 7 1\n");
  return runProgram("/usr/bin/script", {"-qec", command, "/dev/null"}, folder.path()).out;
}

// A container may have no script(1), or no terminals to give.
bool canMakeATerminal() {
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal >= 0) {
    ::close(terminal);
  }
  return terminal >= 0 && ::access("/usr/bin/script", X_OK) == 0;
}

TEST(Command, ATerminalGetsColourUnlessNoColorIsSet) {
  if (!canMakeATerminal()) {
    GTEST_SKIP() << "no terminal can be made here";
  }
  const std::string command = std::string(ZONE_DETECTOR) + " validate " + site;
  EXPECT_NE(onATerminal("env -u NO_COLOR " + command).find("\033[32mok\033[0m"), std::string::npos);
  EXPECT_EQ(onATerminal("env NO_COLOR=1 " + command).find('\033'), std::string::npos);
  EXPECT_NE(onATerminal("env NO_COLOR= " + command).find("\033[32mok\033[0m"), std::string::npos);
  EXPECT_EQ(onATerminal("env -u NO_COLOR TERM=dumb " + command).find('\033'), std::string::npos);
}

TEST(Command, ProgressIsNeverWiderThanTheTerminal) {
  if (!canMakeATerminal()) {
    GTEST_SKIP() << "no terminal can be made here";
  }
  const std::string name = std::string(100, 'n') + ".xyz";
  const TemporaryFolder folder;
  folder.write(name, "11 7 1\n");
  const std::string command =
      "stty cols 40; env NO_COLOR=1 TERM=xterm " + std::string(ZONE_DETECTOR) + " run " + site + " " + name;
  const std::string text = runProgram("/usr/bin/script", {"-qec", command, "/dev/null"}, folder.path()).out;
  EXPECT_EQ(text.find("\r\033[K1/1 \xE2\x80\xA6" + std::string(30, 'n') + ".xyz\r\033[K"), 0U)
      << text.substr(0, 80);
  const std::string dumb =
      runProgram("/usr/bin/script",
                 {"-qec", "env TERM=dumb " + command.substr(command.find(ZONE_DETECTOR)), "/dev/null"},
                 folder.path())
          .out;
  EXPECT_EQ(dumb.find('\033'), std::string::npos);
}

TEST(Command, ATerminalSeesProgressWhichIsErasedAgain) {
  if (!canMakeATerminal()) {
    GTEST_SKIP() << "no terminal can be made here";
  }
  const std::string text =
      onATerminal("env NO_COLOR=1 " + std::string(ZONE_DETECTOR) + " run " + site + " a.xyz");
  EXPECT_EQ(text.find("\r\033[K1/1 a.xyz\r\033[Ka.xyz: 1 point"), 0U) << text;
}

}  // namespace
}  // namespace orvantis::testing
