#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <boost/property_tree/exceptions.hpp>
#include <boost/uuid/nil_generator.hpp>
#include <boost/uuid/string_generator.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dTarsel.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "support/LogCapture.h"
#include "support/Settings.h"
#include "zones/CurrentPath.h"
#include "zones/Shapes.h"
#include "zones/VirtualSlot.h"

namespace orvantis::filter::detection {
namespace {

using testing::currentPath;
using testing::loadText;
using testing::LogCapture;
using testing::nameOf;
using testing::points;
using testing::Record;
using testing::saveText;
using testing::slotOf;

using Names = std::set<std::string>;

const std::string idText = "01234567-89ab-cdef-0123-456789abcdef";
const std::string nilText = "00000000-0000-0000-0000-000000000000";
const boost::uuids::uuid id = boost::uuids::string_generator()(idText);
const boost::uuids::uuid otherId = boost::uuids::string_generator()("f1234567-89ab-cdef-0123-456789abcdef");

std::shared_ptr<Zone> triangle() {
  return std::make_shared<Polygon>("triangle", points({{0, 0}, {0, 4}, {4, 0}}));
}

// An element with each key, without the ones named.
std::string element(const std::vector<std::string>& without = {}, const std::string& idValue = idText) {
  const std::vector<std::pair<std::string, std::string>> keys = {
      {"enabled", "false"},
      {"id", "\"" + idValue + "\""},
      {"name", "\"yard\""},
      {"shape", "\"Polygon\""},
      {"Polygon", R"({"Point": [{"x": 0, "y": 0}, {"x": 0, "y": 4}, {"x": 4, "y": 0}]})"},
      {"zMin", "1.5"},
      {"zMax", "3"},
      {"Sensors", R"({"lidar": ["front", "back"]})"}};
  std::string text;
  for (const auto& [key, value] : keys) {
    if (std::find(without.begin(), without.end(), key) == without.end()) {
      text += (text.empty() ? "{\"" : ", \"") + key + "\": " + value;
    }
  }
  return text + "}";
}

std::string listOf(const std::string& elements) {
  return R"({"Zone3d": [)" + elements + "]}";
}

TEST(Zone3dTarsel, VirtualFunctionsKeepTheirSlots) {
  EXPECT_EQ(slotOf(&Zone3dTarsel::setLogger), 2U);
  EXPECT_EQ(slotOf(&Zone3dTarsel::getLogger), 3U);
  EXPECT_EQ(slotOf(&Zone3dBase::load), 4U);
  EXPECT_EQ(slotOf(&Zone3dBase::save), 5U);
  using Access = void (Zone3dTarsel::*)(SettingsManager&, int);
  EXPECT_EQ(slotOf(static_cast<Access>(&Zone3dTarsel::load)), 6U);
  EXPECT_EQ(slotOf(static_cast<Access>(&Zone3dTarsel::save)), 7U);
}

TEST(Zone3dTarsel, MadeFromValuesKeepsThem) {
  const auto shape = triangle();
  const Zone3dTarsel zone(shape, 1.5, 3.0, id);
  EXPECT_EQ(zone.getZone2d(), shape);
  EXPECT_EQ(zone.getZMin(), 1.5);
  EXPECT_EQ(zone.getZMax(), 3.0);
  EXPECT_EQ(zone.getId(), id);
  EXPECT_TRUE(zone.enabled());
  EXPECT_TRUE(zone.getSpecificSensors().empty());
  EXPECT_EQ(nameOf(zone.getLogger()), "Zone3d");
}

TEST(Zone3dTarsel, MadeFromValuesKeepsANilId) {
  EXPECT_TRUE(Zone3dTarsel(triangle(), 0, 1, boost::uuids::nil_uuid()).getId().is_nil());
}

TEST(Zone3dTarsel, IsEqualWhenTheIdIs) {
  Zone3dTarsel zone(triangle(), 0, 1, id);
  Zone3dTarsel sameId(std::make_shared<Sector>("other", 0, 1, 2), 5, 6, id);
  sameId.setSpecificSensors({"front"});
  sameId.setEnabled(false);
  EXPECT_TRUE(zone == sameId);
  EXPECT_FALSE(zone == Zone3dTarsel(zone.getZone2d(), 0, 1, otherId));
  EXPECT_TRUE(Zone3dTarsel(nullptr, 0, 1, boost::uuids::nil_uuid()) ==
              Zone3dTarsel(nullptr, 2, 3, boost::uuids::nil_uuid()));
}

TEST(Zone3dTarsel, CanBeDisabledAndEnabled) {
  Zone3dTarsel zone(triangle(), 0, 1, id);
  zone.setEnabled(false);
  EXPECT_FALSE(zone.enabled());
  zone.setEnabled(true);
  EXPECT_TRUE(zone.enabled());
}

TEST(Zone3dTarsel, CopiesShareTheShapeAndCopyTheRest) {
  Zone3dTarsel zone(triangle(), 1, 2, id);
  zone.setSpecificSensors({"a", "b"});
  zone.setEnabled(false);
  zone.setLogger(LoggingManager::getInstance().getLogger("given"));
  const Zone3dTarsel copy(zone);
  Zone3dTarsel assigned(nullptr, 7, 8, otherId);
  EXPECT_EQ(&(assigned = zone), &assigned);
  zone.setSpecificSensors({"c"});
  zone.setEnabled(true);
  zone.setName("renamed");
  for (const Zone3dTarsel& other : {copy, assigned}) {
    EXPECT_EQ(other.getZone2d(), zone.getZone2d());
    EXPECT_EQ(other.getName(), "renamed");
    EXPECT_EQ(other.getId(), id);
    EXPECT_EQ(other.getZMin(), 1.0);
    EXPECT_EQ(other.getZMax(), 2.0);
    EXPECT_FALSE(other.enabled());
    EXPECT_EQ(other.getSpecificSensors(), (Names{"a", "b"}));
    EXPECT_EQ(nameOf(other.getLogger()), "given");
  }
}

TEST(Zone3dTarsel, AssignedToItselfKeepsItsSensors) {
  Zone3dTarsel zone(triangle(), 1, 2, id);
  zone.setSpecificSensors({"a", "b"});
  Zone3dTarsel& same = zone;
  zone = same;
  EXPECT_EQ(zone.getSpecificSensors(), (Names{"a", "b"}));
}

TEST(Zone3dTarselSensors, CollapseAndAreLoggedBeforeAndAfter) {
  Zone3dTarsel zone(triangle(), 0, 1, id);
  const LogCapture log;
  zone.setSpecificSensors({"b", "a", "b"});
  EXPECT_EQ(log.records(),
            (std::vector<Record>{{LogLevel::Debug, "Zone3d", "Exclusion sensors before setting: "},
                                 {LogLevel::Debug, "Zone3d", "Exclusion sensors after setting: a b "}}));
  EXPECT_EQ(zone.getSpecificSensors(), (Names{"a", "b"}));
}

TEST(Zone3dTarselSensors, AreReplaced) {
  Zone3dTarsel zone(triangle(), 0, 1, id);
  zone.setSpecificSensors({"b", "a"});
  const LogCapture log;
  zone.setSpecificSensors({});
  EXPECT_EQ(log.texts(LogLevel::Debug), (std::vector<std::string>{"Exclusion sensors before setting: a b ",
                                                                  "Exclusion sensors after setting: "}));
  EXPECT_TRUE(zone.getSpecificSensors().empty());
}

TEST(Zone3dTarselSensors, TheReturnedSetIsACopy) {
  Zone3dTarsel zone(triangle(), 0, 1, id);
  zone.getSpecificSensors().insert("ghost");
  EXPECT_TRUE(zone.getSpecificSensors().empty());
}

TEST(Zone3dTarselLoad, ReadsAnElementOfTheListInOrder) {
  SettingsManager settings;
  loadText(settings, listOf("{}, " + element()));
  const LogCapture log;
  const Zone3dTarsel zone(settings, 1);
  EXPECT_EQ(log.texts(LogLevel::Trace),
            (std::vector<std::string>{
                "got Zone3d.enabled, default: 1, value  : 0", "got Zone3d.id, value: " + idText,
                "got Zone3d.name, value: yard", "got Zone3d.shape, value: Polygon",
                "got Zone3d.Polygon.Point.y, value: 0", "got Zone3d.Polygon.Point.x, value: 0",
                "got Zone3d.Polygon.Point.y, value: 4", "got Zone3d.Polygon.Point.x, value: 0",
                "got Zone3d.Polygon.Point.y, value: 0", "got Zone3d.Polygon.Point.x, value: 4",
                "got Zone3d.zMin, value: 1.5", "got Zone3d.zMax, value: 3"}));
  EXPECT_EQ(zone.getId(), id);
  EXPECT_FALSE(zone.enabled());
  EXPECT_EQ(zone.getSpecificSensors(), (Names{"back", "front"}));
  EXPECT_EQ(zone.getName(), "yard");
  EXPECT_EQ(zone.getZone2d()->type(), "polygon");
  EXPECT_EQ(zone.getZMin(), 1.5);
  EXPECT_EQ(zone.getZMax(), 3.0);
  EXPECT_TRUE(zone.within(1, 1, 2));
  EXPECT_EQ(nameOf(zone.getLogger()), "Zone3d");
  EXPECT_EQ(currentPath(settings), "");
}

TEST(Zone3dTarselLoad, IsEnabledWhenTheFlagIsMissingOrDoesNotConvert) {
  SettingsManager settings;
  loadText(settings, listOf(element({"enabled"})));
  EXPECT_TRUE(Zone3dTarsel(settings, 0).enabled());
  SettingsManager text;
  loadText(text, listOf(R"({"enabled": "perhaps", )" + element({"enabled"}).substr(1)));
  Zone3dTarsel zone(text, 0);
  EXPECT_TRUE(zone.enabled());
  zone.setEnabled(false);
  zone.load(text, 0);
  EXPECT_TRUE(zone.enabled());
}

TEST(Zone3dTarselLoad, ANilIdAsksForAFreshRandomOne) {
  SettingsManager settings;
  loadText(settings, listOf(element({}, nilText)));
  std::set<boost::uuids::uuid> ids;
  for (int i = 0; i < 100; ++i) {
    const Zone3dTarsel zone(settings, 0);
    EXPECT_FALSE(zone.getId().is_nil());
    EXPECT_EQ(zone.getId().version(), boost::uuids::uuid::version_random_number_based);
    EXPECT_EQ(zone.getId().variant(), boost::uuids::uuid::variant_rfc_4122);
    ids.insert(zone.getId());
  }
  EXPECT_EQ(ids.size(), 100U);
  EXPECT_EQ(settings.getTree().get<std::string>("Zone3d.id"), nilText) << "the new id is not written back";
}

TEST(Zone3dTarselLoad, ATextThatIsNotAnIdFails) {
  for (const char* bad : {"", "yard", "01234567-89ab-cdef-0123-456789abcde",
                          "01234567-89ab-cdef-0123-456789abcdef0", "0123456789abcdef0123456789abcdef",
                          "g1234567-89ab-cdef-0123-456789abcdef", "01234567-89ab-cdef-0123-456789abcdef "}) {
    SettingsManager settings;
    loadText(settings, listOf(element({}, bad)));
    Zone3dTarsel zone(triangle(), 7, 8, otherId);
    zone.setSpecificSensors({"kept"});
    EXPECT_THROW(zone.load(settings, 0), boost::bad_lexical_cast) << bad;
    EXPECT_EQ(zone.getId(), otherId) << bad;
    EXPECT_EQ(zone.getSpecificSensors(), (Names{"kept"})) << bad;
    EXPECT_FALSE(zone.enabled()) << "the flag was read before";
    EXPECT_EQ(currentPath(settings), "Zone3d") << bad;
    SettingsManager again;
    loadText(again, listOf(element({}, bad)));
    EXPECT_THROW(Zone3dTarsel(again, 0), boost::bad_lexical_cast) << bad;
  }
}

TEST(Zone3dTarselLoad, AnIdMayStandInUpperCase) {
  SettingsManager settings;
  loadText(settings, listOf(element({}, "01234567-89AB-CDEF-0123-456789ABCDEF")));
  EXPECT_EQ(Zone3dTarsel(settings, 0).getId(), id);
}

TEST(Zone3dTarselLoad, AnIdFailsWithTheMessageOfTheCast) {
  SettingsManager settings;
  loadText(settings, listOf(element({}, "yard")));
  try {
    const Zone3dTarsel zone(settings, 0);
    FAIL();
  } catch (const boost::bad_lexical_cast& error) {
    EXPECT_STREQ(error.what(), "bad lexical cast: source type value could not be interpreted as target");
  }
}

TEST(Zone3dTarselLoad, EveryRequiredKeyIsRequired) {
  for (const char* missing : {"id", "name", "shape", "zMin", "zMax"}) {
    SettingsManager settings;
    loadText(settings, listOf(element({missing})));
    Zone3dTarsel zone(triangle(), 7, 8, otherId);
    try {
      zone.load(settings, 0);
      FAIL() << missing;
    } catch (const boost::property_tree::ptree_bad_path& error) {
      EXPECT_EQ(std::string(error.what()), "No such node (" + std::string(missing) + ")");
    }
    EXPECT_EQ(currentPath(settings), "Zone3d") << missing;
    SettingsManager again;
    loadText(again, listOf(element({missing})));
    EXPECT_THROW(Zone3dTarsel(again, 0), boost::property_tree::ptree_bad_path) << missing;
  }
}

TEST(Zone3dTarselLoad, AHeightThatIsNotANumberFailsAfterTheOtherWasStored) {
  SettingsManager settings;
  loadText(settings, listOf(R"({"zMax": "high", )" + element({"zMax"}).substr(1)));
  Zone3dTarsel zone(triangle(), 7, 8, otherId);
  EXPECT_THROW(zone.load(settings, 0), boost::property_tree::ptree_bad_data);
  EXPECT_EQ(zone.getZMin(), 1.5);
  EXPECT_EQ(zone.getZMax(), 8.0);
  EXPECT_EQ(zone.getName(), "yard");
  EXPECT_EQ(zone.getId(), id);
}

TEST(Zone3dTarselLoad, TheBaseGivesDefaultHeightsWhereThisOneFails) {
  SettingsManager settings;
  loadText(settings, listOf(element({"zMin", "zMax"})));
  Zone3dTarsel zone(triangle(), 7, 8, otherId);
  settings.pathPush("Zone3d", 0, nullptr);
  zone.load(settings);
  EXPECT_EQ(zone.getZMin(), 0.0);
  EXPECT_EQ(zone.getZMax(), 20.0);
  EXPECT_EQ(zone.getName(), "yard");
  EXPECT_EQ(zone.getId(), otherId) << "the base reads no id";
}

TEST(Zone3dTarselLoad, WithoutSensorsTheSetIsEmpty) {
  for (const std::string& sensors :
       {std::string(), std::string(R"("Sensors": {}, )"), std::string(R"("Sensors": {"lidar": []}, )")}) {
    SettingsManager settings;
    loadText(settings, listOf("{" + sensors + element({"Sensors"}).substr(1)));
    Zone3dTarsel zone(triangle(), 7, 8, otherId);
    zone.setSpecificSensors({"old"});
    zone.load(settings, 0);
    EXPECT_TRUE(zone.getSpecificSensors().empty()) << sensors;
    EXPECT_EQ(currentPath(settings), "") << sensors;
  }
}

TEST(Zone3dTarselLoad, LoadingLogsNoSensors) {
  SettingsManager settings;
  loadText(settings, listOf(element()));
  const LogCapture log(LogLevel::Debug);
  const Zone3dTarsel zone(settings, 0);
  EXPECT_TRUE(log.records().empty());
}

TEST(Zone3dTarselLoad, ALongSensorListIsTakenWhole) {
  std::string sensors;
  for (int i = 0; i < 50000; ++i) {
    sensors += (i == 0 ? "" : ",") + ("\"lidar " + std::to_string(i % 40000) + "\"");
  }
  SettingsManager settings;
  loadText(settings,
           listOf(R"({"Sensors": {"lidar": [)" + sensors + "]}, " + element({"Sensors"}).substr(1)));
  EXPECT_EQ(Zone3dTarsel(settings, 0).getSpecificSensors().size(), 40000U);
}

TEST(Zone3dTarselLoad, AnUnknownShapeIsLoggedAndKeepsTheOneBefore) {
  SettingsManager settings;
  loadText(settings, listOf(R"({"shape": "Circle", )" + element({"shape"}).substr(1)));
  const auto shape = triangle();
  Zone3dTarsel zone(shape, 7, 8, otherId);
  const LogCapture log(LogLevel::Warning);
  zone.load(settings, 0);
  EXPECT_EQ(
      log.records(),
      (std::vector<Record>{{LogLevel::Warning, "Zone3d", "Cannot load zone with invalid shape 'circle'"}}));
  EXPECT_EQ(zone.getZone2d(), shape);
  EXPECT_EQ(zone.getZMin(), 1.5);
  EXPECT_EQ(zone.getId(), id);
  EXPECT_EQ(currentPath(settings), "");
  EXPECT_EQ(Zone3dTarsel(settings, 0).getZone2d(), nullptr);
}

TEST(Zone3dTarselLoad, AnIndexPastTheEndOfTheListFails) {
  SettingsManager settings;
  loadText(settings, listOf(element()));
  EXPECT_THROW(Zone3dTarsel(settings, 2), std::out_of_range);
  EXPECT_THROW(Zone3dTarsel(settings, -2), std::out_of_range);
  EXPECT_EQ(currentPath(settings), "");
  EXPECT_THROW(Zone3dTarsel(settings, 1), boost::property_tree::ptree_bad_path)
      << "the next element is empty";
}

TEST(Zone3dTarselLoad, IndexMinusOneIsTheFirstElement) {
  SettingsManager settings;
  loadText(settings, listOf(element({}, idText) + ", " + element({}, nilText)));
  EXPECT_EQ(Zone3dTarsel(settings, -1).getId(), id);
}

TEST(Zone3dTarselLoad, ARectangleWithAWrongNumberOfPointsFailsForTheHeightsThatItHides) {
  SettingsManager settings;
  loadText(settings, listOf(R"({"shape": "rectangle", "Rectangle": {"rotation": 0, "Point": []}, )" +
                            element({"shape"}).substr(1)));
  Zone3dTarsel zone(triangle(), 7, 8, otherId);
  const LogCapture log(LogLevel::Error);
  try {
    zone.load(settings, 0);
    FAIL();
  } catch (const boost::property_tree::ptree_bad_path& error) {
    EXPECT_STREQ(error.what(), "No such node (zMin)");
  }
  EXPECT_EQ(log.texts(LogLevel::Error),
            (std::vector<std::string>{"Rectangle defined from file must have two points but has 0"}));
  EXPECT_EQ(currentPath(settings), "Zone3d.Rectangle");
  EXPECT_EQ(zone.getZMin(), 7.0);
  EXPECT_EQ(zone.getZMax(), 8.0);
}

TEST(Zone3dTarselSave, WritesAnElementOfTheListInOrder) {
  Zone3dTarsel zone(std::make_shared<Sector>("yard", -0.5, 1.5, 10.0), 1.5, 3.0, id);
  zone.setSpecificSensors({"b", "a"});
  SettingsManager settings;
  const LogCapture log(LogLevel::Debug);
  zone.save(settings, 0);
  EXPECT_EQ(
      log.texts(LogLevel::Debug),
      (std::vector<std::string>{
          "set Zone3d.enabled to: 1", "set Zone3d.id to: " + idText, "set Zone3d.name to: yard",
          "set Zone3d.shape to: sector", "set Zone3d.Sector.minAngle to: -0.5",
          "set Zone3d.Sector.maxAngle to: 1.5", "set Zone3d.Sector.radius to: 10", "set Zone3d.zMin to: 1.5",
          "set Zone3d.zMax to: 3", "add Zone3d.Sensors.lidar to: a", "add Zone3d.Sensors.lidar to: b"}));
  EXPECT_EQ(currentPath(settings), "");
  settings.pathPush("Zone3d");
  settings.pathPush("Sensors");
  EXPECT_EQ(settings.getChildCount("lidar"), 2);
  EXPECT_EQ(settings.getIndexedValue("lidar", 0), "a");
  EXPECT_EQ(settings.getIndexedValue("lidar", 1), "b");
}

TEST(Zone3dTarselSave, WritesTheIdInLowerCaseWithHyphens) {
  SettingsManager settings;
  Zone3dTarsel(triangle(), 0, 1, boost::uuids::string_generator()("ABCDEF01-2345-6789-ABCD-EF0123456789"))
      .save(settings, 0);
  EXPECT_EQ(settings.get<std::string>("Zone3d.id"), "abcdef01-2345-6789-abcd-ef0123456789");
}

TEST(Zone3dTarselSave, WithoutShapeWritesNoIdAndNoName) {
  Zone3dTarsel zone(nullptr, 1.5, 3.0, id);
  SettingsManager settings;
  zone.save(settings, 0);
  SettingsManager expected;
  loadText(expected, listOf(R"({"enabled": true, "zMin": 1.5, "zMax": 3})"));
  EXPECT_EQ(saveText(settings), saveText(expected));
  zone.setSpecificSensors({"a"});
  zone.setEnabled(false);
  SettingsManager withSensors;
  zone.save(withSensors, 0);
  loadText(expected, listOf(R"({"enabled": false, "zMin": 1.5, "zMax": 3, "Sensors": {"lidar": ["a"]}})"));
  EXPECT_EQ(saveText(withSensors), saveText(expected));
}

TEST(Zone3dTarselSave, AnIndexPastTheEndOfTheListFailsAndWritesNothing) {
  Zone3dTarsel zone(triangle(), 1.5, 3.0, id);
  SettingsManager settings;
  EXPECT_THROW(zone.save(settings, 1), std::out_of_range);
  EXPECT_THROW(zone.save(settings, -2), std::out_of_range);
  EXPECT_TRUE(settings.getTree().empty());
  EXPECT_EQ(currentPath(settings), "");
}

TEST(Zone3dTarselSave, OverAnElementItKeepsTheSensorsThere) {
  Zone3dTarsel zone(triangle(), 1.5, 3.0, id);
  zone.setSpecificSensors({"a", "b"});
  SettingsManager settings;
  zone.save(settings, 0);
  zone.setSpecificSensors({"b", "c"});
  zone.save(settings, 0);
  zone.setSpecificSensors({});
  zone.save(settings, 0);
  EXPECT_EQ(settings.getChildCount("Zone3d"), 1);
  settings.pathPush("Zone3d");
  settings.pathPush("Sensors");
  ASSERT_EQ(settings.getChildCount("lidar"), 4);
  EXPECT_EQ(settings.getIndexedValue("lidar", 1), "b");
  EXPECT_EQ(settings.getIndexedValue("lidar", 2), "b");
  EXPECT_EQ(settings.getIndexedValue("lidar", 3), "c");
}

TEST(Zone3dTarselSave, ABoundThatIsNotFiniteIsWrittenAndCannotBeRead) {
  for (const double odd :
       {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    Zone3dTarsel zone(triangle(), odd, 3.0, id);
    SettingsManager settings;
    zone.save(settings, 0);
    SettingsManager reread;
    loadText(reread, saveText(settings));
    EXPECT_THROW(Zone3dTarsel(reread, 0), boost::property_tree::ptree_bad_data) << odd;
  }
}

TEST(Zone3dTarselSave, TheBaseWritesTheEntryAlone) {
  Zone3dTarsel zone(triangle(), 1.5, 3.0, id);
  SettingsManager settings;
  zone.save(settings);
  EXPECT_EQ(settings.getChildCount("Zone3d"), 0);
  EXPECT_EQ(settings.getChildCount("id"), 0);
  EXPECT_EQ(settings.get<std::string>("name"), "triangle");
}

TEST(Zone3dTarselRoundTrip, RestoresEveryElementOfAList) {
  SettingsManager settings;
  for (int i = 0; i < 20; ++i) {
    Zone3dTarsel zone(std::make_shared<Sector>("zone " + std::to_string(i), 0.1 * i, 3.0, i), i / 3.0,
                      i / 7.0, i % 2 == 0 ? id : otherId);
    zone.setEnabled(i % 3 == 0);
    zone.setSpecificSensors(
        std::vector<std::string>(static_cast<std::size_t>(i), "lidar " + std::to_string(i)));
    zone.save(settings, i);
  }
  SettingsManager reread;
  loadText(reread, saveText(settings));
  EXPECT_EQ(reread.getChildCount("Zone3d"), 20);
  for (int i = 0; i < 20; ++i) {
    const Zone3dTarsel zone(reread, i);
    EXPECT_EQ(zone.getName(), "zone " + std::to_string(i));
    EXPECT_EQ(zone.getZMin(), i / 3.0);
    EXPECT_EQ(zone.getZMax(), i / 7.0);
    EXPECT_EQ(zone.getId(), i % 2 == 0 ? id : otherId);
    EXPECT_EQ(zone.enabled(), i % 3 == 0);
    EXPECT_EQ(zone.getSpecificSensors(), i == 0 ? Names{} : Names{"lidar " + std::to_string(i)});
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
