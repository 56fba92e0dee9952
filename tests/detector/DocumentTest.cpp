#include <climits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/exceptions.hpp>
#include <boost/uuid/uuid.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dTarsel.h>
#include <filter/detection/ZoneDetector.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "detector/DetectorText.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::loadText;
using orvantis::testing::LogCapture;
using orvantis::testing::namesOf;
using orvantis::testing::Record;
using orvantis::testing::saveText;
using orvantis::testing::toText;
using orvantis::testing::zoneNamed;

using Trigger = ZoneDetector::TriggerZoneValue;
using Texts = std::vector<std::string>;

constexpr auto unknownLevel = "Unidentified triggerActiveLevel value";

// An entry's keys beside "name" and "index".
constexpr auto fan = R"("shape": "sector", "Sector": {"minAngle": -0.5, "maxAngle": 0.5, "radius": 2})";

// A detector whose every option and list differs from the defaults.
ZoneDetector busyDetector() {
  ZoneDetector detector;
  detector.setDebounceTime(ZoneDetector::Milliseconds(200));
  detector.setMinPoints(3);
  detector.setTriggerZone(Trigger::LOW);
  detector.setUseSoftwareAPICommand(true);
  detector.setZone(zoneNamed("z1"), 2, 1);
  detector.getEvaluationField(2)->name = "field-a";
  detector.appendExclusionZone(zoneNamed("gate"));
  return detector;
}

void load(ZoneDetector& detector, const std::string& json) {
  SettingsManager settings;
  loadText(settings, json);
  detector.load(settings);
}

ZoneDetector loaded(const std::string& json) {
  ZoneDetector detector;
  load(detector, json);
  return detector;
}

std::string value(const SettingsManager& settings, const std::string& path) {
  return settings.getTree().get<std::string>(path);
}

// The children of the node at the path, in order.
Texts keys(const SettingsManager& settings, const std::string& path) {
  Texts names;
  for (const auto& child : settings.getTree().get_child(path)) {
    names.push_back(child.first);
  }
  return names;
}

// The values of `key` in all children `list` of the node at the path.
Texts listValues(const SettingsManager& settings, const std::string& path, const std::string& list,
                 const std::string& key) {
  Texts values;
  const auto& node = settings.getTree().get_child(path);
  const auto [begin, end] = node.equal_range(list);
  for (auto entry = begin; entry != end; ++entry) {
    values.push_back(entry->second.get<std::string>(key));
  }
  return values;
}

TEST(DetectorLoad, ReadsTheDocumentInItsOrder) {
  SettingsManager settings;
  loadText(settings, R"({"ZoneDetector": {
      "version": "9.9", "debounceTimeMs": 200, "sensitivity": 8, "triggerActiveLevel": "Low",
      "useSoftwareAPICommand": true,
      "EvaluationField": [{"name": "field-a", "index": 2, "Zone": [
          {"name": "z1", "index": 1, "shape": "POLYGON", "zMin": -1, "zMax": 2.5,
           "Polygon": {"Point": [{"x": 1, "y": 2}, {"x": 3, "y": 4}]}}]}],
      "ExclusionZone": [{"name": "gate", "shape": "Sector",
                         "Sector": {"minAngle": -0.5, "maxAngle": 0.5, "radius": 2}}]}})");
  ZoneDetector detector;
  const LogCapture log;
  detector.load(settings);
  for (const Record& record : log.records()) {
    EXPECT_EQ(record.level, LogLevel::Trace) << record;
    EXPECT_EQ(record.logger, "SettingsManager") << record;
  }
  EXPECT_EQ(log.texts(LogLevel::Trace),
            (Texts{"got ZoneDetector.debounceTimeMs, default: 0, value  : 200",
                   "got ZoneDetector.sensitivity, default: 10, value  : 8",
                   "got ZoneDetector.triggerActiveLevel, default: high, value  : Low",
                   "got ZoneDetector.useSoftwareAPICommand, value: 1",
                   "got ZoneDetector.ExclusionZone.name, default: ExclusionZone0, value  : gate",
                   "got ZoneDetector.ExclusionZone.name, value: gate",
                   "got ZoneDetector.ExclusionZone.shape, value: Sector",
                   "got ZoneDetector.ExclusionZone.Sector.maxAngle, value: 0.5",
                   "got ZoneDetector.ExclusionZone.Sector.minAngle, value: -0.5",
                   "got ZoneDetector.ExclusionZone.Sector.radius, value: 2",
                   "got ZoneDetector.ExclusionZone.zMin, default: 0, value  : 0",
                   "got ZoneDetector.ExclusionZone.zMax, default: 20, value  : 20",
                   "got ZoneDetector.EvaluationField.index, value: 2",
                   "got ZoneDetector.EvaluationField.name, default: EvaluationField2, value  : field-a",
                   "got ZoneDetector.EvaluationField.Zone.index, value: 1",
                   "got ZoneDetector.EvaluationField.Zone.name, value: z1",
                   "got ZoneDetector.EvaluationField.Zone.shape, value: POLYGON",
                   "got ZoneDetector.EvaluationField.Zone.Polygon.Point.y, value: 2",
                   "got ZoneDetector.EvaluationField.Zone.Polygon.Point.x, value: 1",
                   "got ZoneDetector.EvaluationField.Zone.Polygon.Point.y, value: 4",
                   "got ZoneDetector.EvaluationField.Zone.Polygon.Point.x, value: 3",
                   "got ZoneDetector.EvaluationField.Zone.zMin, default: 0, value  : -1",
                   "got ZoneDetector.EvaluationField.Zone.zMax, default: 20, value  : 2.5"}));

  EXPECT_EQ(detector.getVersion(), "1.1") << "the version in a document is not kept";
  EXPECT_EQ(detector.getDebounceTime().count(), 200);
  EXPECT_EQ(detector.getMinPoints(), 3);
  EXPECT_EQ(detector.getTriggerZone(), Trigger::LOW);
  EXPECT_TRUE(detector.useSoftwareAPICommand());
  EXPECT_EQ(namesOf(detector.getExclusionZoneVector()), Texts{"gate"});
  ASSERT_NE(detector.getEvaluationField(2), nullptr);
  EXPECT_EQ(detector.getEvaluationField(2)->name, "field-a");
  ASSERT_NE(detector.getZone(2, 1), nullptr);
  EXPECT_EQ(detector.getZone(2, 1)->getName(), "z1");
  EXPECT_EQ(detector.getZone(2, 1)->getZMin(), -1.0);
  EXPECT_EQ(detector.getZone(2, 1)->getZMax(), 2.5);
}

TEST(DetectorLoad, LeavesThePathWhereItWas) {
  SettingsManager settings;
  loadText(settings, R"({"Site": {"ZoneDetector": {"debounceTimeMs": 7,
      "EvaluationField": [{"index": 0, "Zone": [{"index": 0, "name": "n", )" +
                         std::string(fan) + R"(}]}]}}})");
  EXPECT_EQ(settings.pathPush("Site"), "Site");
  ZoneDetector detector;
  detector.load(settings);
  EXPECT_EQ(detector.getDebounceTime().count(), 7);
  EXPECT_EQ(settings.pathPush("probe"), "Site.probe");
}

TEST(DetectorLoad, AnEmptyNodeKeepsDebounceAndFlagAndResetsTheRest) {
  ZoneDetector detector = busyDetector();
  load(detector, R"({"ZoneDetector": {}})");
  EXPECT_EQ(detector.getDebounceTime().count(), 200);
  EXPECT_TRUE(detector.useSoftwareAPICommand());
  EXPECT_EQ(detector.getMinPoints(), 1);
  EXPECT_EQ(detector.getTriggerZone(), Trigger::HIGH);
  EXPECT_EQ(detector.getVersion(), "1.1");
  EXPECT_TRUE(detector.getExclusionZoneVector().empty());
  EXPECT_EQ(detector.getEvaluationFieldArray(), ZoneDetector::EvaluationFieldArray());
}

TEST(DetectorLoad, WithoutANodeNoOptionIsReadAndTheListsEndEmpty) {
  ZoneDetector detector = busyDetector();
  SettingsManager settings;
  loadText(settings, R"({"debounceTimeMs": 1, "sensitivity": 1, "triggerActiveLevel": "high",
                         "useSoftwareAPICommand": false})");
  const LogCapture log;
  detector.load(settings);
  EXPECT_EQ(log.records(), std::vector<Record>());
  EXPECT_EQ(detector.getDebounceTime().count(), 200);
  EXPECT_EQ(detector.getMinPoints(), 3);
  EXPECT_EQ(detector.getTriggerZone(), Trigger::LOW);
  EXPECT_TRUE(detector.useSoftwareAPICommand());
  EXPECT_EQ(detector.getVersion(), "1.1");
  EXPECT_TRUE(detector.getExclusionZoneVector().empty());
  EXPECT_EQ(detector.getEvaluationFieldArray(), ZoneDetector::EvaluationFieldArray());
}

TEST(DetectorLoad, WithoutANodeTheListsAreReadAtTheCurrentPath) {
  const ZoneDetector detector = loaded(R"({
      "ExclusionZone": [{"name": "gate", )" +
                                       std::string(fan) + R"(}],
      "EvaluationField": [{"index": 4, "Zone": [{"index": 2, "name": "far", )" +
                                       fan + R"(}]}]})");
  EXPECT_EQ(namesOf(detector.getExclusionZoneVector()), Texts{"gate"});
  ASSERT_NE(detector.getZone(4, 2), nullptr);
  EXPECT_EQ(detector.getZone(4, 2)->getName(), "far");
}

TEST(DetectorLoad, WithoutANodeOneLevelIsPoppedAllTheSame) {
  SettingsManager settings;
  loadText(settings, R"({"Site": {"Lane": {}}})");
  settings.pathPush("Site");
  settings.pathPush("Lane");
  ZoneDetector detector;
  detector.load(settings);
  EXPECT_EQ(settings.pathPush("probe"), "Site.probe");
}

TEST(DetectorLoad, TheExtraPopStopsAtTheRoot) {
  SettingsManager settings;
  ZoneDetector detector;
  detector.load(settings);
  detector.load(settings);
  EXPECT_EQ(settings.pathPush("probe"), "probe");
}

TEST(DetectorLoad, TheTriggerLevelIsReadInAnyLetterCase) {
  for (const std::string level : {"low", "LOW", "Low", "lOw"}) {
    EXPECT_EQ(loaded(R"({"ZoneDetector": {"triggerActiveLevel": ")" + level + "\"}}").getTriggerZone(),
              Trigger::LOW)
        << level;
  }
  for (const std::string level : {"high", "HIGH", "High"}) {
    ZoneDetector detector = busyDetector();
    load(detector, R"({"ZoneDetector": {"triggerActiveLevel": ")" + level + "\"}}");
    EXPECT_EQ(detector.getTriggerZone(), Trigger::HIGH) << level;
  }
}

TEST(DetectorLoad, AnUnknownTriggerLevelIsAWarningAndKeepsTheLevel) {
  for (const std::string level : {"medium", "", "low ", "lowest", "0"}) {
    for (const Trigger previous : {Trigger::LOW, Trigger::HIGH}) {
      ZoneDetector detector;
      detector.setTriggerZone(previous);
      const LogCapture log(LogLevel::Warning);
      load(detector,
           R"({"ZoneDetector": {"triggerActiveLevel": ")" + level + R"(", "useSoftwareAPICommand": true}})");
      EXPECT_EQ(log.records(), (std::vector<Record>{{LogLevel::Warning, "", unknownLevel}})) << level;
      EXPECT_EQ(detector.getTriggerZone(), previous) << level;
      EXPECT_TRUE(detector.useSoftwareAPICommand()) << "loading goes on";
    }
  }
}

TEST(DetectorLoad, SensitivityIsMappedAndUnknownOnesGiveOnePoint) {
  for (int sensitivity = 1; sensitivity <= 10; ++sensitivity) {
    const ZoneDetector detector =
        loaded(R"({"ZoneDetector": {"sensitivity": )" + std::to_string(sensitivity) + "}}");
    EXPECT_EQ(detector.getMinPoints(), 11 - sensitivity);
  }
  for (const std::string sensitivity : {"0", "11", "-3", "2147483647"}) {
    EXPECT_EQ(loaded(R"({"ZoneDetector": {"sensitivity": )" + sensitivity + "}}").getMinPoints(), 1);
  }
}

TEST(DetectorLoad, OptionsThatDoNotConvertCountAsMissing) {
  ZoneDetector detector = busyDetector();
  load(detector, R"({"ZoneDetector": {"debounceTimeMs": "soon", "sensitivity": "high"}})");
  EXPECT_EQ(detector.getDebounceTime().count(), 200);
  EXPECT_EQ(detector.getMinPoints(), 1);
}

TEST(DetectorLoad, AFlagThatIsNotABooleanThrows) {
  ZoneDetector detector = busyDetector();
  EXPECT_THROW(load(detector, R"({"ZoneDetector": {"useSoftwareAPICommand": "perhaps"}})"),
               boost::property_tree::ptree_bad_data);
  EXPECT_TRUE(detector.useSoftwareAPICommand());
  EXPECT_EQ(namesOf(detector.getExclusionZoneVector()), Texts{"gate"}) << "the lists come later";
}

TEST(DetectorLoad, TheFlagIsReadAsBoolean) {
  ZoneDetector detector = busyDetector();
  load(detector, R"({"ZoneDetector": {"useSoftwareAPICommand": false}})");
  EXPECT_FALSE(detector.useSoftwareAPICommand());
  load(detector, R"({"ZoneDetector": {"useSoftwareAPICommand": 1}})");
  EXPECT_TRUE(detector.useSoftwareAPICommand());
}

TEST(DetectorLoad, ReplacesBothLists) {
  ZoneDetector detector = busyDetector();
  load(detector, R"({"ZoneDetector": {
      "ExclusionZone": [{"name": "a", )" +
                     std::string(fan) + R"(}, {"name": "b", )" + fan + R"(}],
      "EvaluationField": [{"name": "f", "index": 6}]}})");
  EXPECT_EQ(namesOf(detector.getExclusionZoneVector()), (Texts{"a", "b"}));
  EXPECT_EQ(detector.getEvaluationField(2), nullptr);
  EXPECT_NE(detector.getEvaluationField(6), nullptr);
}

TEST(DetectorLoad, ExclusionZonesAreNotChecked) {
  std::string entries;
  for (int i = 0; i < 40; ++i) {
    entries += (i == 0 ? "" : ",") + std::string(R"({"name": "a name of more than 18 bytes", )") + fan + "}";
  }
  const LogCapture log(LogLevel::Warning);
  const ZoneDetector detector = loaded(R"({"ZoneDetector": {"ExclusionZone": [)" + entries + "]}}");
  EXPECT_EQ(detector.getExclusionZoneVector().size(), 40U);
  EXPECT_EQ(log.records(), std::vector<Record>());
}

TEST(DetectorLoad, ZonesAndShapesHaveLoggersOfTheirOwn) {
  SettingsManager settings;
  loadText(settings, R"({"ZoneDetector": {
      "ExclusionZone": [{"name": "gate", "shape": "polygon", "Polygon": {}}],
      "EvaluationField": [{"index": 0, "Zone": [{"name": "z", "index": 0, "shape": "polygon", "Polygon": {}}]}]}})");
  ZoneDetector detector;
  detector.setLogger(LoggingManager::getInstance().getLogger("given"));
  detector.load(settings);
  EXPECT_EQ(testing::nameOf(detector.getLogger()), "given");
  for (const auto& zone : {detector.getExclusionZoneVector().at(0), detector.getZone(0, 0)}) {
    EXPECT_EQ(testing::nameOf(zone->getLogger()), "Zone3dBase");
    EXPECT_EQ(testing::nameOf(zone->getZone2d()->getLogger()), "");
  }
}

TEST(DetectorLoad, AnUnknownShapeLeavesAZoneWithoutShape) {
  const LogCapture log(LogLevel::Warning);
  const ZoneDetector detector = loaded(R"({"ZoneDetector": {
      "ExclusionZone": [{"name": "gate", "shape": "Circle", "zMin": 1, "zMax": 2}]}})");
  ASSERT_EQ(detector.getExclusionZoneVector().size(), 1U);
  EXPECT_EQ(toText(*detector.getExclusionZoneVector()[0]), "no shape, heights 0x1p+0 to 0x1p+1");
  EXPECT_EQ(log.records(), (std::vector<Record>{{LogLevel::Warning, "Zone3dBase",
                                                 "Cannot load zone with invalid shape 'circle'"}}));
}

TEST(DetectorLoad, TheSlotOfAFieldIsItsIndexAndNotItsPosition) {
  const ZoneDetector detector =
      loaded(R"({"ZoneDetector": {"EvaluationField": [{"name": "six", "index": 6}]}})");
  for (int field = 0; field < 8; ++field) {
    EXPECT_EQ(detector.getEvaluationField(field) != nullptr, field == 6) << field;
  }
}

TEST(DetectorLoad, ALaterEntryOfTheSameIndexReplacesTheEarlierOne) {
  const ZoneDetector detector = loaded(R"({"ZoneDetector": {"EvaluationField": [
      {"name": "early", "index": 1, "Zone": [{"index": 0, "name": "gone", )" +
                                       std::string(fan) + R"(}]},
      {"name": "late", "index": 1, "Zone": [{"index": 2, "name": "first", )" +
                                       fan + R"(}, {"index": 2, "name": "last", )" + fan + R"(}]}]}})");
  ASSERT_NE(detector.getEvaluationField(1), nullptr);
  EXPECT_EQ(detector.getEvaluationField(1)->name, "late");
  EXPECT_EQ(detector.getZone(1, 0), nullptr);
  EXPECT_EQ(detector.getZone(1, 2)->getName(), "last");
}

TEST(DetectorLoad, AFieldWithoutNameIsNamedByItsSlot) {
  const ZoneDetector detector = loaded(R"({"ZoneDetector": {"EvaluationField": [{"index": 5}]}})");
  ASSERT_NE(detector.getEvaluationField(5), nullptr);
  EXPECT_EQ(detector.getEvaluationField(5)->name, "EvaluationField5");
  for (const auto& zone : detector.getEvaluationField(5)->zones) {
    EXPECT_EQ(zone, nullptr);
  }
}

TEST(DetectorLoad, AnEmptyFieldNameIsAName) {
  const ZoneDetector detector =
      loaded(R"({"ZoneDetector": {"EvaluationField": [{"name": "", "index": 5}]}})");
  EXPECT_EQ(detector.getEvaluationField(5)->name, "");
}

TEST(DetectorLoad, AZoneWithoutNameThrowsAlsoWhereADefaultWasRead) {
  ZoneDetector detector = busyDetector();
  EXPECT_THROW(load(detector, R"({"ZoneDetector": {"ExclusionZone": [{)" + std::string(fan) + "}]}}"),
               boost::property_tree::ptree_bad_path);
}

TEST(DetectorLoad, ZonesArePlainWhateverKindWasThere) {
  ZoneDetector detector;
  const auto bound =
      std::make_shared<Zone3dTarsel>(zoneNamed("bound")->getZone2d(), 1.0, 2.0, boost::uuids::uuid{});
  detector.setZone(bound, 0, 0);
  detector.appendExclusionZone(bound);
  SettingsManager settings;
  detector.save(settings);
  detector.load(settings);
  const Zone3dBase& zone = *detector.getZone(0, 0);
  EXPECT_EQ(typeid(zone), typeid(Zone3dBase));
  const Zone3dBase& exclusionZone = *detector.getExclusionZoneVector()[0];
  EXPECT_EQ(typeid(exclusionZone), typeid(Zone3dBase));
  EXPECT_EQ(toText(zone), toText(*bound));
}

TEST(DetectorLoad, AFieldWithoutIndexThrowsAndLeavesTheDetectorPartlyLoaded) {
  ZoneDetector detector = busyDetector();
  EXPECT_THROW(load(detector, R"({"ZoneDetector": {
      "ExclusionZone": [{"name": "new", )" +
                                  std::string(fan) + R"(}],
      "EvaluationField": [{"name": "read", "index": 0}, {"name": "no index"}, {"name": "unread", "index": 7}]}})"),
               boost::property_tree::ptree_bad_path);
  EXPECT_EQ(namesOf(detector.getExclusionZoneVector()), Texts{"new"});
  ASSERT_NE(detector.getEvaluationField(0), nullptr);
  EXPECT_EQ(detector.getEvaluationField(0)->name, "read");
  EXPECT_EQ(detector.getEvaluationField(2), nullptr) << "the old fields are gone";
  EXPECT_EQ(detector.getEvaluationField(7), nullptr);
}

TEST(DetectorLoad, AnIndexThatIsNotAnIntegerThrows) {
  for (const std::string index : {R"("two")", "1.5", "99999999999", R"("")"}) {
    ZoneDetector detector;
    EXPECT_THROW(load(detector, R"({"ZoneDetector": {"EvaluationField": [{"index": )" + index + "}]}}"),
                 boost::property_tree::ptree_bad_data)
        << index;
  }
}

TEST(DetectorLoad, AZoneWithoutIndexThrowsAndKeepsItsField) {
  ZoneDetector detector;
  EXPECT_THROW(load(detector, R"({"ZoneDetector": {"EvaluationField": [{"name": "f", "index": 3, "Zone": [
                   {"index": 2, "name": "read", )" +
                                  std::string(fan) + R"(}, {"name": "no index", )" + fan + "}]}]}}"),
               boost::property_tree::ptree_bad_path);
  ASSERT_NE(detector.getZone(3, 2), nullptr);
  EXPECT_EQ(detector.getZone(3, 2)->getName(), "read");
}

TEST(DetectorLoad, AZoneThatCannotBeReadStandsInItsSlotWithoutAShape) {
  ZoneDetector detector;
  EXPECT_THROW(load(detector, R"({"ZoneDetector": {"EvaluationField": [{"name": "f", "index": 3, "Zone": [
                   {"index": 2, "name": "no shape", "zMin": 1}]}]}})"),
               boost::property_tree::ptree_bad_path);
  ASSERT_NE(detector.getZone(3, 2), nullptr);
  EXPECT_EQ(toText(*detector.getZone(3, 2)), "no shape, heights 0x0p+0 to 0x1.4p+4");
}

TEST(DetectorLoad, AnExclusionZoneThatCannotBeReadEndsTheListBeforeTheFieldsAreReset) {
  ZoneDetector detector = busyDetector();
  EXPECT_THROW(
      load(detector, R"({"ZoneDetector": {"debounceTimeMs": 7, "ExclusionZone": [{"name": "new", )" +
                         std::string(fan) + R"(}, {"name": "no shape"}, {"name": "unread", )" + fan + "}]}}"),
      boost::property_tree::ptree_bad_path);
  EXPECT_EQ(detector.getDebounceTime().count(), 7);
  EXPECT_EQ(namesOf(detector.getExclusionZoneVector()), Texts{"new"});
  ASSERT_NE(detector.getEvaluationField(2), nullptr);
  EXPECT_EQ(detector.getEvaluationField(2)->name, "field-a");
}

TEST(DetectorLoad, AFailureLeavesThePathWhereItHappened) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {R"({"ZoneDetector": {"useSoftwareAPICommand": "perhaps"}})", "ZoneDetector.probe"},
      {R"({"ZoneDetector": {"ExclusionZone": [{}]}})", "ZoneDetector.ExclusionZone.probe"},
      {R"({"ZoneDetector": {"EvaluationField": [{}]}})", "ZoneDetector.EvaluationField.probe"},
      {R"({"ZoneDetector": {"EvaluationField": [{"index": 9}]}})", "ZoneDetector.EvaluationField.probe"},
      {R"({"ZoneDetector": {"EvaluationField": [{"index": 0, "Zone": [{}]}]}})",
       "ZoneDetector.EvaluationField.Zone.probe"}};
  for (const auto& [json, path] : cases) {
    SettingsManager settings;
    loadText(settings, json);
    ZoneDetector detector;
    EXPECT_ANY_THROW(detector.load(settings)) << json;
    EXPECT_EQ(settings.pathPush("probe"), path) << json;
  }
}

// Such a rectangle leaves the path inside its entry, where no further list is.
TEST(DetectorLoad, ARectangleWithoutTwoPointsHidesTheRestOfTheDocument) {
  SettingsManager settings;
  loadText(settings, R"({"ZoneDetector": {
      "ExclusionZone": [{"name": "first", )" +
                         std::string(fan) + R"(},
                        {"name": "odd", "shape": "rectangle", "zMax": 5, "Rectangle": {"rotation": 0}},
                        {"name": "hidden", )" +
                         fan + R"(}],
      "EvaluationField": [{"index": 0}]}})");
  ZoneDetector detector = busyDetector();
  const LogCapture log(LogLevel::Warning);
  detector.load(settings);
  EXPECT_EQ(log.records(),
            (std::vector<Record>{
                {LogLevel::Error, "", "Rectangle defined from file must have two points but has 0"}}));
  EXPECT_EQ(namesOf(detector.getExclusionZoneVector()), (Texts{"first", "odd"}));
  EXPECT_EQ(detector.getExclusionZoneVector()[1]->getZMax(), 20.0) << "its heights are hidden as well";
  EXPECT_EQ(detector.getEvaluationFieldArray(), ZoneDetector::EvaluationFieldArray());
  EXPECT_EQ(settings.pathPush("probe"), "ZoneDetector.probe") << "one level too deep";
}

TEST(DetectorLoad, AFieldIndexOutOfRangeThrowsWithTheIndexAndTheRange) {
  for (const std::string index : {"-1", "8", "2147483647", "-2147483648"}) {
    ZoneDetector detector = busyDetector();
    try {
      load(detector, R"({"ZoneDetector": {"EvaluationField": [{"index": 0}, {"index": )" + index + "}]}}");
      ADD_FAILURE() << index << " was taken";
    } catch (const std::out_of_range& error) {
      EXPECT_EQ(error.what(), "evaluation field index " + index + " is outside 0..7");
    }
    EXPECT_NE(detector.getEvaluationField(0), nullptr);
  }
}

TEST(DetectorLoad, AZoneIndexOutOfRangeThrowsWithTheIndexAndTheRange) {
  for (const std::string index : {"-1", "3", "2147483647", "-2147483648"}) {
    ZoneDetector detector;
    try {
      load(detector, R"({"ZoneDetector": {"EvaluationField": [{"index": 0, "Zone": [{"index": )" + index +
                         R"(, "name": "n", )" + fan + "}]}]}}");
      ADD_FAILURE() << index << " was taken";
    } catch (const std::out_of_range& error) {
      EXPECT_EQ(error.what(), "zone index " + index + " is outside 0..2");
    }
    ASSERT_NE(detector.getEvaluationField(0), nullptr);
    EXPECT_EQ(detector.getZone(0, 0), nullptr);
  }
}

TEST(DetectorLoad, ADetectorCanBeLoadedAgainAfterAFailure) {
  ZoneDetector detector = busyDetector();
  EXPECT_THROW(load(detector, R"({"ZoneDetector": {"EvaluationField": [{"name": "no index"}]}})"),
               boost::property_tree::ptree_error);
  SettingsManager settings;
  const ZoneDetector source = busyDetector();
  source.save(settings);
  detector.load(settings);
  EXPECT_EQ(toText(detector), toText(source));
}

TEST(DetectorSave, WritesTheDocumentInItsOrder) {
  const ZoneDetector detector = busyDetector();
  SettingsManager settings;
  const LogCapture log;
  detector.save(settings);
  for (const Record& record : log.records()) {
    EXPECT_EQ(record.level, LogLevel::Debug) << record;
    EXPECT_EQ(record.logger, "SettingsManager") << record;
  }
  EXPECT_EQ(log.texts(LogLevel::Debug), (Texts{"set ZoneDetector.version to: 1.1",
                                               "set ZoneDetector.debounceTimeMs to: 200",
                                               "set ZoneDetector.sensitivity to: 8",
                                               "set ZoneDetector.triggerActiveLevel to: low",
                                               "set ZoneDetector.useSoftwareAPICommand to: 1",
                                               "set ZoneDetector.ExclusionZone.name to: gate",
                                               "set ZoneDetector.ExclusionZone.name to: gate",
                                               "set ZoneDetector.ExclusionZone.shape to: polygon",
                                               "set ZoneDetector.ExclusionZone.Polygon.Point.x to: 0",
                                               "set ZoneDetector.ExclusionZone.Polygon.Point.y to: 0",
                                               "set ZoneDetector.ExclusionZone.Polygon.Point.x to: 0",
                                               "set ZoneDetector.ExclusionZone.Polygon.Point.y to: 1",
                                               "set ZoneDetector.ExclusionZone.Polygon.Point.x to: 1",
                                               "set ZoneDetector.ExclusionZone.Polygon.Point.y to: 1",
                                               "set ZoneDetector.ExclusionZone.Polygon.Point.x to: 1",
                                               "set ZoneDetector.ExclusionZone.Polygon.Point.y to: 0",
                                               "set ZoneDetector.ExclusionZone.zMin to: 0",
                                               "set ZoneDetector.ExclusionZone.zMax to: 20",
                                               "set ZoneDetector.EvaluationField.name to: field-a",
                                               "set ZoneDetector.EvaluationField.index to: 2",
                                               "set ZoneDetector.EvaluationField.Zone.name to: z1",
                                               "set ZoneDetector.EvaluationField.Zone.index to: 1",
                                               "set ZoneDetector.EvaluationField.Zone.name to: z1",
                                               "set ZoneDetector.EvaluationField.Zone.shape to: polygon",
                                               "set ZoneDetector.EvaluationField.Zone.Polygon.Point.x to: 0",
                                               "set ZoneDetector.EvaluationField.Zone.Polygon.Point.y to: 0",
                                               "set ZoneDetector.EvaluationField.Zone.Polygon.Point.x to: 0",
                                               "set ZoneDetector.EvaluationField.Zone.Polygon.Point.y to: 1",
                                               "set ZoneDetector.EvaluationField.Zone.Polygon.Point.x to: 1",
                                               "set ZoneDetector.EvaluationField.Zone.Polygon.Point.y to: 1",
                                               "set ZoneDetector.EvaluationField.Zone.Polygon.Point.x to: 1",
                                               "set ZoneDetector.EvaluationField.Zone.Polygon.Point.y to: 0",
                                               "set ZoneDetector.EvaluationField.Zone.zMin to: 0",
                                               "set ZoneDetector.EvaluationField.Zone.zMax to: 20"}));
}

TEST(DetectorSave, WritesTheLayoutOfTheDocument) {
  ZoneDetector detector = busyDetector();
  detector.setUseSoftwareAPICommand(false);
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(keys(settings, "ZoneDetector"),
            (Texts{"version", "debounceTimeMs", "sensitivity", "triggerActiveLevel", "useSoftwareAPICommand",
                   "ExclusionZone", "EvaluationField"}));
  EXPECT_EQ(value(settings, "ZoneDetector.version"), "1.1");
  EXPECT_EQ(value(settings, "ZoneDetector.debounceTimeMs"), "200");
  EXPECT_EQ(value(settings, "ZoneDetector.sensitivity"), "8");
  EXPECT_EQ(value(settings, "ZoneDetector.triggerActiveLevel"), "low");
  EXPECT_EQ(value(settings, "ZoneDetector.useSoftwareAPICommand"), "false");
  EXPECT_EQ(keys(settings, "ZoneDetector.ExclusionZone"),
            (Texts{"name", "shape", "Polygon", "zMin", "zMax"}));
  EXPECT_EQ(keys(settings, "ZoneDetector.EvaluationField"), (Texts{"name", "index", "Zone"}));
  EXPECT_EQ(value(settings, "ZoneDetector.EvaluationField.name"), "field-a");
  EXPECT_EQ(value(settings, "ZoneDetector.EvaluationField.index"), "2");
  EXPECT_EQ(keys(settings, "ZoneDetector.EvaluationField.Zone"),
            (Texts{"name", "index", "shape", "Polygon", "zMin", "zMax"}));
  EXPECT_EQ(value(settings, "ZoneDetector.EvaluationField.Zone.name"), "z1");
  EXPECT_EQ(value(settings, "ZoneDetector.EvaluationField.Zone.index"), "1");
}

TEST(DetectorSave, LeavesThePathWhereItWas) {
  SettingsManager settings;
  settings.pathPush("Site");
  busyDetector().save(settings);
  EXPECT_EQ(settings.pathPush("probe"), "Site.probe");
  EXPECT_EQ(value(settings, "Site.ZoneDetector.version"), "1.1");
}

TEST(DetectorSave, WhatItDoesNotOverwriteStaysInTheStore) {
  SettingsManager settings;
  loadText(settings,
           R"({"ZoneDetector": {"note": "kept", "ExclusionZone": [{"name": "a"}, {"name": "b"}]}})");
  busyDetector().save(settings);
  EXPECT_EQ(value(settings, "ZoneDetector.note"), "kept");
  EXPECT_EQ(listValues(settings, "ZoneDetector", "ExclusionZone", "name"), (Texts{"gate", "b"}));
}

TEST(DetectorSave, AFreshDetectorHasOptionsOnly) {
  SettingsManager settings;
  ZoneDetector().save(settings);
  EXPECT_EQ(saveText(settings),
            "{\n"
            "  \"ZoneDetector\": {\n"
            "    \"version\": \"1.1\",\n"
            "    \"debounceTimeMs\": 0,\n"
            "    \"sensitivity\": 10,\n"
            "    \"triggerActiveLevel\": \"high\",\n"
            "    \"useSoftwareAPICommand\": false\n"
            "  }\n"
            "}\n");
}

TEST(DetectorSave, AnythingButLowIsHigh) {
  for (const int level : {0, 1, 2, -1, 17}) {
    ZoneDetector detector;
    detector.setTriggerZone(static_cast<Trigger>(level));
    SettingsManager settings;
    detector.save(settings);
    EXPECT_EQ(value(settings, "ZoneDetector.triggerActiveLevel"), level == 0 ? "low" : "high") << level;
  }
}

TEST(DetectorSave, SensitivityZeroIsSavedBackAsTen) {
  const ZoneDetector detector = loaded(R"({"ZoneDetector": {"sensitivity": 0}})");
  EXPECT_EQ(detector.getMinPoints(), 1);
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(value(settings, "ZoneDetector.sensitivity"), "10");
}

TEST(DetectorSave, MinimumPointsOutsideTheTableAreSavedAsTen) {
  ZoneDetector detector;
  detector.setMinPoints(25);
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(value(settings, "ZoneDetector.sensitivity"), "10");
}

TEST(DetectorSave, ListPositionsAreConsecutiveAndSlotsStandInTheIndex) {
  ZoneDetector detector;
  detector.setZone(zoneNamed("a"), 1, 0);
  detector.setZone(zoneNamed("b"), 1, 2);
  detector.setZone(zoneNamed("c"), 6, 1);
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(listValues(settings, "ZoneDetector", "EvaluationField", "index"), (Texts{"1", "6"}));
  EXPECT_EQ(listValues(settings, "ZoneDetector.EvaluationField", "Zone", "index"), (Texts{"0", "2"}));
  EXPECT_EQ(listValues(settings, "ZoneDetector.EvaluationField", "Zone", "name"), (Texts{"a", "b"}));
}

TEST(DetectorSave, AFieldInSlotSixAloneIsListEntryZero) {
  const ZoneDetector detector =
      loaded(R"({"ZoneDetector": {"EvaluationField": [{"name": "six", "index": 6}]}})");
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(listValues(settings, "ZoneDetector", "EvaluationField", "index"), Texts{"6"});
  EXPECT_EQ(keys(settings, "ZoneDetector.EvaluationField"), (Texts{"name", "index"})) << "no list of zones";
}

TEST(DetectorSave, ZonesWithoutShapeAreLeftOutWithoutAGap) {
  ZoneDetector detector = loaded(R"({"ZoneDetector": {"ExclusionZone": [
      {"name": "first", )" + std::string(fan) +
                                 R"(}, {"name": "none", "shape": "circle"},
      {"name": "last", )" + fan + "}]}}");
  ASSERT_EQ(detector.getExclusionZoneVector().size(), 3U);
  detector.setZone(std::make_shared<Zone3dBase>(), 0, 0);
  detector.setZone(zoneNamed("kept"), 0, 1);
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(listValues(settings, "ZoneDetector", "ExclusionZone", "name"), (Texts{"first", "last"}));
  EXPECT_EQ(listValues(settings, "ZoneDetector.EvaluationField", "Zone", "name"), Texts{"kept"});
  EXPECT_EQ(listValues(settings, "ZoneDetector.EvaluationField", "Zone", "index"), Texts{"1"});
}

TEST(DetectorSave, TheDefaultNameOfAnUnnamedZoneDoesNotSurviveTheZonesOwnSave) {
  ZoneDetector detector;
  detector.setZone(zoneNamed("z"), 0, 2);
  detector.getZone(0, 2)->setName("");
  detector.appendExclusionZone(zoneNamed("first"));
  detector.appendExclusionZone(zoneNamed("second"));
  detector.getExclusionZoneVector()[1]->setName("");
  SettingsManager settings;
  const LogCapture log;
  detector.save(settings);

  Texts names;
  for (const std::string& text : log.texts(LogLevel::Debug)) {
    if (text.find(".name to: ") != std::string::npos) {
      names.push_back(text);
    }
  }
  EXPECT_EQ(names, (Texts{"set ZoneDetector.ExclusionZone.name to: first",
                          "set ZoneDetector.ExclusionZone.name to: first",
                          "set ZoneDetector.ExclusionZone.name to: ExclusionZone1",
                          "set ZoneDetector.ExclusionZone.name to: ",
                          "set ZoneDetector.EvaluationField.name to: EvaluationField0",
                          "set ZoneDetector.EvaluationField.Zone.name to: Zone2",
                          "set ZoneDetector.EvaluationField.Zone.name to: "}));
  EXPECT_EQ(listValues(settings, "ZoneDetector", "ExclusionZone", "name"), (Texts{"first", ""}));
  EXPECT_EQ(listValues(settings, "ZoneDetector.EvaluationField", "Zone", "name"), Texts{""});
}

TEST(DetectorSave, TheDefaultNameOfAnUnnamedFieldSurvives) {
  ZoneDetector detector = busyDetector();
  detector.getEvaluationField(2)->name.clear();
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(value(settings, "ZoneDetector.EvaluationField.name"), "EvaluationField2");
  EXPECT_EQ(detector.getEvaluationField(2)->name, "") << "saving changes nothing";
}

TEST(DetectorSave, NamesOfUnnamedExclusionZonesCountSavedZonesOnly) {
  ZoneDetector detector = loaded(R"({"ZoneDetector": {"ExclusionZone": [
      {"name": "none", "shape": "circle"}, {"name": "", )" +
                                 std::string(fan) + "}]}}");
  SettingsManager settings;
  const LogCapture log;
  detector.save(settings);
  const Texts texts = log.texts(LogLevel::Debug);
  ASSERT_GT(texts.size(), 6U);
  EXPECT_EQ(texts[5], "set ZoneDetector.ExclusionZone.name to: ExclusionZone0");
}

TEST(DetectorSave, CallsTheZonesOwnSave) {
  // A zone kind that writes a key of its own.
  class Marked : public Zone3dBase {
   public:
    using Zone3dBase::Zone3dBase;
    void save(SettingsManager& settings) override {
      Zone3dBase::save(settings);
      settings.put<std::string>("mark", "here");
    }
  };
  ZoneDetector detector;
  detector.setZone(std::make_shared<Marked>(zoneNamed("a")->getZone2d()), 0, 0);
  detector.appendExclusionZone(std::make_shared<Marked>(zoneNamed("b")->getZone2d()));
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(value(settings, "ZoneDetector.EvaluationField.Zone.mark"), "here");
  EXPECT_EQ(value(settings, "ZoneDetector.ExclusionZone.mark"), "here");
}

TEST(DetectorSave, ADetectorOfASensorBoundZoneIsSavedAsAPlainOne) {
  ZoneDetector detector;
  detector.setZone(
      std::make_shared<Zone3dTarsel>(zoneNamed("bound")->getZone2d(), 1.0, 2.0, boost::uuids::uuid{}), 0, 0);
  SettingsManager settings;
  detector.save(settings);
  EXPECT_EQ(keys(settings, "ZoneDetector.EvaluationField.Zone"),
            (Texts{"name", "index", "shape", "Polygon", "zMin", "zMax"}));
}

}  // namespace
}  // namespace orvantis::filter::detection
