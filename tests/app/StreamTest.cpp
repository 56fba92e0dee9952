#include <array>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Program.h"
#include "support/TemporaryFolder.h"

// A run whose input comes as it happens, and runs that are told to end.

namespace orvantis::testing {
namespace {

const std::string site = ORVANTIS_SOURCE_DIR "/examples/crossing/crossing.json";

// The command while it runs; its input and output are pipes.
class RunningCommand {
 public:
  RunningCommand(std::vector<std::string> arguments, const std::string& folder) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    EXPECT_EQ(::pipe(input.data()), 0);
    EXPECT_EQ(::pipe(output.data()), 0);
    arguments.insert(arguments.begin(), ZONE_DETECTOR);
    std::vector<char*> words;
    for (std::string& argument : arguments) {
      words.push_back(argument.data());
    }
    words.push_back(nullptr);
    child_ = ::fork();
    if (child_ == 0) {
      ::dup2(input[0], STDIN_FILENO);
      ::dup2(output[1], STDOUT_FILENO);
      for (const int end : {input[0], input[1], output[0], output[1]}) {
        ::close(end);
      }
      if (::chdir(folder.c_str()) == 0) {
        ::execv(ZONE_DETECTOR, words.data());
      }
      ::_exit(127);
    }
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    output_ = output[0];
  }
  RunningCommand(const RunningCommand&) = delete;
  RunningCommand& operator=(const RunningCommand&) = delete;
  ~RunningCommand() {
    ::kill(child_, SIGKILL);
    ::waitpid(child_, nullptr, 0);
    ::close(output_);
  }

  void write(const std::string& text) const {
    EXPECT_EQ(::write(input_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void signal(int number) const { ::kill(child_, number); }

  // The next line that it writes; what there is after half a minute without one.
  std::string line() {
    std::string text;
    pollfd wait{output_, POLLIN, 0};
    char c = '\0';
    while (::poll(&wait, 1, 30000) == 1 && ::read(output_, &c, 1) == 1 && c != '\n') {
      text += c;
    }
    return text;
  }

  // Everything it still writes, and how it ends.
  Outcome finish() {
    ::close(input_);
    Outcome outcome;
    char c = '\0';
    while (::read(output_, &c, 1) == 1) {
      outcome.out += c;
    }
    int status = 0;
    ::waitpid(child_, &status, 0);
    outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
  }

 private:
  pid_t child_ = -1;
  int input_ = -1;
  int output_ = -1;
};

const std::string header = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n";

TEST(Stream, EventsOfAListFromTheStandardInputAreToldAsTheyHappen) {
  const TemporaryFolder folder;
  folder.write("a.xyz", "11 7 1\n");
  RunningCommand command({"run", site, "--stamps", "-"}, folder.path());
  command.write("0.5 a.xyz\n");
  EXPECT_EQ(command.line(), "     0.500 s  outputs of field 0: low low low");
  command.write("0.6 a.xyz\n");
  const Outcome outcome = command.finish();
  EXPECT_EQ(outcome.code, 0);
  EXPECT_NE(outcome.out.find("  0 Pedestrians  0 Walkway"), std::string::npos) << outcome.out;
}

TEST(Stream, TracksFromTheStandardInputAreToldWithTheRowThatEndsTheirFrame) {
  const TemporaryFolder folder;
  RunningCommand command({"run", "--json", site, "--tracks", "-"}, folder.path());
  command.write(header + "1,7,car,11,7,1,1,0,0,2\n1.5,7,car,11,7,1,1,0,0,2\n");
  EXPECT_EQ(command.line().substr(0, 45), R"({"type":"object","stamp":1,"event":"entered",)");
  EXPECT_EQ(command.finish().code, 0);
}

TEST(Stream, TheDocumentCanComeFromTheStandardInput) {
  const TemporaryFolder folder;
  folder.write("a.xyz", "11 7 1\n");
  RunningCommand command({"run", "-", "a.xyz"}, folder.path());
  command.write(readAll(site));
  const Outcome outcome = command.finish();
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out, zoneDetector({"run", site, "a.xyz"}, folder.path()).out);
}

TEST(Stream, AListOfFilesCanComeFromTheStandardInput) {
  const TemporaryFolder folder;
  folder.write("a b.xyz", "11 7 1\n");
  folder.write("c.xyz", "11 7 1\n11 7 1\n");
  const auto given = zoneDetector({"run", "--json", site, "c.xyz", "a b.xyz", "c.xyz"}, folder.path());
  RunningCommand command({"run", "--json", site, "c.xyz", "-"}, folder.path());
  command.write("a b.xyz\r\n\nc.xyz");
  const Outcome outcome = command.finish();
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out, given.out);

  RunningCommand ofNothing({"run", "--json", site, "-"}, folder.path());
  ofNothing.write("\n\r\n");
  EXPECT_EQ(ofNothing.finish().code, 1);
}

TEST(Stream, ASignalEndsARunThatWaitsWithItsSummaryAndItsFiles) {
  for (const int number : {SIGINT, SIGTERM}) {
    const TemporaryFolder folder;
    folder.write("a.xyz", "11 7 1\n");
    RunningCommand command({"run", site, "--stamps", "-", "--csv", "tables", "--plot", "run.svg"},
                           folder.path());
    command.write("0.5 a.xyz\n0.6 a");
    EXPECT_EQ(command.line(), "     0.500 s  outputs of field 0: low low low");
    command.signal(number);
    const Outcome outcome = command.finish();
    EXPECT_EQ(outcome.code, 128 + number);
    EXPECT_NE(outcome.out.find("  0 Pedestrians  0 Walkway"), std::string::npos) << outcome.out;
    // The frame, the picture and the folder of tables; nothing is half written.
    EXPECT_EQ(folder.fileCount(), 3U);
    const std::filesystem::directory_iterator tables(folder.path("tables"));
    EXPECT_EQ(std::distance(begin(tables), end(tables)), 4);
    EXPECT_EQ(readAll(folder.path("tables/frames.csv")).find("stamp,cloud,"), 0U);
    EXPECT_EQ(readAll(folder.path("run.svg")).find("<svg"), 0U);
  }
}

}  // namespace
}  // namespace orvantis::testing
