#include <sstream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

#include "detector/DetectorText.h"
#include "support/GroupingLocale.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::GroupingLocale;
using orvantis::testing::loadText;
using orvantis::testing::LogCapture;
using orvantis::testing::saveText;
using orvantis::testing::toText;
using orvantis::testing::zoneNamed;
using orvantis::testing::zonesNamed;

// A process whose locale writes numbers as 1.234.567,5 and booleans as words.
class DetectorInAGroupingLocale : public ::testing::Test {
 protected:
  void SetUp() override {
    std::ostringstream out;
    out << 102400;
    ASSERT_EQ(out.str(), "102.400");
  }

  static std::string verdict(const std::string& text) {
    std::istringstream input(text);
    try {
      ZoneDetector::validate(input);
      return "passed";
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  }

 private:
  GroupingLocale locale_;
};

TEST_F(DetectorInAGroupingLocale, MessagesGroupNoDigits) {
  EXPECT_EQ(verdict(std::string(102400, ' ')),
            "Input file size exceeds maximum allowable size of 102400 bytes.");
  EXPECT_EQ(verdict(R"({"EvaluationField": [{"name": "f", "index": 1234567}]})"),
            "<EvaluationField> index 1234567 does not contain any <Zone> entries");

  std::string entries = R"({"name": "e"})";
  for (int i = 1; i < 1234; ++i) {
    entries += R"(,{"name": "e"})";
  }
  EXPECT_EQ(verdict(R"({"ExclusionZone": [)" + entries + "]}"),
            "File contains 1234zones outside the range of allowed zones");
}

TEST_F(DetectorInAGroupingLocale, IndicesInMessagesAreNotGrouped) {
  ZoneDetector detector;
  try {
    static_cast<void>(detector.getZone(1234567, 0));
    ADD_FAILURE();
  } catch (const std::out_of_range& error) {
    EXPECT_NE(std::string(error.what()).find("1234567"), std::string::npos) << error.what();
  }
}

TEST_F(DetectorInAGroupingLocale, WarningsAndVersionAreAsEver) {
  ZoneDetector detector;
  detector.setExclusionZoneVector(zonesNamed("z", 0, 32));
  const LogCapture log(LogLevel::Warning);
  detector.appendExclusionZone(zoneNamed("one more"));
  EXPECT_EQ(log.texts(LogLevel::Warning),
            std::vector<std::string>{"Cannot add exclusion zone, Maximum allowed exclusion zones is 32"});
  EXPECT_EQ(ZoneDetector::currentAPIVersion(), "1.1");
  EXPECT_TRUE(ZoneDetector::checkVersion("1.9"));
  EXPECT_FALSE(ZoneDetector::checkVersion("2.0"));
}

TEST_F(DetectorInAGroupingLocale, ADocumentIsWrittenAndReadAsEver) {
  ZoneDetector detector;
  detector.setDebounceTime(ZoneDetector::Milliseconds(1234567));
  detector.setUseSoftwareAPICommand(true);
  detector.setZone(zoneNamed("z"), 1, 1);
  detector.getZone(1, 1)->setZMin(-1234567.125);
  detector.getZone(1, 1)->setZMax(0.1);
  SettingsManager saved;
  detector.save(saved);
  EXPECT_EQ(saved.getTree().get<std::string>("ZoneDetector.debounceTimeMs"), "1234567");
  EXPECT_EQ(saved.getTree().get<std::string>("ZoneDetector.useSoftwareAPICommand"), "true");
  EXPECT_EQ(saved.getTree().get<std::string>("ZoneDetector.EvaluationField.Zone.zMin"), "-1234567.125");

  SettingsManager settings;
  loadText(settings, saveText(saved));
  ZoneDetector copy;
  const LogCapture log;
  copy.load(settings);
  EXPECT_EQ(toText(copy), toText(detector));
  EXPECT_EQ(log.texts(LogLevel::Trace).at(0),
            "got ZoneDetector.debounceTimeMs, default: 0, value  : 1234567");
  EXPECT_EQ(log.texts(LogLevel::Trace).at(3), "got ZoneDetector.useSoftwareAPICommand, value: 1");
}

}  // namespace
}  // namespace orvantis::filter::detection
