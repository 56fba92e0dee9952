#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/ZoneDetector.h>

#include "detector/DetectorText.h"
#include "support/LogCapture.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::LogCapture;
using orvantis::testing::namesOf;
using orvantis::testing::Record;
using orvantis::testing::zoneNamed;
using orvantis::testing::zonesNamed;

using Texts = std::vector<std::string>;
using ZoneList = std::vector<std::shared_ptr<Zone3dBase>>;

constexpr auto appendedNothing = "Cannot set exclusion zone with empty zone";
constexpr auto appendedUnnamed = "Cannot set exclusion zone with empty name";
constexpr auto appendedTooMany = "Cannot add exclusion zone, Maximum allowed exclusion zones is 32";
constexpr auto appendedLongName = "Cannot append exclusion zone with name length outside of limits";
constexpr auto appendedTwice = "Cannot append exclusion zone with repeated name";
constexpr auto duplicate = "Duplicate Zone Name Entered";
constexpr auto updatedToNothing = "Cannot update exclusion zone with empty zone";
constexpr auto updatedToUnnamed = "Cannot update exclusion zone with empty name";

// A detector, the zones "z0".."z<count - 1>" in its list, and what it logs from then on.
class ExclusionZones : public ::testing::Test {
 protected:
  void fill(int count) {
    detector_.setExclusionZoneVector(zonesNamed("z", 0, count));
    log_.clear();
  }
  Texts names() const { return namesOf(detector_.getExclusionZoneVector()); }
  Texts warnings() const {
    Texts texts;
    for (const Record& record : log_.records()) {
      EXPECT_EQ(record.level, LogLevel::Warning) << record;
      EXPECT_EQ(record.logger, "") << record;
      texts.push_back(record.text);
    }
    return texts;
  }

  ZoneDetector detector_;

 private:
  LogCapture log_;
};

TEST_F(ExclusionZones, AppendedZonesAreSharedAndKeepTheirOrder) {
  const ZoneList zones = {zoneNamed("c"), zoneNamed("a"), zoneNamed("b")};
  for (const auto& zone : zones) {
    detector_.appendExclusionZone(zone);
  }
  EXPECT_EQ(detector_.getExclusionZoneVector(), zones);
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, AppendRefusesNull) {
  fill(1);
  detector_.appendExclusionZone(nullptr);
  EXPECT_EQ(warnings(), Texts{appendedNothing});
  EXPECT_EQ(names(), Texts{"z0"});
}

TEST_F(ExclusionZones, AppendRefusesAnEmptyName) {
  fill(1);
  detector_.appendExclusionZone(zoneNamed(""));
  EXPECT_EQ(warnings(), Texts{appendedUnnamed});
  EXPECT_EQ(names(), Texts{"z0"});
}

TEST_F(ExclusionZones, AppendRefusesAZoneWithoutShapeForItsEmptyName) {
  detector_.appendExclusionZone(std::make_shared<Zone3dBase>());
  EXPECT_EQ(warnings(), Texts{appendedUnnamed});
  EXPECT_EQ(names(), Texts());
}

TEST_F(ExclusionZones, AppendRefusesTheThirtyThirdZone) {
  fill(31);
  detector_.appendExclusionZone(zoneNamed("the 32nd"));
  EXPECT_EQ(warnings(), Texts());
  detector_.appendExclusionZone(zoneNamed("the 33rd"));
  EXPECT_EQ(warnings(), Texts{appendedTooMany});
  EXPECT_EQ(names().size(), 32U);
  EXPECT_EQ(names().back(), "the 32nd");
}

TEST_F(ExclusionZones, AppendChecksTheNumberBeforeLengthAndRepetition) {
  fill(32);
  detector_.appendExclusionZone(zoneNamed(std::string(19, 'n')));
  detector_.appendExclusionZone(zoneNamed("z0"));
  EXPECT_EQ(warnings(), (Texts{appendedTooMany, appendedTooMany}));
}

TEST_F(ExclusionZones, AppendChecksZoneAndEmptyNameBeforeTheNumber) {
  fill(32);
  detector_.appendExclusionZone(nullptr);
  detector_.appendExclusionZone(zoneNamed(""));
  EXPECT_EQ(warnings(), (Texts{appendedNothing, appendedUnnamed}));
}

TEST_F(ExclusionZones, AppendRefusesANameOfMoreThanEighteenBytes) {
  detector_.appendExclusionZone(zoneNamed(std::string(18, 'n')));
  EXPECT_EQ(warnings(), Texts());
  detector_.appendExclusionZone(zoneNamed(std::string(19, 'n')));
  EXPECT_EQ(warnings(), Texts{appendedLongName});
  EXPECT_EQ(names(), Texts{std::string(18, 'n')});
}

TEST_F(ExclusionZones, AppendRefusesARepeatedNameWithTwoWarnings) {
  fill(2);
  detector_.appendExclusionZone(zoneNamed("z1"));
  EXPECT_EQ(warnings(), (Texts{duplicate, appendedTwice}));
  EXPECT_EQ(names(), (Texts{"z0", "z1"}));
}

TEST_F(ExclusionZones, AppendChecksTheLengthBeforeRepetition) {
  const auto zone = zoneNamed("gate");
  detector_.appendExclusionZone(zone);
  zone->setName(std::string(19, 'n'));
  detector_.appendExclusionZone(zone);
  EXPECT_EQ(warnings(), Texts{appendedLongName});
}

TEST_F(ExclusionZones, NamesThatDifferInLetterCaseAreDifferent) {
  detector_.appendExclusionZone(zoneNamed("gate"));
  detector_.appendExclusionZone(zoneNamed("Gate"));
  EXPECT_EQ(warnings(), Texts());
  EXPECT_EQ(names(), (Texts{"gate", "Gate"}));
}

TEST_F(ExclusionZones, NamesThatDifferAfterAZeroByteAreDifferent) {
  detector_.appendExclusionZone(zoneNamed(std::string("gate\0a", 6)));
  detector_.appendExclusionZone(zoneNamed(std::string("gate\0b", 6)));
  EXPECT_EQ(warnings(), Texts());
  EXPECT_EQ(names().size(), 2U);
}

TEST_F(ExclusionZones, ARefusedZoneIsNotTouched) {
  fill(1);
  const auto zone = zoneNamed("z0");
  detector_.appendExclusionZone(zone);
  EXPECT_EQ(zone->getName(), "z0");
  EXPECT_EQ(zone.use_count(), 1);
  EXPECT_NE(detector_.getExclusionZoneVector()[0], zone);
}

TEST_F(ExclusionZones, ChecksAreMadeAtTheTimeOfTheCallOnly) {
  fill(2);
  detector_.getExclusionZoneVector()[1]->setName("z0");
  EXPECT_EQ(names(), (Texts{"z0", "z0"}));
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, UpdateReplacesTheZoneInItsPlace) {
  fill(3);
  const auto zone = zoneNamed("new");
  detector_.updateExclusionZone("z1", zone);
  EXPECT_EQ(names(), (Texts{"z0", "new", "z2"}));
  EXPECT_EQ(detector_.getExclusionZoneVector()[1], zone);
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, UpdateRefusesNull) {
  fill(1);
  detector_.updateExclusionZone("z0", nullptr);
  EXPECT_EQ(warnings(), Texts{updatedToNothing});
  EXPECT_EQ(names(), Texts{"z0"});
}

TEST_F(ExclusionZones, UpdateRefusesAnEmptyNewName) {
  fill(1);
  detector_.updateExclusionZone("z0", zoneNamed(""));
  detector_.updateExclusionZone("z0", std::make_shared<Zone3dBase>());
  EXPECT_EQ(warnings(), (Texts{updatedToUnnamed, updatedToUnnamed}));
  EXPECT_EQ(names(), Texts{"z0"});
}

TEST_F(ExclusionZones, UpdateWarnsOfBadInputAlsoWhenNoZoneHasTheName) {
  detector_.updateExclusionZone("unknown", nullptr);
  detector_.updateExclusionZone("unknown", zoneNamed(""));
  EXPECT_EQ(warnings(), (Texts{updatedToNothing, updatedToUnnamed}));
}

TEST_F(ExclusionZones, UpdateOfAnUnknownNameChangesAndLogsNothing) {
  fill(2);
  detector_.updateExclusionZone("Z0", zoneNamed("new"));
  EXPECT_EQ(names(), (Texts{"z0", "z1"}));
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, UpdateChecksNeitherLengthNorRepetition) {
  fill(3);
  detector_.updateExclusionZone("z0", zoneNamed("z2"));
  detector_.updateExclusionZone("z1", zoneNamed(std::string(19, 'n')));
  EXPECT_EQ(names(), (Texts{"z2", std::string(19, 'n'), "z2"}));
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, UpdateReplacesTheFirstOfTwoZonesOfOneName) {
  fill(3);
  detector_.updateExclusionZone("z2", zoneNamed("z0"));
  detector_.updateExclusionZone("z0", zoneNamed("new"));
  EXPECT_EQ(names(), (Texts{"new", "z1", "z0"}));
}

TEST_F(ExclusionZones, EraseRemovesTheZoneAndMovesTheLaterOnesUp) {
  fill(4);
  detector_.eraseExclusionZone("z1");
  EXPECT_EQ(names(), (Texts{"z0", "z2", "z3"}));
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, EraseRemovesOneZonePerCall) {
  fill(3);
  detector_.updateExclusionZone("z2", zoneNamed("z0"));
  detector_.eraseExclusionZone("z0");
  EXPECT_EQ(names(), (Texts{"z1", "z0"}));
  detector_.eraseExclusionZone("z0");
  EXPECT_EQ(names(), Texts{"z1"});
}

TEST_F(ExclusionZones, EraseOfAnUnknownNameChangesAndLogsNothing) {
  detector_.eraseExclusionZone("z0");
  fill(2);
  for (const std::string name : {"z2", "Z0", "z", ""}) {
    detector_.eraseExclusionZone(name);
  }
  EXPECT_EQ(names(), (Texts{"z0", "z1"}));
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, EraseReleasesTheZone) {
  const auto zone = zoneNamed("gate");
  detector_.appendExclusionZone(zone);
  EXPECT_EQ(zone.use_count(), 2);
  detector_.eraseExclusionZone("gate");
  EXPECT_EQ(zone.use_count(), 1);
}

TEST_F(ExclusionZones, EraseTakesTheNameOutOfTheZoneThatItRemoves) {
  const auto zone = zoneNamed("gate");
  detector_.appendExclusionZone(zone);
  detector_.appendExclusionZone(zoneNamed("other"));
  detector_.eraseExclusionZone(zone->getZone2d()->name());
  EXPECT_EQ(names(), Texts{"other"});
}

TEST_F(ExclusionZones, SetAddsToWhatIsThere) {
  fill(5);
  detector_.setExclusionZoneVector(zonesNamed("new", 0, 3));
  EXPECT_EQ(names(), (Texts{"z0", "z1", "z2", "z3", "z4", "new0", "new1", "new2"}));
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, SetSharesTheZones) {
  const ZoneList zones = zonesNamed("z", 0, 3);
  detector_.setExclusionZoneVector(zones);
  EXPECT_EQ(detector_.getExclusionZoneVector(), zones);
}

TEST_F(ExclusionZones, SetKeepsTheFirstThirtyTwoOfFortyZones) {
  const ZoneList zones = zonesNamed("z", 0, 40);
  detector_.setExclusionZoneVector(zones);
  EXPECT_EQ(detector_.getExclusionZoneVector(), ZoneList(zones.begin(), zones.begin() + 32));
  EXPECT_EQ(warnings(), Texts(8, appendedTooMany));
}

TEST_F(ExclusionZones, SetDropsWhatAppendRefusesAndKeepsTheRest) {
  detector_.setExclusionZoneVector({zoneNamed("a"), nullptr, zoneNamed("b"), zoneNamed(""), zoneNamed("a"),
                                    zoneNamed(std::string(19, 'n')), zoneNamed("c")});
  EXPECT_EQ(names(), (Texts{"a", "b", "c"}));
  EXPECT_EQ(warnings(),
            (Texts{appendedNothing, appendedUnnamed, duplicate, appendedTwice, appendedLongName}));
}

TEST_F(ExclusionZones, SetToItsOwnListOnlyWarns) {
  fill(3);
  detector_.setExclusionZoneVector(detector_.getExclusionZoneVector());
  EXPECT_EQ(names(), (Texts{"z0", "z1", "z2"}));
  EXPECT_EQ(warnings(),
            (Texts{duplicate, appendedTwice, duplicate, appendedTwice, duplicate, appendedTwice}));
}

TEST_F(ExclusionZones, SetToAnEmptyListChangesNothing) {
  fill(2);
  detector_.setExclusionZoneVector({});
  EXPECT_EQ(names(), (Texts{"z0", "z1"}));
}

TEST_F(ExclusionZones, AUniqueNameIsValid) {
  fill(2);
  for (const std::string name : {"Z0", "z2", "z", "z00", ""}) {
    EXPECT_TRUE(detector_.validateExclusionZoneName(name)) << name;
  }
  EXPECT_EQ(warnings(), Texts());
}

TEST_F(ExclusionZones, ANameInTheListIsAWarningAndOnlyOne) {
  fill(3);
  detector_.updateExclusionZone("z2", zoneNamed("z0"));
  EXPECT_FALSE(detector_.validateExclusionZoneName("z0"));
  EXPECT_EQ(warnings(), Texts{duplicate});
  EXPECT_EQ(names(), (Texts{"z0", "z1", "z0"}));
}

}  // namespace
}  // namespace orvantis::filter::detection
