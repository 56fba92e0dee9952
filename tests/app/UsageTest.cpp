#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"

// Wrong words on the command line are answered in sentences, with the word that was likely meant.

namespace orvantis::testing {
namespace {

using Words = std::vector<std::string>;

std::string complaint(const Words& words) {
  const Outcome outcome = zoneDetector(words);
  EXPECT_EQ(outcome.code, 2);
  EXPECT_EQ(outcome.out, "");
  const std::string begin = "zone-detector: ";
  EXPECT_EQ(outcome.err.substr(0, begin.size()), begin);
  return outcome.err.substr(begin.size());
}

TEST(Usage, SaysWhatIsWrongInASentenceAndWhereTheHelpIs) {
  const std::vector<std::pair<Words, std::string>> rows = {
      {{}, "a command is missing"},
      {{"unknown"}, "unknown command \"unknown\""},
      {{"runn"}, "unknown command \"runn\"; did you mean \"run\"?"},
      {{"--versoin"}, "unknown option \"--versoin\"; did you mean \"--version\"?"},
  };
  for (const auto& [words, text] : rows) {
    EXPECT_EQ(complaint(words), text + "\nzone-detector --help shows the usage\n");
  }
}

TEST(Usage, OfACommandNamesItsHelp) {
  const std::vector<std::pair<Words, std::string>> rows = {
      {{"run"}, "FILE is missing"},
      {{"run", "site.json"}, "CLOUD, --sensors, --stamps or --tracks is missing"},
      {{"run", "site.json", "--rate", "-1", "a.pcd"}, "--rate must be above 0, not \"-1\""},
      {{"run", "site.json", "--rate", "0", "a.pcd"}, "--rate must be above 0, not \"0\""},
      {{"run", "site.json", "--rate", "ten", "a.pcd"}, "--rate must be a number, not \"ten\""},
      {{"run", "site.json", "--rate", "inf", "a.pcd"}, "--rate must be a number, not \"inf\""},
      {{"run", "site.json", "--pose", "1,2,3", "a.pcd"},
       "--pose \"1,2,3\" is not a pose; give x,y,z,roll,pitch,yaw: metres and degrees, six numbers"},
      {{"run", "site.json", "--clearance", "-0.1", "a.pcd"}, "--clearance must be 0 or more, not \"-0.1\""},
      {{"run", "site.json", "--max-speed", "0", "a.pcd"}, "--max-speed must be above 0, not \"0\""},
      {{"run", "site.json", "--forget-after", "0", "a.pcd"},
       "--forget-after must be between 1e-09 and 4.6e+09, not \"0\""},
      {{"run", "site.json", "--field", "8", "a.pcd"},
       "--field must be a whole number between 0 and 7, not \"8\""},
      {{"run", "site.json", "--field", "1.5", "a.pcd"},
       "--field must be a whole number between 0 and 7, not \"1.5\""},
      {{"run", "site.json", "a.pcd", "--trakcs", "t.csv"},
       "unknown option \"--trakcs\"; did you mean \"--tracks\"?"},
      {{"run", "site.json", "a.pcd", "--rate"}, "--rate needs a value"},
      {{"run", "site.json", "a.pcd", "--tracks-format", "kitti"}, "--tracks-format needs --tracks"},
      {{"run", "site.json", "--tracks", "t", "--tracks-format", "xml"},
       "--tracks-format must be csv or kitti, not \"xml\""},
      {{"run", "site.json", "--rate", "5", "--stamps", "list"}, "--rate and --stamps exclude each other"},
      {{"run", "-", "--tracks", "-"}, "only one input can be -, the standard input"},
      {{"run", "site.json", "--stamps", "-", "--tracks", "-"}, "only one input can be -, the standard input"},
  };
  for (const auto& [words, text] : rows) {
    EXPECT_EQ(complaint(words), text + "\nzone-detector run --help shows the usage\n");
  }
}

TEST(Usage, TakesTheFirstAndTheLastValueThatIsAllowed) {
  const std::vector<Words> rows = {{"--rate", "0.001"},
                                   {"--clearance", "0"},
                                   {"--max-speed", "0.001"},
                                   {"--field", "0"},
                                   {"--field", "7"},
                                   {"--forget-after", "1e-9"},
                                   {"--forget-after", "4.6e9"},
                                   {"--min-range", "0"},
                                   {"--sensors", "s.json", "--window", "0"},
                                   {"--sensors", "s.json", "--window", "3600"}};
  for (Words words : rows) {
    words.insert(words.begin(), {"run", "missing.json", "a.pcd"});
    EXPECT_EQ(zoneDetector(words).err,
              "zone-detector: missing.json: cannot be read: No such file or directory\n")
        << words[3] << " " << words.back();
  }
}

TEST(Usage, WordsThatSteerATerminalAreWrittenOut) {
  EXPECT_EQ(complaint({"\x1b[31m"}).substr(0, 26), "unknown command \"\\x1b[31m\"");
}

}  // namespace
}  // namespace orvantis::testing
