#include <chrono>
#include <climits>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

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
using orvantis::testing::nameOf;
using orvantis::testing::namesOf;
using orvantis::testing::Record;
using orvantis::testing::toText;
using orvantis::testing::zoneNamed;

using Field = ZoneDetector::EvaluationField;
using Trigger = ZoneDetector::TriggerZoneValue;
using Milliseconds = std::chrono::milliseconds;

std::shared_ptr<Field> fieldNamed(const std::string& name) {
  auto field = std::make_shared<Field>();
  field->name = name;
  return field;
}

// A field in slot 2 with one zone, an exclusion zone, and every option away from its default.
ZoneDetector busyDetector() {
  ZoneDetector detector;
  detector.setZone(zoneNamed("front"), 2, 1);
  detector.appendExclusionZone(zoneNamed("gate"));
  detector.setDebounceTime(ZoneDetector::Milliseconds(200));
  detector.setMinPoints(7);
  detector.setTriggerZone(Trigger::LOW);
  detector.setUseSoftwareAPICommand(true);
  detector.setEvaluationFieldIndex(5);
  return detector;
}

std::string outOfRangeText(const std::function<void()>& call) {
  try {
    call();
  } catch (const std::out_of_range& error) {
    return error.what();
  }
  return "nothing thrown";
}

TEST(DetectorConstants, HaveTheirPublishedValuesAndTypes) {
  EXPECT_EQ(ZoneDetector::CURRENT_API_MAJOR_VERSION, 1U);
  EXPECT_EQ(ZoneDetector::CURRENT_API_MINOR_VERSION, 1U);
  EXPECT_EQ(ZoneDetector::NUM_EVAL_FIELDS, 8);
  EXPECT_EQ(ZoneDetector::NUM_ZONES_PER_EVAL_FIELD, 3);
  EXPECT_EQ(ZoneDetector::MAX_NUM_EXCLUSION_ZONES, 32);
  EXPECT_EQ(ZoneDetector::MAX_NUM_ZONES, 1000);
  EXPECT_EQ(ZoneDetector::DEFAULT_FILE_NAME, "object_detection_settings.json");
  EXPECT_EQ(static_cast<int>(Trigger::LOW), 0);
  EXPECT_EQ(static_cast<int>(Trigger::HIGH), 1);

  static_assert(std::is_same_v<decltype(ZoneDetector::CURRENT_API_MAJOR_VERSION), const std::uint32_t>);
  static_assert(std::is_same_v<decltype(ZoneDetector::CURRENT_API_MINOR_VERSION), const std::uint32_t>);
  static_assert(std::is_same_v<decltype(ZoneDetector::NUM_EVAL_FIELDS), const std::int32_t>);
  static_assert(std::is_same_v<decltype(ZoneDetector::NUM_ZONES_PER_EVAL_FIELD), const std::int32_t>);
  static_assert(std::is_same_v<decltype(ZoneDetector::MAX_NUM_EXCLUSION_ZONES), const std::int32_t>);
  static_assert(std::is_same_v<decltype(ZoneDetector::MAX_NUM_ZONES), const std::int32_t>);
  static_assert(std::is_same_v<std::underlying_type_t<Trigger>, std::int32_t>);
}

TEST(DetectorConstants, CanBeReferredTo) {
  const std::vector<const std::int32_t*> numbers = {
      &ZoneDetector::NUM_EVAL_FIELDS, &ZoneDetector::NUM_ZONES_PER_EVAL_FIELD,
      &ZoneDetector::MAX_NUM_EXCLUSION_ZONES, &ZoneDetector::MAX_NUM_ZONES};
  EXPECT_EQ(*numbers[0] + *numbers[1] + *numbers[2] + *numbers[3], 8 + 3 + 32 + 1000);
  const std::uint32_t* const major = &ZoneDetector::CURRENT_API_MAJOR_VERSION;
  const std::uint32_t* const minor = &ZoneDetector::CURRENT_API_MINOR_VERSION;
  EXPECT_EQ(*major + *minor, 2U);
}

TEST(EvaluationField, IsAPlainRecordOfANameAndThreeSlots) {
  static_assert(std::is_aggregate_v<Field>);
  const Field field;
  const auto& [name, zones] = field;
  EXPECT_EQ(name, "");
  ASSERT_EQ(zones.size(), 3U);
  for (const auto& zone : zones) {
    EXPECT_EQ(zone, nullptr);
  }
}

TEST(Detector, StartsWithItsDefaults) {
  const ZoneDetector detector;
  EXPECT_EQ(detector.getMinPoints(), 1);
  EXPECT_EQ(detector.getSensitivityFromMinPoints(1), 10);
  EXPECT_EQ(detector.getTriggerZone(), Trigger::HIGH);
  EXPECT_EQ(detector.getDebounceTime(), Milliseconds(0));
  EXPECT_EQ(detector.getVersion(), "1.1");
  EXPECT_FALSE(detector.useSoftwareAPICommand());
  EXPECT_EQ(detector.getEvaluationFieldIndex(), 0);
  EXPECT_TRUE(detector.getExclusionZoneVector().empty());
  ASSERT_EQ(detector.getEvaluationFieldArray().size(), 8U);
  for (const auto& field : detector.getEvaluationFieldArray()) {
    EXPECT_EQ(field, nullptr);
  }
}

TEST(Detector, TakesAnArrayOfFieldsAndSharesThem) {
  ZoneDetector::EvaluationFieldArray fields;
  fields[3] = fieldNamed("");
  const ZoneDetector detector(fields);
  EXPECT_EQ(detector.getEvaluationField(3), fields[3]);
  EXPECT_EQ(detector.getEvaluationField(3)->name, "") << "taken as it is, without a default name";
  EXPECT_EQ(detector.getMinPoints(), 1);
  EXPECT_EQ(detector.getMinPointsFromSensitivity(7), 4);
  EXPECT_EQ(detector.getVersion(), "1.1");
}

TEST(Detector, LogsUnderTheDefaultLogger) {
  const LogCapture log;
  ZoneDetector detector;
  detector.appendExclusionZone(nullptr);
  EXPECT_EQ(log.records(),
            (std::vector<Record>{{LogLevel::Warning, "", "Cannot set exclusion zone with empty zone"}}));
}

TEST(Sensitivity, MapsToElevenMinusItselfFromOneToTen) {
  const ZoneDetector detector;
  const std::vector<std::pair<int, int>> table = {{10, 1}, {9, 2}, {8, 3}, {7, 4}, {6, 5},
                                                  {5, 6},  {4, 7}, {3, 8}, {2, 9}, {1, 10}};
  for (const auto& [sensitivity, minPoints] : table) {
    EXPECT_EQ(detector.getMinPointsFromSensitivity(sensitivity), minPoints);
    EXPECT_EQ(detector.getSensitivityFromMinPoints(minPoints), sensitivity);
  }
}

TEST(Sensitivity, IsNotClampedSoUnknownValuesFallBackToTheMostSensitiveEnd) {
  const ZoneDetector detector;
  for (const int unknown : {0, 11, -3, 25, INT_MIN, INT_MAX}) {
    EXPECT_EQ(detector.getMinPointsFromSensitivity(unknown), 1) << unknown;
    EXPECT_EQ(detector.getSensitivityFromMinPoints(unknown), 10) << unknown;
  }
}

TEST(DetectorOptions, AreStoredUnchecked) {
  ZoneDetector detector;
  for (const int value : {0, -5, 999, INT_MIN, INT_MAX}) {
    detector.setMinPoints(value);
    EXPECT_EQ(detector.getMinPoints(), value);
    detector.setDebounceTime(ZoneDetector::Milliseconds(value));
    EXPECT_EQ(detector.getDebounceTime().count(), value);
  }
  detector.setTriggerZone(static_cast<Trigger>(17));
  EXPECT_EQ(static_cast<int>(detector.getTriggerZone()), 17);
  detector.setUseSoftwareAPICommand(true);
  EXPECT_TRUE(detector.useSoftwareAPICommand());
  detector.setUseSoftwareAPICommand(false);
  EXPECT_FALSE(detector.useSoftwareAPICommand());
  detector.setEvaluationFieldIndex(255);
  EXPECT_EQ(detector.getEvaluationFieldIndex(), 255);
  static_assert(std::is_same_v<decltype(detector.getEvaluationFieldIndex()), unsigned char>);
  static_assert(std::is_same_v<decltype(detector.getDebounceTime()), std::chrono::duration<int, std::milli>>);
}

TEST(DetectorFields, AnEmptySlotGivesNull) {
  const ZoneDetector detector;
  for (int field = 0; field < 8; ++field) {
    EXPECT_EQ(detector.getEvaluationField(field), nullptr);
    for (int zone = 0; zone < 3; ++zone) {
      EXPECT_EQ(detector.getZone(field, zone), nullptr);
    }
  }
}

TEST(DetectorFields, SettingAFieldSharesItAndNamesItWhenItHasNoName) {
  ZoneDetector detector;
  const auto unnamed = fieldNamed("");
  detector.setEvaluationField(unnamed, 5);
  EXPECT_EQ(detector.getEvaluationField(5), unnamed);
  EXPECT_EQ(unnamed->name, "EvaluationField5");

  const auto named = fieldNamed("crossing");
  detector.setEvaluationField(named, 3);
  EXPECT_EQ(detector.getEvaluationField(3), named);
  EXPECT_EQ(named->name, "crossing");
}

TEST(DetectorFields, AFieldWithoutANameIsNamedAlsoOverAnOccupiedSlot) {
  ZoneDetector detector;
  detector.setEvaluationField(fieldNamed("first"), 5);
  const auto unnamed = fieldNamed("");
  detector.setEvaluationField(unnamed, 5);
  EXPECT_EQ(detector.getEvaluationField(5), unnamed);
  EXPECT_EQ(unnamed->name, "EvaluationField5");
  detector.setEvaluationField(unnamed, 6);
  EXPECT_EQ(unnamed->name, "EvaluationField5") << "it has a name already";
}

TEST(DetectorFields, ANullFieldEmptiesItsSlot) {
  ZoneDetector detector = busyDetector();
  detector.setEvaluationField(nullptr, 2);
  EXPECT_EQ(detector.getEvaluationField(2), nullptr);
  EXPECT_EQ(detector.getZone(2, 1), nullptr);
}

TEST(DetectorFields, TheArrayIsDirectAccess) {
  ZoneDetector detector;
  const auto field = fieldNamed("");
  detector.getEvaluationFieldArray()[7] = field;
  EXPECT_EQ(detector.getEvaluationField(7), field);
  EXPECT_EQ(field->name, "");
  static_assert(std::is_same_v<decltype(std::declval<const ZoneDetector&>().getEvaluationFieldArray()),
                               const ZoneDetector::EvaluationFieldArray&>);
}

TEST(DetectorFields, SettingTheArrayReplacesAllEightAndSharesThem) {
  ZoneDetector detector = busyDetector();
  ZoneDetector::EvaluationFieldArray fields;
  fields[0] = fieldNamed("");
  detector.setEvaluationFieldArray(fields);
  EXPECT_EQ(detector.getEvaluationFieldArray(), fields);
  EXPECT_EQ(detector.getEvaluationField(2), nullptr);
  EXPECT_EQ(fields[0]->name, "") << "taken as it is, without a default name";
}

TEST(DetectorZones, SettingAZoneOnAnEmptySlotMakesTheFieldAndNamesBoth) {
  ZoneDetector detector;
  const auto zone = zoneNamed("");
  detector.setZone(zone, 2, 1);
  ASSERT_NE(detector.getEvaluationField(2), nullptr);
  EXPECT_EQ(detector.getEvaluationField(2)->name, "EvaluationField2");
  EXPECT_EQ(detector.getZone(2, 1), zone);
  EXPECT_EQ(zone->getName(), "Zone1");
  EXPECT_EQ(detector.getZone(2, 0), nullptr);
  EXPECT_EQ(detector.getZone(2, 2), nullptr);
}

TEST(DetectorZones, AZoneWithoutANameIsNamedAlsoOverAnOccupiedSlot) {
  ZoneDetector detector;
  detector.setZone(zoneNamed("first"), 2, 1);
  const auto unnamed = zoneNamed("");
  detector.setZone(unnamed, 2, 1);
  EXPECT_EQ(detector.getZone(2, 1), unnamed);
  EXPECT_EQ(unnamed->getName(), "Zone1");
  EXPECT_EQ(detector.getEvaluationField(2)->name, "EvaluationField2");
  detector.setZone(unnamed, 2, 0);
  EXPECT_EQ(unnamed->getName(), "Zone1") << "it has a name already";
}

TEST(DetectorZones, AnExistingFieldWithoutANameStaysWithoutOne) {
  ZoneDetector detector;
  detector.getEvaluationFieldArray()[2] = fieldNamed("");
  detector.setZone(zoneNamed("front"), 2, 1);
  EXPECT_EQ(detector.getEvaluationField(2)->name, "");
  EXPECT_EQ(detector.getZone(2, 1)->getName(), "front");
}

TEST(DetectorZones, ANamedZoneAndAnExistingFieldKeepTheirNames) {
  ZoneDetector detector;
  const auto field = fieldNamed("crossing");
  detector.setEvaluationField(field, 2);
  detector.setZone(zoneNamed("kerb"), 2, 0);
  EXPECT_EQ(detector.getEvaluationField(2), field);
  EXPECT_EQ(field->name, "crossing");
  EXPECT_EQ(detector.getZone(2, 0)->getName(), "kerb");
}

TEST(DetectorZones, AZoneWithoutShapeIsStoredAndKeepsItsEmptyName) {
  ZoneDetector detector;
  const auto zone = std::make_shared<Zone3dBase>();
  detector.setZone(zone, 0, 0);
  EXPECT_EQ(detector.getZone(0, 0), zone);
  EXPECT_EQ(zone->getName(), "");
  EXPECT_EQ(zone->getZone2d(), nullptr);
}

TEST(DetectorZones, ANullZoneEmptiesItsSlotAndStillMakesTheField) {
  ZoneDetector detector = busyDetector();
  detector.setZone(nullptr, 2, 1);
  EXPECT_EQ(detector.getZone(2, 1), nullptr);
  detector.setZone(nullptr, 4, 0);
  ASSERT_NE(detector.getEvaluationField(4), nullptr);
  EXPECT_EQ(detector.getEvaluationField(4)->name, "EvaluationField4");
}

TEST(DetectorZones, EverySlotIsItsOwn) {
  ZoneDetector detector;
  for (int field = 0; field < 8; ++field) {
    for (int zone = 0; zone < 3; ++zone) {
      detector.setZone(zoneNamed(std::to_string(field) + "/" + std::to_string(zone)), field, zone);
    }
  }
  for (int field = 0; field < 8; ++field) {
    EXPECT_EQ(detector.getEvaluationField(field)->name, "EvaluationField" + std::to_string(field));
    for (int zone = 0; zone < 3; ++zone) {
      EXPECT_EQ(detector.getZone(field, zone)->getName(), std::to_string(field) + "/" + std::to_string(zone));
    }
  }
}

TEST(DetectorIndices, OutOfRangeThrowsWithTheIndexAndTheRange) {
  ZoneDetector detector = busyDetector();
  const std::string before = toText(detector);
  const auto field = fieldNamed("");
  const auto zone = zoneNamed("");
  for (const int index : {-1, 8, 1000, INT_MIN, INT_MAX}) {
    for (const std::string& text :
         {outOfRangeText([&] { static_cast<void>(detector.getEvaluationField(index)); }),
          outOfRangeText([&] { detector.setEvaluationField(field, index); }),
          outOfRangeText([&] { static_cast<void>(detector.getZone(index, 0)); }),
          outOfRangeText([&] { detector.setZone(zone, index, 0); })}) {
      EXPECT_EQ(text, "evaluation field index " + std::to_string(index) + " is outside 0..7");
    }
  }
  for (const int index : {-1, 3, 1000, INT_MIN, INT_MAX}) {
    for (const std::string& text : {outOfRangeText([&] { static_cast<void>(detector.getZone(2, index)); }),
                                    outOfRangeText([&] { static_cast<void>(detector.getZone(0, index)); }),
                                    outOfRangeText([&] { detector.setZone(zone, 2, index); }),
                                    outOfRangeText([&] { detector.setZone(zone, 0, index); })}) {
      EXPECT_EQ(text, "zone index " + std::to_string(index) + " is outside 0..2");
    }
  }
  EXPECT_EQ(toText(detector), before) << "a refused edit changes nothing, and makes no field";
  EXPECT_EQ(field->name, "");
  EXPECT_EQ(zone->getName(), "");
}

TEST(DetectorCopy, SharesFieldsZonesAndExclusionZones) {
  const ZoneDetector source = busyDetector();
  const ZoneDetector copy(source);
  EXPECT_EQ(copy.getEvaluationFieldArray(), source.getEvaluationFieldArray());
  EXPECT_EQ(copy.getExclusionZoneVector(), source.getExclusionZoneVector());
  copy.getZone(2, 1)->setName("renamed");
  EXPECT_EQ(source.getZone(2, 1)->getName(), "renamed");
}

TEST(DetectorCopy, TakesEveryOptionAlong) {
  const ZoneDetector source = busyDetector();
  const ZoneDetector copy(source);
  EXPECT_EQ(toText(copy), toText(source));
  EXPECT_TRUE(copy.useSoftwareAPICommand());
  EXPECT_EQ(copy.getEvaluationFieldIndex(), 5);
  EXPECT_EQ(copy.getMinPointsFromSensitivity(7), 4);
}

TEST(DetectorCopy, HasListsOfItsOwn) {
  ZoneDetector source = busyDetector();
  ZoneDetector copy(source);
  copy.eraseExclusionZone("gate");
  copy.setEvaluationField(nullptr, 2);
  EXPECT_EQ(namesOf(source.getExclusionZoneVector()), std::vector<std::string>{"gate"});
  EXPECT_NE(source.getEvaluationField(2), nullptr);
}

TEST(DetectorCopy, TakesTheLoggerAlong) {
  ZoneDetector source;
  source.setLogger(LoggingManager::getInstance().getLogger("source"));
  ZoneDetector copy(source);
  const LogCapture log;
  copy.appendExclusionZone(nullptr);
  ASSERT_EQ(log.records().size(), 1U);
  EXPECT_EQ(log.records()[0].logger, "source");
}

TEST(DetectorAssignment, ClonesFieldsZonesAndExclusionZones) {
  const ZoneDetector source = busyDetector();
  ZoneDetector target;
  target = source;
  ASSERT_NE(target.getEvaluationField(2), nullptr);
  EXPECT_NE(target.getEvaluationField(2), source.getEvaluationField(2));
  EXPECT_NE(target.getZone(2, 1), source.getZone(2, 1));
  EXPECT_NE(target.getZone(2, 1)->getZone2d(), source.getZone(2, 1)->getZone2d());
  EXPECT_NE(target.getExclusionZoneVector()[0], source.getExclusionZoneVector()[0]);
  EXPECT_NE(target.getExclusionZoneVector()[0]->getZone2d(), source.getExclusionZoneVector()[0]->getZone2d());

  target.getZone(2, 1)->setName("renamed");
  target.getEvaluationField(2)->name = "renamed";
  target.getExclusionZoneVector()[0]->setName("renamed");
  EXPECT_EQ(source.getZone(2, 1)->getName(), "front");
  EXPECT_EQ(source.getEvaluationField(2)->name, "EvaluationField2");
  EXPECT_EQ(source.getExclusionZoneVector()[0]->getName(), "gate");
}

TEST(DetectorAssignment, TakesOptionsZonesAndHeights) {
  ZoneDetector source = busyDetector();
  source.getZone(2, 1)->setZMin(-1.25);
  source.getZone(2, 1)->setZMax(1e300);
  const std::vector<Point> corners = {{0.0, 1.0}, {2.0, 3.0}};
  source.setZone(std::make_shared<Zone3dBase>(std::make_shared<Rectangle>("box", corners, 30.0), 1.0, 2.0), 7,
                 2);
  source.appendExclusionZone(
      std::make_shared<Zone3dBase>(std::make_shared<Sector>("fan", -0.5, 0.5, 10.0), 3.0, 4.0));
  ZoneDetector target;
  target.setUseSoftwareAPICommand(true);
  target = source;
  EXPECT_EQ(toText(target), toText(source));
}

TEST(DetectorAssignment, KeepsItsOwnSoftwareCommandAndFieldIndex) {
  ZoneDetector target;
  target.setEvaluationFieldIndex(3);
  target = busyDetector();
  EXPECT_FALSE(target.useSoftwareAPICommand());
  EXPECT_EQ(target.getEvaluationFieldIndex(), 3);

  ZoneDetector busy = busyDetector();
  busy = ZoneDetector();
  EXPECT_TRUE(busy.useSoftwareAPICommand());
  EXPECT_EQ(busy.getEvaluationFieldIndex(), 5);
}

TEST(DetectorAssignment, KeepsItsOwnLogger) {
  ZoneDetector source;
  source.setLogger(LoggingManager::getInstance().getLogger("source"));
  ZoneDetector target;
  target.setLogger(LoggingManager::getInstance().getLogger("target"));
  target = source;
  const LogCapture log;
  target.appendExclusionZone(nullptr);
  ASSERT_EQ(log.records().size(), 1U);
  EXPECT_EQ(log.records()[0].logger, "target");
}

TEST(DetectorAssignment, ClonesHaveTheLoggersOfNewZones) {
  const Logger given = LoggingManager::getInstance().getLogger("given");
  ZoneDetector source = busyDetector();
  for (const auto& zone : {source.getZone(2, 1), source.getExclusionZoneVector()[0]}) {
    zone->setLogger(given);
    zone->getZone2d()->setLogger(given);
  }
  ZoneDetector target;
  target.setLogger(given);
  target = source;
  for (const auto& zone : {target.getZone(2, 1), target.getExclusionZoneVector()[0]}) {
    EXPECT_EQ(nameOf(zone->getLogger()), "Zone3dBase");
    EXPECT_EQ(nameOf(zone->getZone2d()->getLogger()), "");
  }
}

TEST(DetectorAssignment, ReplacesWhatTheTargetHeld) {
  ZoneDetector target = busyDetector();
  target.setZone(zoneNamed("old"), 6, 0);
  ZoneDetector source;
  source.setZone(zoneNamed("new"), 0, 0);
  source.appendExclusionZone(zoneNamed("only"));
  target = source;
  EXPECT_EQ(target.getEvaluationField(2), nullptr);
  EXPECT_EQ(target.getEvaluationField(6), nullptr);
  EXPECT_EQ(target.getZone(0, 0)->getName(), "new");
  EXPECT_EQ(namesOf(target.getExclusionZoneVector()), std::vector<std::string>{"only"});
}

TEST(DetectorAssignment, DropsZonesWithoutShapeAndKeepsTheOrderOfTheRest) {
  // Only a document brings a zone without shape into the list of exclusion zones.
  SettingsManager settings;
  loadText(settings, R"({"ExclusionZone": [
      {"name": "first", "shape": "sector", "Sector": {"minAngle": 0, "maxAngle": 1, "radius": 1}},
      {"name": "second", "shape": "circle"},
      {"name": "third", "shape": "sector", "Sector": {"minAngle": 0, "maxAngle": 1, "radius": 1}}]})");
  ZoneDetector source;
  source.load(settings);
  ASSERT_EQ(namesOf(source.getExclusionZoneVector()), (std::vector<std::string>{"first", "", "third"}));
  source.setZone(std::make_shared<Zone3dBase>(), 1, 0);
  source.setZone(zoneNamed("kept"), 1, 2);
  source.setEvaluationField(fieldNamed("hollow"), 3);

  ZoneDetector target;
  target = source;
  EXPECT_EQ(namesOf(target.getExclusionZoneVector()), (std::vector<std::string>{"first", "third"}));
  ASSERT_NE(target.getEvaluationField(1), nullptr);
  EXPECT_EQ(target.getZone(1, 0), nullptr);
  EXPECT_EQ(target.getZone(1, 1), nullptr);
  EXPECT_EQ(target.getZone(1, 2)->getName(), "kept");
  ASSERT_NE(target.getEvaluationField(3), nullptr) << "a field without zones is a field";
  EXPECT_EQ(target.getEvaluationField(3)->name, "hollow");
}

TEST(DetectorAssignment, DerivedKindsBecomePlainZones) {
  const boost::uuids::uuid id{};
  const auto bound = std::make_shared<Zone3dTarsel>(zoneNamed("bound")->getZone2d(), 1.0, 2.0, id);
  const auto gate = std::make_shared<Zone3dTarsel>(zoneNamed("gate")->getZone2d(), 3.0, 4.0, id);
  ZoneDetector source;
  source.setZone(bound, 0, 0);
  source.appendExclusionZone(gate);
  ZoneDetector target;
  target = source;
  const Zone3dBase& zone = *target.getZone(0, 0);
  EXPECT_EQ(typeid(zone), typeid(Zone3dBase));
  EXPECT_EQ(toText(zone), toText(*bound));
  const Zone3dBase& exclusionZone = *target.getExclusionZoneVector()[0];
  EXPECT_EQ(typeid(exclusionZone), typeid(Zone3dBase));
  EXPECT_EQ(toText(exclusionZone), toText(*gate));
}

TEST(DetectorAssignment, ClonesShapesThroughTheirOwnCopy) {
  // A sector's copy forgets its origin, so a clone made any other way would show.
  const auto sector = std::make_shared<Sector>("fan", -0.5, 0.5, 10.0);
  sector->setOrigin(100.0, 0.0);
  ZoneDetector source;
  source.setZone(std::make_shared<Zone3dBase>(sector), 0, 0);
  ZoneDetector target;
  target = source;
  EXPECT_TRUE(source.getZone(0, 0)->within(105.0, 0.0, 1.0));
  EXPECT_FALSE(target.getZone(0, 0)->within(105.0, 0.0, 1.0));
  EXPECT_TRUE(target.getZone(0, 0)->within(5.0, 0.0, 1.0));
}

TEST(DetectorAssignment, ToItselfDoesNothing) {
  ZoneDetector detector = busyDetector();
  detector.setZone(std::make_shared<Zone3dBase>(), 2, 0);
  const ZoneDetector shared(detector);
  const ZoneDetector& same = detector;
  EXPECT_EQ(&(detector = same), &detector);
  EXPECT_EQ(detector.getEvaluationFieldArray(), shared.getEvaluationFieldArray());
  EXPECT_EQ(detector.getExclusionZoneVector(), shared.getExclusionZoneVector());
  EXPECT_NE(detector.getZone(2, 0), nullptr);
}

TEST(DetectorAssignment, ReturnsTheTarget) {
  ZoneDetector target;
  const ZoneDetector source;
  EXPECT_EQ(&(target = source), &target);
}

TEST(ApiVersion, IsOnePointOne) {
  EXPECT_EQ(ZoneDetector::currentAPIVersion(), "1.1");
}

TEST(ApiVersion, AcceptsAMajorNumberUpToOne) {
  for (const std::string text : {"1.9", "0.0", "1.1", "1.0", "0.99", "1", "0", "1.", "1.x", "1.1.7", "01.1",
                                 " 1.1", "\t\n1.1", "+1.1", "-0.5", "1.1 or so", "1,5", "0x2.0"}) {
    EXPECT_TRUE(ZoneDetector::checkVersion(text)) << '"' << text << '"';
  }
}

TEST(ApiVersion, RefusesALargerMajorNumber) {
  for (const std::string text :
       {"2.0", "10.1", "2", " 2.0", "+2.0", "2x", "002", "-1.0", "4294967295.0", "2.99999999999999999999"}) {
    EXPECT_FALSE(ZoneDetector::checkVersion(text)) << '"' << text << '"';
  }
}

TEST(ApiVersion, AcceptsATextWithoutANumber) {
  for (const std::string text : {"abc", "", " ", ".", ".5", "v2.0", "x2", "-", "+", "+ 2"}) {
    EXPECT_TRUE(ZoneDetector::checkVersion(text)) << '"' << text << '"';
  }
}

TEST(ApiVersion, RefusesNumbersTooLargeToHold) {
  // These wrap around to an accepted number when they are cut to 32 bits.
  for (const std::string text :
       {"4294967296.0", "4294967297.1", "18446744073709551617.1", "99999999999999999999999999.0"}) {
    EXPECT_FALSE(ZoneDetector::checkVersion(text)) << '"' << text << '"';
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
