#include <string>

#include <gtest/gtest.h>

#include "Documents.h"

// What is said about keys and single values: whatever loading would refuse, or drop without a word, is an
// error.

namespace orvantis::toolkit {
namespace {

using testing::detector;
using testing::disc;
using testing::findings;
using testing::findingsOnOneLine;
using testing::line;
using testing::polygon;
using testing::Texts;
using testing::triangle;
using testing::zone;
using testing::zonePath;

TEST(KeyFindings, AGoodDocumentHasNone) {
  EXPECT_EQ(findings(zone(triangle)), Texts());
  EXPECT_EQ(findings(zone(disc)), Texts());
  EXPECT_EQ(findings(line(R"("name":"l","first":{"x":0,"y":0},"second":{"x":1,"y":0})")), Texts());
}

TEST(KeyFindings, LetterCaseOfShapeAndLevelDoesNotMatter) {
  EXPECT_EQ(findings(R"({"ZoneDetector":{"triggerActiveLevel":"LOW","EvaluationField":[{"name":"f","index":0,
      "Zone":[{"name":"z","index":0,"shape":"SECTOR","Sector":{"minAngle":0,"maxAngle":1,"radius":1}}]}]}})"),
            Texts());
}

TEST(KeyFindings, ASchemaMayBeNamedAtTheTopAndInTheDetector) {
  EXPECT_EQ(findings(R"({"$schema":"s","ZoneDetector":{"$schema":"s","ExclusionZone":[],"EvaluationField":
      {"name":"f","index":0,"Zone":{"name":"z","index":0,"shape":"polygon","Polygon":{"Point":[{"x":0,"y":0},
      {"x":0,"y":1},{"x":1,"y":0}]}}}}})"),
            Texts());
}

TEST(KeyFindings, AMissingKeySaysWhatIsAllowed) {
  EXPECT_EQ(findings(R"({"ZoneDetector":{"EvaluationField":
 {}}})"),
            (Texts{"2:2 missing-key ZoneDetector/EvaluationField[0]: \"name\" is missing; give a text of 1 "
                   "to 18 bytes",
                   "2:2 missing-key ZoneDetector/EvaluationField[0]: \"index\" is missing; give a whole "
                   "number from 0 to 7",
                   "2:2 missing-key ZoneDetector/EvaluationField[0]: \"Zone\" is missing; give a list of 1 "
                   "to 3 zones"}));
  EXPECT_EQ(findingsOnOneLine(zone("\"zMin\":1")),
            Texts{"missing-key " + zonePath +
                  ": \"shape\" is missing; give \"polygon\", \"rectangle\" or \"sector\""});
  EXPECT_EQ(findingsOnOneLine(zone(R"("shape":"polygon")")),
            Texts{"missing-key " + zonePath +
                  ": \"Polygon\" is missing, which \"shape\" asks for; give an object with \"Point\""});
  EXPECT_EQ(findingsOnOneLine(zone(R"("shape":"sector","Sector":{})")),
            (Texts{"missing-key " + zonePath + "/Sector: \"minAngle\" is missing; give a number (radians)",
                   "missing-key " + zonePath + "/Sector: \"maxAngle\" is missing; give a number (radians)",
                   "missing-key " + zonePath + "/Sector: \"radius\" is missing; give a number above 0 (m)"}));
  EXPECT_EQ(
      findingsOnOneLine(zone(R"("shape":"rectangle","Rectangle":{})")),
      (Texts{"missing-key " + zonePath + "/Rectangle: \"rotation\" is missing; give a number (degrees)",
             "missing-key " + zonePath + "/Rectangle: \"Point\" is missing; give a list of 2 corners"}));
  EXPECT_EQ(findingsOnOneLine(zone(polygon(R"({"x":0,"y":0},{"x":0},{"y":1})"))),
            (Texts{"missing-key " + zonePath + "/Polygon/Point[1]: \"y\" is missing; give a number (m)",
                   "missing-key " + zonePath + "/Polygon/Point[2]: \"x\" is missing; give a number (m)"}));
  EXPECT_EQ(
      findingsOnOneLine(zone(R"("shape":"polygon","Polygon":{})")),
      Texts{"missing-key " + zonePath + "/Polygon: \"Point\" is missing; give a list of 3 to 16 vertices"});
  EXPECT_EQ(findingsOnOneLine(line("")),
            (Texts{"missing-key CounterLines/CounterLine[0]: \"name\" is missing; give a text",
                   "missing-key CounterLines/CounterLine[0]: \"first\" is missing; give an object with \"x\" "
                   "and \"y\"",
                   "missing-key CounterLines/CounterLine[0]: \"second\" is missing; give an object with "
                   "\"x\" and \"y\""}));
}

TEST(KeyFindings, AnEmptyListIsWhatTheStoreKeepsNothingOf) {
  EXPECT_EQ(findings(zone("\"zMin\":[]," + triangle)),
            Texts{"1:87 wrong-type " + zonePath + "/zMin: an empty list stands where a number (m) belongs"});
  EXPECT_EQ(
      findingsOnOneLine(detector(R"("EvaluationField":{"name":"f","index":0,"Zone":[]})")),
      Texts{"wrong-type ZoneDetector/EvaluationField[0]/Zone: an empty list stands where a list of 1 to 3 "
            "zones belongs"});
  EXPECT_EQ(findingsOnOneLine(zone(R"("shape":"polygon","Polygon":[])")),
            Texts{"wrong-type " + zonePath +
                  "/Polygon: an empty list stands where an object with \"Point\" belongs"});
}

TEST(KeyFindings, AMisspeltKeyThatHidesAKnownOneIsAnError) {
  EXPECT_EQ(findingsOnOneLine(zone(R"("shape":"polygon","Poligon":{"Point":[]})")),
            Texts{"misspelt-key " + zonePath + "/Poligon: unknown key; did you mean \"Polygon\"?"});
  EXPECT_EQ(findings(zone("\n\"zmin\":1," + triangle)),
            Texts{"2:1 misspelt-key " + zonePath + "/zmin: unknown key; did you mean \"zMin\"?"});
  EXPECT_EQ(findingsOnOneLine(R"({"ZoneDetektor":{}})"),
            Texts{"misspelt-key ZoneDetektor: unknown key; did you mean \"ZoneDetector\"?"});
  EXPECT_EQ(findingsOnOneLine(line(R"("nmae":"l","first":{"x":0,"y":0},"secnd":{"x":1,"y":0})")),
            (Texts{"misspelt-key CounterLines/CounterLine[0]/nmae: unknown key; did you mean \"name\"?",
                   "misspelt-key CounterLines/CounterLine[0]/secnd: unknown key; did you mean \"second\"?"}));
}

TEST(KeyFindings, AnUnknownKeyThatHidesNothingIsAWarning) {
  EXPECT_EQ(findingsOnOneLine(zone("\"comment\":1,\"zMin\":0,\"zmin\":1," + triangle)),
            (Texts{"unknown-key " + zonePath + "/comment: unknown key; nothing reads it",
                   "unknown-key " + zonePath + "/zmin: unknown key; did you mean \"zMin\"?"}));
  EXPECT_TRUE(check(zone("\"comment\":1," + triangle)).configuration);
  // Of the shapes only the one that is asked for can be hidden.
  EXPECT_EQ(findingsOnOneLine(zone("\"Sectr\":1," + triangle)),
            Texts{"unknown-key " + zonePath + "/Sectr: unknown key; did you mean \"Sector\"?"});
}

TEST(KeyFindings, AKeyInTheWrongPlaceIsAnError) {
  const std::string field =
      "\"EvaluationField\":{\"name\":\"f\",\"index\":0,\"Zone\":{\"name\":\"z\",\"index\":0," + triangle +
      "}}";
  EXPECT_EQ(findingsOnOneLine("{\"sensitivity\":3,\"ZoneDetector\":{" + field + "}}"),
            Texts{"misplaced-key sensitivity: is not read here; it belongs in \"ZoneDetector\""});
  EXPECT_EQ(findingsOnOneLine("{\"ZoneDetector\":{}," + field + "}"),
            Texts{"misplaced-key EvaluationField: is not read here; it belongs in \"ZoneDetector\""});
  EXPECT_EQ(findingsOnOneLine(detector("\"CounterLines\":{}," + field)),
            Texts{"misplaced-key ZoneDetector/CounterLines: is not read here; it belongs at the top of the "
                  "document"});
  EXPECT_EQ(findingsOnOneLine(R"({"CounterLine":[]})"),
            Texts{"empty-document : no zone and no counter line; zones belong in \"EvaluationField\" in "
                  "\"ZoneDetector\""});
  EXPECT_EQ(findingsOnOneLine(R"({"CounterLine":[{}]})"),
            Texts{"misplaced-key CounterLine: is not read here; it belongs in \"CounterLines\""});
  EXPECT_EQ(findingsOnOneLine(zone("\"enabled\":false," + triangle)),
            Texts{"misplaced-key " + zonePath +
                  "/enabled: is not read here; it belongs in an entry of \"Zone3d\""});
  EXPECT_EQ(findingsOnOneLine(zone(R"("shape":"rectangle","rotation":3,"Rectangle":{"zMin":1,"rotation":0,
      "Point":[{"x":0,"y":0},{"x":1,"y":1}]})")),
            (Texts{"misplaced-key " + zonePath + "/rotation: is not read here; it belongs in \"Rectangle\"",
                   "misplaced-key " + zonePath + "/Rectangle/zMin: is not read here; it belongs in a zone"}));
}

TEST(KeyFindings, AKeyThatOnlyNamesThingsDoesNoHarmElsewhere) {
  EXPECT_EQ(findingsOnOneLine(zone("\"id\":7," + triangle)),
            Texts{"unknown-key " + zonePath + "/id: unknown key; nothing reads it"});
  EXPECT_EQ(findingsOnOneLine(detector("\"name\":\"site\",\"ExclusionZone\":{\"name\":\"e\",\"index\":0," +
                                       triangle + "}")),
            (Texts{"no-fields ZoneDetector: no \"EvaluationField\": nothing will be detected",
                   "unknown-key ZoneDetector/name: unknown key; nothing reads it",
                   "unknown-key ZoneDetector/ExclusionZone[0]/index: unknown key; nothing reads it"}));
}

TEST(KeyFindings, ARepeatedKeyIsAnErrorUnlessItIsAList) {
  EXPECT_EQ(findings(zone("\"zMin\":0,\n\"zMin\":1," + triangle)),
            Texts{"2:1 repeated-key " + zonePath +
                  "/zMin: is given again, and only the first one is read; remove one"});
  EXPECT_EQ(findingsOnOneLine(zone("\"zMin\":[0,1]," + triangle)),
            Texts{"repeated-key " + zonePath +
                  "/zMin[1]: is given again, and only the first one is read; remove one"});
  EXPECT_EQ(
      findings("{\"ZoneDetector\":{\"EvaluationField\":{\"name\":\"a\",\"index\":0},\n\"EvaluationField\":"
               "{\"name\":\"b\"}}}"),
      (Texts{"1:36 missing-key ZoneDetector/EvaluationField[0]: \"Zone\" is missing; give a list of 1 to 3 "
             "zones",
             "2:19 missing-key ZoneDetector/EvaluationField[1]: \"index\" is missing; give a whole number "
             "from 0 to 7",
             "2:19 missing-key ZoneDetector/EvaluationField[1]: \"Zone\" is missing; give a list of 1 to 3 "
             "zones"}));
}

TEST(KeyFindings, AListOfOneThatIsNotAListIsAWarning) {
  EXPECT_EQ(findingsOnOneLine(zone("\"zMin\":[1]," + triangle)),
            Texts{"needless-list " + zonePath + "/zMin[0]: is a list of one; remove its brackets"});
}

TEST(KeyFindings, TheOtherShapesAreNotRead) {
  EXPECT_EQ(findingsOnOneLine(zone("\"Sector\":{\"radius\":\"x\"}," + triangle)),
            Texts{"unread-shape " + zonePath + "/Sector: is not read, because \"shape\" is \"polygon\""});
}

TEST(ValueFindings, WhatIsNotOfTheTypeIsAnError) {
  EXPECT_EQ(findingsOnOneLine(zone("\"zMin\":\"low\",\"zMax\":null," + triangle)),
            (Texts{"wrong-type " + zonePath + "/zMin: \"low\" stands where a number (m) belongs",
                   "wrong-type " + zonePath + "/zMax: null stands where a number (m) belongs"}));
  EXPECT_EQ(findingsOnOneLine(zone("\"zMin\":1e999,\"zMax\":{}," + triangle)),
            (Texts{"wrong-type " + zonePath + "/zMin: 1e999 stands where a number (m) belongs",
                   "wrong-type " + zonePath + "/zMax: an object stands where a number (m) belongs"}));
  EXPECT_EQ(
      findingsOnOneLine(detector("\"debounceTimeMs\":2.0,\"useSoftwareAPICommand\":\"yes\",\"sensitivity\":"
                                 "99999999999,\"EvaluationField\":5")),
      (Texts{
          "wrong-type ZoneDetector/debounceTimeMs: 2.0 stands where a whole number from 0 up (ms) belongs",
          "wrong-type ZoneDetector/useSoftwareAPICommand: \"yes\" stands where true or false belongs",
          "wrong-type ZoneDetector/sensitivity: 99999999999 stands where a whole number from 1 to 10 belongs",
          "wrong-type ZoneDetector/EvaluationField[0]: 5 stands where an object with \"name\", \"index\" and "
          "\"Zone\" belongs"}));
  EXPECT_EQ(findingsOnOneLine(zone(polygon("[0,0],5"))),
            (Texts{"wrong-type " + zonePath +
                       "/Polygon/Point[0]: a list stands where an object with \"x\" and \"y\" "
                       "belongs",
                   "wrong-type " + zonePath +
                       "/Polygon/Point[1]: 5 stands where an object with \"x\" and \"y\" "
                       "belongs"}));
  EXPECT_EQ(findingsOnOneLine(R"({"CounterLines":[1]})"),
            (Texts{"empty-document : no zone and no counter line; zones belong in \"EvaluationField\" in "
                   "\"ZoneDetector\"",
                   "needless-list CounterLines[0]: is a list of one; remove its brackets",
                   "wrong-type CounterLines[0]: 1 stands where an object belongs"}));
  EXPECT_EQ(findingsOnOneLine(line(R"("name":{},"first":{"x":0,"y":0},"second":{"x":1,"y":0})")),
            Texts{"wrong-type CounterLines/CounterLine[0]/name: an object stands where a text belongs"});
}

TEST(ValueFindings, NumbersInQuotesAreNumbers) {
  EXPECT_EQ(findings(zone(R"("shape":"sector","Sector":{"minAngle":"0","maxAngle":" 1 ","radius":"2"})")),
            Texts());
}

TEST(ValueFindings, AnUnquotedTextIsAWarning) {
  EXPECT_EQ(findingsOnOneLine(line(R"("name":7,"first":{"x":0,"y":0},"second":{"x":1,"y":0})")),
            Texts{"unquoted-text CounterLines/CounterLine[0]/name: 7 is read as a text; write \"7\""});
  EXPECT_EQ(findingsOnOneLine(line(R"("name":null,"first":{"x":0,"y":0},"second":{"x":1,"y":0})")),
            Texts{"wrong-type CounterLines/CounterLine[0]/name: null stands where a text belongs"});
}

TEST(ValueFindings, WhatLoadingDoesNotReadIsNoMoreThanDoubtful) {
  const std::string field =
      "\"EvaluationField\":{\"name\":\"f\",\"index\":0,\"Zone\":{\"name\":\"z\",\"index\":0," + disc + "}}";
  EXPECT_EQ(findingsOnOneLine(detector("\"version\":null," + field)),
            Texts{"unlikely-value ZoneDetector/version: null stands where a text belongs"});
  EXPECT_EQ(findingsOnOneLine(detector("\"version\":1.1," + field)),
            Texts{"unquoted-text ZoneDetector/version: 1.1 is read as a text; write \"1.1\""});
}

TEST(ValueFindings, AWordIsOneOfThoseThatAreKnown) {
  EXPECT_EQ(findingsOnOneLine(zone(R"("shape":"Circle")")),
            Texts{"unknown-word " + zonePath +
                  "/shape: \"Circle\" is unknown; choose \"polygon\", \"rectangle\" or "
                  "\"sector\""});
  EXPECT_EQ(findingsOnOneLine(zone(R"("shape":"sectr")")),
            Texts{"unknown-word " + zonePath + "/shape: \"sectr\" is unknown; did you mean \"sector\"?"});
  EXPECT_EQ(findingsOnOneLine(zone(R"("shape":5)")),
            Texts{"unknown-word " + zonePath +
                  "/shape: 5 is unknown; choose \"polygon\", \"rectangle\" or \"sector\""});
}

TEST(ValueFindings, ANumberIsWithinItsRange) {
  const auto ofDetector = [](const std::string& entry) {
    return findingsOnOneLine(detector(entry + R"(,"EvaluationField":{"name":"f","index":0,"Zone":{"name":"z",
        "index":0,"shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1}}})"));
  };
  for (const std::string good : {"1", "10"}) {
    EXPECT_EQ(ofDetector("\"sensitivity\":" + good), Texts()) << good;
  }
  for (const std::string bad : {"0", "11", "-3"}) {
    EXPECT_EQ(ofDetector("\"sensitivity\":" + bad),
              Texts{"out-of-range ZoneDetector/sensitivity: " + bad +
                    " is outside 1 to 10; loading takes 10, the most sensitive, instead"});
  }
  EXPECT_EQ(ofDetector("\"debounceTimeMs\":0"), Texts());
  EXPECT_EQ(ofDetector("\"debounceTimeMs\":-1"),
            Texts{"unlikely-value ZoneDetector/debounceTimeMs: -1 is below 0"});
}

TEST(ValueFindings, AnIndexIsASlot) {
  for (const auto& [index, isGood] : {std::pair(-1, false), {0, true}, {7, true}, {8, false}}) {
    const Texts found =
        findingsOnOneLine(detector("\"EvaluationField\":{\"name\":\"f\",\"index\":" + std::to_string(index) +
                                   ",\"Zone\":{\"name\":\"z\",\"index\":0," + disc + "}}"));
    EXPECT_EQ(found, isGood ? Texts()
                            : Texts{"out-of-range ZoneDetector/EvaluationField[0]/index: " +
                                    std::to_string(index) + " is outside 0 to 7"});
  }
  EXPECT_EQ(
      findingsOnOneLine(detector("\"EvaluationField\":{\"name\":\"f\",\"index\":0,\"Zone\":{\"name\":\"z\","
                                 "\"index\":3," +
                                 disc + "}}")),
      Texts{"out-of-range " + zonePath + "/index: 3 is outside 0 to 2"});
}

TEST(ValueFindings, AnglesAreRadiansAndRadiiPositive) {
  const auto sector = [](const std::string& minAngle, const std::string& radius) {
    return findingsOnOneLine(zone("\"shape\":\"sector\",\"Sector\":{\"minAngle\":" + minAngle +
                                  ",\"maxAngle\":1,\"radius\":" + radius + "}"));
  };
  EXPECT_EQ(sector("9.42477796", "0.001"), Texts());  // a saved whole disc reaches so far
  EXPECT_EQ(
      sector("9.43", "1"),
      Texts{"unlikely-value " + zonePath +
            "/Sector/minAngle: 9.43 is outside -9.4248 to 9.4248; angles are radians, a turn is 6.2832"});
  EXPECT_EQ(
      sector("-45", "1"),
      Texts{"unlikely-value " + zonePath +
            "/Sector/minAngle: -45 is outside -9.4248 to 9.4248; angles are radians, a turn is 6.2832"});
  EXPECT_EQ(sector("0", "0"), Texts{"unlikely-value " + zonePath + "/Sector/radius: 0 is not above 0"});
  EXPECT_EQ(sector("0", "-1"), Texts{"unlikely-value " + zonePath + "/Sector/radius: -1 is not above 0"});
}

TEST(ValueFindings, ANameHasOneToEighteenBytes) {
  const auto named = [](const std::string& name) {
    return findingsOnOneLine(
        detector("\"EvaluationField\":{\"name\":\"f\",\"index\":0,\"Zone\":{\"name\":\"" + name +
                 "\",\"index\":0," + disc + "}}"));
  };
  EXPECT_EQ(named(std::string(18, 'n')), Texts());
  EXPECT_EQ(named(std::string(19, 'n')),
            Texts{"name-length " + zonePath + "/name: the name has 19 bytes; 1 to 18 are allowed"});
  EXPECT_EQ(named(""), Texts{"name-length " + zonePath + "/name: the name has 0 bytes; 1 to 18 are allowed"});
  EXPECT_EQ(named("\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4"),
            Texts{"name-length " + zonePath + "/name: the name has 20 bytes; 1 to 18 are allowed"});
}

TEST(ValueFindings, TextsFromTheDocumentAreShortAndPrintable) {
  EXPECT_EQ(findingsOnOneLine(zone("\"shape\":\"\\u001b[31m" + std::string(50, 'x') + "\"")),
            Texts{"unknown-word " + zonePath + "/shape: \"\\x1b[31m" + std::string(35, 'x') +
                  "...\" is unknown; choose \"polygon\", \"rectangle\" or \"sector\""});
  EXPECT_EQ(findingsOnOneLine(zone("\"shape\":\"sector\",\"Sector\":" + std::string(50, '1'))),
            Texts{"wrong-type " + zonePath + "/Sector: " + std::string(40, '1') +
                  "... stands where an object with \"minAngle\", \"maxAngle\" and \"radius\" belongs"});
}

}  // namespace
}  // namespace orvantis::toolkit
