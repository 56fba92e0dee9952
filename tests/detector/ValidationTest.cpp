#include <istream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <thread>
#include <vector>

#include <boost/property_tree/exceptions.hpp>
#include <gtest/gtest.h>

#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

#include "detector/DetectorText.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::loadText;
using orvantis::testing::LogCapture;
using orvantis::testing::Record;
using orvantis::testing::saveText;
using orvantis::testing::zoneNamed;

constexpr auto sizeMessage = "Input file size exceeds maximum allowable size of 102400 bytes.";
constexpr auto passed = "passed";

// What the check says: the exception's text, or that there was none.
std::string verdict(std::istream& input) {
  try {
    ZoneDetector::validate(input);
    return passed;
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

std::string verdict(const std::string& text) {
  std::istringstream input(text);
  return verdict(input);
}

std::string join(const std::vector<std::string>& items) {
  std::string joined;
  for (const std::string& item : items) {
    joined += (joined.empty() ? "" : ", ") + item;
  }
  return joined;
}

std::string list(const std::string& key, const std::vector<std::string>& entries) {
  return "\"" + key + "\": [" + join(entries) + "]";
}

std::string shaped(const std::string& name, const std::string& shape, int numPoints) {
  const std::vector<std::string> points(static_cast<std::size_t>(numPoints), R"({"x": 0, "y": 0})");
  return R"({"name": ")" + name + R"(", "shape": ")" + shape + R"(", "Polygon": {)" + list("Point", points) +
         "}}";
}

std::string zone(const std::string& name) {
  return shaped(name, "polygon", 3);
}

std::string field(const std::string& name, int index, const std::vector<std::string>& zones) {
  return R"({"name": ")" + name + R"(", "index": )" + std::to_string(index) + ", " + list("Zone", zones) +
         "}";
}

std::string detector(const std::vector<std::string>& exclusionZones, const std::vector<std::string>& fields) {
  return R"({"ZoneDetector": {)" + list("ExclusionZone", exclusionZones) + ", " +
         list("EvaluationField", fields) + "}}";
}

std::vector<std::string> zones(int count) {
  std::vector<std::string> entries;
  for (int i = 0; i < count; ++i) {
    entries.push_back(zone("zone" + std::to_string(i)));
  }
  return entries;
}

std::vector<std::string> fields(int count) {
  std::vector<std::string> entries;
  for (int i = 0; i < count; ++i) {
    entries.push_back(field("field" + std::to_string(i), i, zones(1)));
  }
  return entries;
}

// Blanks after the document, so that the whole text has that many bytes.
std::string padded(std::string document, std::size_t size) {
  document.resize(size, ' ');
  return document;
}

TEST(ValidateSize, AStreamOneByteShorterThanTheLimitIsReadWhole) {
  EXPECT_EQ(verdict(padded(detector({}, {}), 102399)), passed);
}

TEST(ValidateSize, AStreamOfTheLimitOrMoreIsRefused) {
  for (const std::size_t size : {std::size_t{102400}, std::size_t{102401}, std::size_t{1000000}}) {
    EXPECT_EQ(verdict(padded(detector({}, {}), size)), sizeMessage) << size;
  }
}

TEST(ValidateSize, TheLastByteBelowTheLimitCounts) {
  std::string text = padded(detector({}, {}), 102399);
  text.back() = '}';
  EXPECT_NE(verdict(text), passed);
}

TEST(ValidateSize, TheSizeIsCheckedBeforeTheText) {
  EXPECT_EQ(verdict(std::string(102400, '[')), sizeMessage);
}

TEST(ValidateSize, NoMoreThanTheLimitIsRead) {
  std::istringstream input(std::string(102400, ' ') + "rest");
  EXPECT_EQ(verdict(input), sizeMessage);
  std::string rest;
  input >> rest;
  EXPECT_EQ(rest, "rest");
}

TEST(ValidateSize, ZeroBytesInTheTextDoNotEndIt) {
  std::string text = detector({}, {});
  text += std::string(1, '\0') + "garbage";
  EXPECT_NE(verdict(text), passed);
}

TEST(ValidateSize, AStreamThatIsBadFromTheStartGetsTheSizeMessage) {
  for (const auto state : {std::ios::failbit, std::ios::badbit}) {
    std::istringstream input(detector({}, {}));
    input.setstate(state);
    EXPECT_EQ(verdict(input), sizeMessage);
  }
}

// A source that breaks after its first bytes, as a bad disk does.
class BreakingSource : public std::streambuf {
 public:
  explicit BreakingSource(std::string text) : text_(std::move(text)) {
    setg(text_.data(), text_.data(), text_.data() + text_.size());
  }

 protected:
  int_type underflow() override { throw std::runtime_error("the disk is gone"); }

 private:
  std::string text_;
};

TEST(ValidateSize, AStreamThatBreaksWhileItIsReadGetsTheSizeMessage) {
  BreakingSource source(detector({}, {}));
  std::istream input(&source);
  EXPECT_EQ(verdict(input), sizeMessage);
}

TEST(ValidateSize, AStreamThatThrowsItsFailuresIsReadLikeAnother) {
  for (const auto mask : {std::ios::failbit, std::ios::eofbit, std::ios::failbit | std::ios::eofbit}) {
    std::istringstream good(detector({}, fields(1)));
    good.exceptions(mask);
    EXPECT_EQ(verdict(good), passed);
    EXPECT_TRUE(good.eof());
    std::istringstream large(padded(detector({}, {}), 102400));
    large.exceptions(mask);
    EXPECT_EQ(verdict(large), sizeMessage);
  }
  BreakingSource source(detector({}, {}));
  std::istream broken(&source);
  broken.exceptions(std::ios::badbit);
  EXPECT_EQ(verdict(broken), sizeMessage);
}

TEST(ValidateParse, AnEmptyStreamGivesTheParsersMessage) {
  EXPECT_EQ(verdict(""), "JSON error in line 1, column 1: the document ends too early");
}

TEST(ValidateParse, TextThatDoesNotParseGivesTheParsersMessageWithLineAndColumn) {
  for (const std::string text : {"{", "{\n  \"ZoneDetector\": {\n    \"name\" 1\n}}", "[1, 2", "{} {}", "nul",
                                 "\n\n   ]", R"({"a": 01})"}) {
    SettingsManager settings;
    std::istringstream in(text);
    ASSERT_FALSE(settings.loadStream(in, SettingsManager::JSON)) << text;
    EXPECT_EQ(verdict(text), settings.getLoadError()) << text;
    EXPECT_NE(settings.getLoadError().find("line "), std::string::npos) << settings.getLoadError();
    EXPECT_NE(settings.getLoadError().find("column "), std::string::npos) << settings.getLoadError();
  }
}

TEST(ValidateParse, NamesTheLineOfTheFault) {
  const std::string text = "{\n  \"ZoneDetector\": {\n    \"name\" 1\n}}";
  EXPECT_EQ(verdict(text).find("JSON error in line 3, column "), 0U) << verdict(text);
}

TEST(ValidateParse, DeepNestingIsRefusedAndNeverCrashes) {
  EXPECT_NE(verdict(std::string(102399, '[')).find("nested deeper than 64 levels"), std::string::npos);
}

TEST(ValidateParse, AByteOrderMarkIsAccepted) {
  EXPECT_EQ(verdict("\xEF\xBB\xBF" + detector({}, fields(1))), passed);
}

TEST(Validate, AWholeDocumentPasses) {
  EXPECT_EQ(verdict(detector(zones(2), fields(3))), passed);
}

TEST(Validate, WhatADetectorSavesPasses) {
  ZoneDetector source;
  source.setZone(zoneNamed("z1"), 2, 1);
  source.appendExclusionZone(zoneNamed("gate"));
  SettingsManager settings;
  source.save(settings);
  EXPECT_EQ(verdict(saveText(settings)), passed);
}

TEST(Validate, WhatADetectorSavesOfAnUnnamedZoneFailsOnTheNameLength) {
  ZoneDetector source;
  source.setZone(zoneNamed("z1"), 2, 1);
  source.getZone(2, 1)->setName("");
  SettingsManager settings;
  source.save(settings);
  EXPECT_EQ(verdict(saveText(settings)),
            "Zone  in eval field EvaluationField2 name string length is outside the limits.");
}

TEST(Validate, WhatADetectorSavesOfAnUnnamedExclusionZoneFailsOnTheNameLength) {
  ZoneDetector source;
  source.appendExclusionZone(zoneNamed("gate"));
  source.getExclusionZoneVector()[0]->setName("");
  SettingsManager settings;
  source.save(settings);
  EXPECT_EQ(verdict(saveText(settings)), "Exclusion Zone name () length is outside the limits.");
}

TEST(Validate, WhatADetectorSavesOfAFieldWithoutZonesFails) {
  ZoneDetector source;
  source.setEvaluationField(std::make_shared<ZoneDetector::EvaluationField>(), 4);
  SettingsManager settings;
  source.save(settings);
  EXPECT_EQ(verdict(saveText(settings)), "<EvaluationField> index 4 does not contain any <Zone> entries");
}

TEST(Validate, ADocumentWithoutNodeIsCheckedAtItsTopLevel) {
  EXPECT_EQ(verdict("{}"), passed);
  EXPECT_EQ(verdict("{" + list("EvaluationField", fields(8)) + "}"), passed);
  EXPECT_EQ(verdict("{" + list("EvaluationField", fields(9)) + "}"),
            "File contains more than 8 <EvaluationField> nodes");
  EXPECT_EQ(verdict("{" + list("ExclusionZone", zones(33)) + "}"),
            "File contains 33zones outside the range of allowed zones");
}

TEST(Validate, ANodeHidesTheListsBesideIt) {
  EXPECT_EQ(verdict(R"({"ZoneDetector": {}, )" + list("EvaluationField", fields(9)) + "}"), passed);
}

TEST(Validate, NothingIsRequiredOfAnEmptyDetector) {
  EXPECT_EQ(verdict(R"({"ZoneDetector": {}})"), passed);
}

TEST(Validate, EightFieldsPassAndNineFail) {
  EXPECT_EQ(verdict(detector({}, fields(8))), passed);
  EXPECT_EQ(verdict(detector({}, fields(9))), "File contains more than 8 <EvaluationField> nodes");
}

TEST(Validate, TheNumberOfFieldsIsCheckedBeforeAnyField) {
  std::vector<std::string> entries = fields(9);
  entries[0] = "{}";
  EXPECT_EQ(verdict(detector({}, entries)), "File contains more than 8 <EvaluationField> nodes");
}

TEST(Validate, AFieldHasOneToThreeZones) {
  for (int count = 1; count <= 3; ++count) {
    EXPECT_EQ(verdict(detector({}, {field("field", 5, zones(count))})), passed);
  }
  EXPECT_EQ(verdict(detector({}, {field("field", 5, {})})),
            "<EvaluationField> index 5 does not contain any <Zone> entries");
  EXPECT_EQ(verdict(detector({}, {R"({"name": "field", "index": 5})"})),
            "<EvaluationField> index 5 does not contain any <Zone> entries");
  EXPECT_EQ(verdict(detector({}, {field("field", 5, zones(4))})),
            "<EvaluationField> index 5 contains more than 3 <Zone> nodes");
}

TEST(Validate, TheNumberOfZonesIsCheckedBeforeAnyZone) {
  EXPECT_EQ(verdict(detector({}, {field("field", 0, {"{}", "{}", "{}", "{}"})})),
            "<EvaluationField> index 0 contains more than 3 <Zone> nodes");
}

TEST(Validate, AFieldNameHasOneToEighteenBytes) {
  const std::string longest(18, 'n');
  const std::string tooLong(19, 'n');
  EXPECT_EQ(verdict(detector({}, {field("n", 0, zones(1))})), passed);
  EXPECT_EQ(verdict(detector({}, {field(longest, 0, zones(1))})), passed);
  EXPECT_EQ(verdict(detector({}, {field(tooLong, 0, zones(1))})),
            "Evaluation Field " + tooLong + " name string length is outside the limits.");
  EXPECT_EQ(verdict(detector({}, {field("", 0, zones(1))})),
            "Evaluation Field  name string length is outside the limits.");
}

TEST(Validate, AZoneNameHasOneToEighteenBytes) {
  const std::string longest(18, 'z');
  const std::string tooLong(19, 'z');
  EXPECT_EQ(verdict(detector({}, {field("field", 0, {zone("z"), zone(longest)})})), passed);
  EXPECT_EQ(verdict(detector({}, {field("field", 0, {zone("z"), zone(tooLong)})})),
            "Zone " + tooLong + " in eval field field name string length is outside the limits.");
  EXPECT_EQ(verdict(detector({}, {field("field", 0, {zone("")})})),
            "Zone  in eval field field name string length is outside the limits.");
}

TEST(Validate, NameLengthsAreCountedInBytes) {
  const std::string nineCharacters = "\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4\u00e4";
  ASSERT_EQ(nineCharacters.size(), 18U);
  EXPECT_EQ(verdict(detector({zone(nineCharacters)}, {field(nineCharacters, 0, {zone(nineCharacters)})})),
            passed);
  EXPECT_EQ(verdict(detector({}, {field(nineCharacters + "n", 0, zones(1))})),
            "Evaluation Field " + nineCharacters + "n name string length is outside the limits.");
}

TEST(Validate, APolygonZoneHasAtMostSixteenPoints) {
  for (const std::string shape : {"polygon", "Polygon", "POLYGON", "pOlYgOn"}) {
    EXPECT_EQ(verdict(detector({}, {field("field", 0, {shaped("z", shape, 16)})})), passed) << shape;
    EXPECT_EQ(verdict(detector({}, {field("field", 0, {shaped("z", shape, 17)})})),
              "Cannot load configuration file.\n"
              "Maximum of 16 zone Polygon vertices exceeded in Zone 'field: z'.")
        << shape;
  }
}

TEST(Validate, OtherShapesAreNotCountedPointByPoint) {
  for (const std::string shape : {"rectangle", "sector", "Rectangle", "circle", ""}) {
    EXPECT_EQ(verdict(detector({shaped("e", shape, 17)}, {field("field", 0, {shaped("z", shape, 17)})})),
              passed)
        << shape;
  }
}

TEST(Validate, APolygonZoneNeedsNoPoints) {
  EXPECT_EQ(verdict(detector(
                {R"({"name": "e", "shape": "polygon"})"},
                {field("field", 0, {R"({"name": "z", "shape": "polygon"})", shaped("y", "polygon", 0)})})),
            passed);
}

TEST(Validate, EveryZoneOfEveryFieldIsChecked) {
  std::vector<std::string> entries = fields(8);
  entries[7] = field("last", 7, {zone("a"), zone("b"), shaped("c", "polygon", 17)});
  EXPECT_EQ(verdict(detector({}, entries)),
            "Cannot load configuration file.\n"
            "Maximum of 16 zone Polygon vertices exceeded in Zone 'last: c'.");
}

TEST(Validate, ExclusionZonesAreZeroToThirtyTwo) {
  EXPECT_EQ(verdict(detector({}, fields(1))), passed);
  EXPECT_EQ(verdict(detector(zones(32), {})), passed);
  EXPECT_EQ(verdict(detector(zones(33), {})), "File contains 33zones outside the range of allowed zones");
  EXPECT_EQ(verdict(detector(zones(40), {})), "File contains 40zones outside the range of allowed zones");
}

TEST(Validate, TheNumberOfExclusionZonesIsCheckedBeforeAnyOfThem) {
  EXPECT_EQ(verdict(detector(std::vector<std::string>(33, "{}"), {})),
            "File contains 33zones outside the range of allowed zones");
}

TEST(Validate, AnExclusionZoneNameHasOneToEighteenBytes) {
  const std::string tooLong(19, 'e');
  EXPECT_EQ(verdict(detector({zone(std::string(18, 'e'))}, {})), passed);
  EXPECT_EQ(verdict(detector({zone("e"), zone(tooLong)}, {})),
            "Exclusion Zone name (" + tooLong + ") length is outside the limits.");
  EXPECT_EQ(verdict(detector({zone("")}, {})), "Exclusion Zone name () length is outside the limits.");
}

TEST(Validate, APolygonExclusionZoneHasAtMostSixteenPoints) {
  for (const std::string shape : {"polygon", "Polygon", "POLYGON"}) {
    EXPECT_EQ(verdict(detector({shaped("gate", shape, 16)}, {})), passed) << shape;
    EXPECT_EQ(verdict(detector({zone("first"), shaped("gate", shape, 17)}, {})),
              "Cannot load configuration file.\n"
              "Maximum of 16 zone Polygon vertices exceeded in Zone 'gate'.")
        << shape;
  }
}

TEST(Validate, ExclusionZonesAreCheckedBeforeFields) {
  EXPECT_EQ(verdict(detector({zone("")}, fields(9))), "Exclusion Zone name () length is outside the limits.");
  EXPECT_EQ(verdict(R"({"ZoneDetector": {)" + list("EvaluationField", {"{}"}) + ", " +
                    list("ExclusionZone", zones(33)) + "}}"),
            "File contains 33zones outside the range of allowed zones");
}

TEST(Validate, AFieldsNameIsCheckedBeforeItsIndex) {
  EXPECT_EQ(verdict(detector({}, {R"({"name": ""})"})),
            "Evaluation Field  name string length is outside the limits.");
}

TEST(Validate, AZonesNameIsCheckedBeforeItsShape) {
  EXPECT_EQ(verdict(detector({}, {field("field", 0, {R"({"name": ""})"})})),
            "Zone  in eval field field name string length is outside the limits.");
  EXPECT_EQ(verdict(detector({R"({"name": ""})"}, {})),
            "Exclusion Zone name () length is outside the limits.");
}

// The error of a required read, unchanged.
template <typename Error>
std::string settingsError(const std::string& text) {
  std::istringstream input(text);
  try {
    ZoneDetector::validate(input);
  } catch (const Error& error) {
    return error.what();
  }
  return passed;
}

TEST(Validate, AMissingRequiredKeyPassesOutUnchanged) {
  using boost::property_tree::ptree_bad_path;
  EXPECT_EQ(settingsError<ptree_bad_path>(detector({}, {R"({"index": 0})"})), "No such node (name)");
  EXPECT_EQ(settingsError<ptree_bad_path>(detector({}, {R"({"name": "n"})"})), "No such node (index)");
  EXPECT_EQ(settingsError<ptree_bad_path>(detector({}, {field("n", 0, {R"({"shape": "polygon"})"})})),
            "No such node (name)");
  EXPECT_EQ(settingsError<ptree_bad_path>(detector({}, {field("n", 0, {R"({"name": "z"})"})})),
            "No such node (shape)");
  EXPECT_EQ(settingsError<ptree_bad_path>(detector({R"({"shape": "polygon"})"}, {})), "No such node (name)");
  EXPECT_EQ(settingsError<ptree_bad_path>(detector({R"({"name": "e"})"}, {})), "No such node (shape)");
}

TEST(Validate, AnIndexThatIsNotAnIntegerPassesOutUnchanged) {
  using boost::property_tree::ptree_bad_data;
  EXPECT_EQ(settingsError<ptree_bad_data>(detector({}, {R"({"name": "n", "index": "two"})"})),
            "conversion of data to type \"i\" failed");
}

TEST(Validate, WhatALoadCopesWithIsNotChecked) {
  EXPECT_EQ(verdict(R"({"ZoneDetector": {
      "version": "7.0", "debounceTimeMs": "never", "sensitivity": -1, "triggerActiveLevel": "medium",
      "useSoftwareAPICommand": "maybe", "unknown": {},
      "ExclusionZone": [{"name": "same", "shape": "circle"}, {"name": "same", "shape": "sector"}],
      "EvaluationField": [
        {"name": "same", "index": 99, "Zone": [{"name": "same", "shape": "circle", "zMin": "low"},
                                              {"name": "same", "shape": "circle", "index": 7}]},
        {"name": "same", "index": -1, "Zone": [{"name": "same", "shape": "circle"}]}]}})"),
            passed);
}

TEST(Validate, ReadsInItsOrderAndLogsNothingElse) {
  const LogCapture log;
  EXPECT_EQ(verdict(detector({zone("gate")}, {field("f", 2, {shaped("z", "Sector", 0)})})), passed);
  EXPECT_EQ(log.records(),
            (std::vector<Record>{
                {LogLevel::Trace, "SettingsManager", "got ZoneDetector.ExclusionZone.name, value: gate"},
                {LogLevel::Trace, "SettingsManager", "got ZoneDetector.ExclusionZone.shape, value: polygon"},
                {LogLevel::Trace, "SettingsManager", "got ZoneDetector.EvaluationField.name, value: f"},
                {LogLevel::Trace, "SettingsManager", "got ZoneDetector.EvaluationField.index, value: 2"},
                {LogLevel::Trace, "SettingsManager", "got ZoneDetector.EvaluationField.Zone.name, value: z"},
                {LogLevel::Trace, "SettingsManager",
                 "got ZoneDetector.EvaluationField.Zone.shape, value: Sector"}}));
}

TEST(Validate, LogsNothingOnAFault) {
  const LogCapture log(LogLevel::Debug);
  EXPECT_EQ(verdict(""), "JSON error in line 1, column 1: the document ends too early");
  EXPECT_EQ(verdict(padded("", 102400)), sizeMessage);
  EXPECT_NE(verdict(detector(zones(33), {})), passed);
  EXPECT_NE(verdict(detector({}, fields(9))), passed);
  EXPECT_EQ(log.records(), std::vector<Record>());
}

TEST(Validate, MayRunOnManyThreadsAtOnce) {
  const std::string good = detector(zones(32), fields(8));
  const std::string bad = detector(zones(33), fields(8));
  std::vector<std::thread> threads;
  std::vector<std::string> verdicts(8);
  for (std::size_t i = 0; i < verdicts.size(); ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 10; ++round) {
        verdicts[i] = verdict(i % 2 == 0 ? good : bad);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (std::size_t i = 0; i < verdicts.size(); ++i) {
    EXPECT_EQ(verdicts[i], i % 2 == 0 ? passed : "File contains 33zones outside the range of allowed zones");
  }
}

TEST(ValidateExclusionZone, ChecksTheListAtTheCurrentPath) {
  SettingsManager settings;
  loadText(settings, R"({"Site": {)" + list("ExclusionZone", {zone("")}) + "}}");
  EXPECT_NO_THROW(ZoneDetector::validateExclusionZone(settings)) << "there is no list at the root";
  settings.pathPush("Site");
  EXPECT_THROW(ZoneDetector::validateExclusionZone(settings), std::runtime_error);
}

TEST(ValidateExclusionZone, LeavesThePathWhereItWas) {
  for (const std::string& entry :
       {zone("gate"), zone(""), shaped("gate", "polygon", 17), std::string("{}")}) {
    SettingsManager settings;
    loadText(settings, R"({"Site": {)" + list("ExclusionZone", {zone("first"), entry}) + "}}");
    settings.pathPush("Site");
    try {
      ZoneDetector::validateExclusionZone(settings);
      EXPECT_EQ(entry, zone("gate"));
    } catch (const std::runtime_error&) {
      EXPECT_NE(entry, zone("gate"));
    }
    EXPECT_EQ(settings.pathPush("probe"), "Site.probe") << entry;
  }
}

TEST(ZoneNames, HaveOneToEighteenBytes) {
  EXPECT_FALSE(ZoneDetector::validateZoneNameLength(""));
  for (std::size_t length = 1; length <= 18; ++length) {
    EXPECT_TRUE(ZoneDetector::validateZoneNameLength(std::string(length, 'n'))) << length;
  }
  for (const std::size_t length : {std::size_t{19}, std::size_t{20}, std::size_t{100000}}) {
    EXPECT_FALSE(ZoneDetector::validateZoneNameLength(std::string(length, 'n'))) << length;
  }
  EXPECT_TRUE(ZoneDetector::validateZoneNameLength(std::string(1, '\0')));
}

}  // namespace
}  // namespace orvantis::filter::detection
