#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include "support/TemporaryFolder.h"

// The whole output of each subcommand, compared with a file. After a wanted change, run the tests once with
// UPDATE_GOLDEN=1 and look at what changed.

namespace orvantis::testing {
namespace {

const std::string here = ORVANTIS_SOURCE_DIR "/tests/app/";
const std::string site = ORVANTIS_SOURCE_DIR "/examples/crossing/crossing.json";

// The recording of the example, made once.
const TemporaryFolder& recording() {
  static const TemporaryFolder folder;
  static const int code = runProgram(CROSSING_RECORDING, {folder.path()}).code;
  EXPECT_EQ(code, 0);
  return folder;
}

void expectGolden(const std::string& name, const std::string& actual) {
  const std::string path = here + "golden/" + name;
  if (std::getenv("UPDATE_GOLDEN") != nullptr) {
    std::ofstream(path, std::ios::binary) << actual;
    GTEST_SKIP() << "wrote " << path;
  }
  EXPECT_EQ(actual, readAll(path)) << "differs from " << path;
}

void expectOutput(const std::string& name, const std::vector<std::string>& arguments,
                  const std::string& folder, int code = 0) {
  const Outcome outcome = zoneDetector(arguments, folder);
  EXPECT_EQ(outcome.code, code);
  EXPECT_EQ(outcome.err, "");
  expectGolden(name, outcome.out);
}

TEST(Golden, HelpBeginsWithWorkedExamples) {
  const Outcome outcome = zoneDetector({"--help"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out.find("Examples:\n  zone-detector validate"), 0U);
  expectGolden("help.txt", outcome.out);
}

TEST(Golden, HelpOfEverySubcommandBeginsWithWorkedExamples) {
  std::string all;
  for (const std::string command : {"validate", "show", "info", "run", "explain", "plot", "new"}) {
    const Outcome outcome = zoneDetector({command, "--help"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out.find("Examples:\n  zone-detector " + command), 0U);
    all += outcome.out;
  }
  expectGolden("help_of_subcommands.txt", all);
}

TEST(Golden, ValidateOfAGoodDocumentSaysOkAndNoMore) {
  expectOutput("validate_good.txt", {"validate", "crossing.json"}, ORVANTIS_SOURCE_DIR "/examples/crossing");
}

TEST(Golden, ValidateNamesPlaceAndLineOfEveryFinding) {
  expectOutput("validate_doubtful.txt", {"validate", "doubtful.json"}, here + "documents", 1);
}

TEST(Golden, ValidateSaysWhatAHostIsTold) {
  expectOutput("validate_refused.txt",
               {"validate", "too_many_vertices.json", "no_index.json", "not_json.json", "long_name.json"},
               here + "documents", 1);
}

TEST(Golden, Show) {
  expectOutput("show.txt", {"show", site}, ".");
}

TEST(Golden, ShowAsJson) {
  expectOutput("show.json", {"show", "--json", site}, ".");
}

TEST(Golden, Run) {
  expectOutput("run.txt", {"run", "--quiet", site, "frame_00.pcd", "frame_10.pcd", "frame_19.pcd"},
               recording().path());
}

TEST(Golden, RunAsJsonLines) {
  expectOutput("run.jsonl",
               {"run", "--quiet", "--json", site, "frame_00.pcd", "frame_10.pcd", "frame_19.pcd"},
               recording().path());
}

TEST(Golden, RunByReferencePrintsTheSame) {
  expectOutput("run.txt",
               {"run", "--quiet", "--reference", site, "frame_00.pcd", "frame_10.pcd", "frame_19.pcd"},
               recording().path());
}

// The frames and tracks of the whole example; the time taken stands on the error stream.
Outcome runExample(std::vector<std::string> options) {
  std::vector<std::string> arguments = {"run", "--quiet", site};
  for (int i = 0; i < 20; ++i) {
    arguments.push_back("frame_" + std::string(i < 10 ? "0" : "") + std::to_string(i) + ".pcd");
  }
  arguments.insert(arguments.end(), {"--tracks", "tracks.csv"});
  arguments.insert(arguments.end(), options.begin(), options.end());
  return zoneDetector(arguments, recording().path());
}

TEST(Golden, RunWithTracks) {
  expectGolden("run_tracks.txt", runExample({}).out);
}

TEST(Golden, RunWithTracksAsJsonLines) {
  expectGolden("run_tracks.jsonl", runExample({"--json"}).out);
}

TEST(Golden, PictureOfARun) {
  const TemporaryFolder folder;
  EXPECT_EQ(runExample({"--plot", folder.path("run.svg")}).code, 0);
  expectGolden("run.svg", readAll(folder.path("run.svg")));
}

TEST(Golden, Explain) {
  expectOutput("explain.txt",
               {"explain", site, "frame_00.pcd", "frame_01.pcd", "frame_02.pcd", "--at", "0.1", "--tracks",
                "tracks.csv", "--line", "Crossing", "--track", "1"},
               recording().path());
}

TEST(Golden, Plot) {
  expectOutput("plan.svg", {"plot", site}, ".");
}

TEST(Golden, PlotOverAScanIntoAFile) {
  const TemporaryFolder folder;
  expectOutput("empty.txt", {"plot", site, "frame_10.pcd", "-o", folder.path("plan.svg")},
               recording().path());
  expectGolden("plan_with_scan.svg", readAll(folder.path("plan.svg")));
  EXPECT_EQ(folder.fileCount(), 1U);
}

}  // namespace
}  // namespace orvantis::testing
