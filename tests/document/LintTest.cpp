#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "document/Lint.h"
#include "document/LocatedJson.h"

// The findings of one document with nearly everything wrong are in the golden files; here are the rules for
// what is no finding, and those of one line that a golden file would hide.

namespace orvantis::toolkit {
namespace {

std::vector<std::string> findings(const std::string& json) {
  const auto document = parseLocated(json);
  EXPECT_TRUE(document) << json;
  std::vector<std::string> texts;
  for (const Finding& finding : lint(*document)) {
    texts.push_back(std::to_string(finding.line) + " " + finding.path + ": " + finding.text);
  }
  return texts;
}

// A document with one zone; the text stands in the zone's entry.
std::vector<std::string> zoneFindings(const std::string& entry) {
  return findings(
      R"({"ZoneDetector":{"EvaluationField":[{"name":"f","index":0,"Zone":[{"name":"z","index":0,)" + entry +
      "}]}]}}");
}

std::string polygon(const std::string& points) {
  return R"("shape":"polygon","Polygon":{"Point":[)" + points + "]}";
}

const std::string zonePath = "ZoneDetector/EvaluationField[0]/Zone[0]";
using Texts = std::vector<std::string>;

TEST(Lint, AGoodDocumentHasNoFindings) {
  EXPECT_EQ(zoneFindings(polygon(R"({"x":0,"y":0},{"x":0,"y":1},{"x":1,"y":0})")), Texts());
}

TEST(Lint, ARepeatedClosingVertexIsNoFinding) {
  EXPECT_EQ(zoneFindings(polygon(R"({"x":0,"y":0},{"x":0,"y":1},{"x":1,"y":0},{"x":0,"y":0})")), Texts());
}

TEST(Lint, ASavedWholeDiscIsNoFinding) {
  EXPECT_EQ(
      zoneFindings(R"("shape":"sector","Sector":{"minAngle":3.14,"maxAngle":9.423185307179586,"radius":1})"),
      Texts());
}

TEST(Lint, LetterCaseOfShapeAndLevelIsNoFinding) {
  EXPECT_EQ(
      findings(
          R"({"ZoneDetector":{"triggerActiveLevel":"LOW","EvaluationField":[{"name":"f","index":0,"Zone":[
      {"name":"z","index":0,"shape":"SECTOR","Sector":{"minAngle":0,"maxAngle":1,"radius":1}}]}]}})"),
      Texts());
}

TEST(Lint, SchemaIsAccepted) {
  EXPECT_EQ(findings(R"({"$schema":"s","CounterLines":{"CounterLine":[]}})"), Texts());
}

TEST(Lint, ADocumentWithoutDetectorIsReadAtItsTopLevel) {
  EXPECT_EQ(findings("{\n\"sensitivity\":0,\n\"EvaluationField\":[]}"),
            (Texts{"1 : no \"EvaluationField\": nothing will be detected",
                   "2 sensitivity: 0 is outside 1..10; the most sensitive, 10, is taken instead"}));
}

TEST(Lint, BothEndsOfTheSensitivityAreAllowed) {
  for (const std::string sensitivity : {"1", "10"}) {
    EXPECT_EQ(findings(R"({"CounterLines":{},"sensitivity":)" + sensitivity + "}"), Texts()) << sensitivity;
  }
}

TEST(Lint, EqualHeightsAreAllowed) {
  EXPECT_EQ(zoneFindings(polygon(R"({"x":0,"y":0},{"x":0,"y":1},{"x":1,"y":0})") + R"(,"zMin":1,"zMax":1)"),
            Texts());
}

TEST(Lint, AZMaxBelowTheDefaultZMinIsFound) {
  EXPECT_EQ(
      zoneFindings(polygon(R"({"x":0,"y":0},{"x":0,"y":1},{"x":1,"y":0})") + R"(,"zMax":-1)"),
      Texts{"1 " + zonePath + "/zMax: zMin 0 (the default) is above zMax -1: the zone contains nothing"});
}

TEST(Lint, NumbersInStringsAreNumbers) {
  EXPECT_EQ(zoneFindings(R"("shape":"sector","Sector":{"minAngle":"0","maxAngle":"1","radius":"2"})"),
            Texts());
}

TEST(Lint, ARadiusThatIsNotPositiveIsFound) {
  for (const std::string radius : {"0", "-1", "-0.0"}) {
    EXPECT_EQ(zoneFindings(R"("shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":)" + radius + "}")
                  .size(),
              1U)
        << radius;
  }
}

TEST(Lint, RepeatedKeysAreListedByPosition) {
  EXPECT_EQ(
      findings("{\"EvaluationField\":{\"name\":\"a\",\"index\":0},\n\"EvaluationField\":{\"name\":\"b\"}}"),
      (Texts{"1 EvaluationField[0]: no \"Zone\"; a field has 1 to 3", "2 EvaluationField[1]: no \"index\"",
             "2 EvaluationField[1]: no \"Zone\"; a field has 1 to 3"}));
}

TEST(Lint, AFourthZoneANinthFieldAndA33rdExclusionZoneAreFound) {
  const std::string disc = R"("shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1})";
  std::string zones;
  for (int i = 0; i < 4; ++i) {
    zones += (i == 0 ? "" : ",") + std::string("{\"name\":\"z") + std::to_string(i) +
             "\",\"index\":" + std::to_string(i % 3) + "," + disc + "}";
  }
  const Texts tooManyZones =
      findings(R"({"EvaluationField":[{"name":"f","index":0,"Zone":[)" + zones + "]}]}");
  ASSERT_EQ(tooManyZones.size(), 2U);
  EXPECT_EQ(tooManyZones[0], "1 EvaluationField[0]/Zone[3]: 4 zones in a field; at most 3 are allowed");

  std::string fields;
  for (int i = 0; i < 9; ++i) {
    fields += (i == 0 ? "" : ",") + std::string("{\"name\":\"f") + std::to_string(i) +
              "\",\"index\":" + std::to_string(i % 8) + ",\"Zone\":{\"name\":\"z\",\"index\":0," + disc +
              "}}";
  }
  const Texts tooManyFields = findings("{\"EvaluationField\":[" + fields + "]}");
  ASSERT_EQ(tooManyFields.size(), 2U);
  EXPECT_EQ(tooManyFields[0], "1 EvaluationField[8]: 9 evaluation fields; at most 8 are allowed");

  std::string exclusions;
  for (int i = 0; i < 33; ++i) {
    exclusions += (i == 0 ? "" : ",") + std::string("{\"name\":\"e") + std::to_string(i) + "\"," + disc + "}";
  }
  EXPECT_EQ(findings("{\"CounterLines\":{},\"ExclusionZone\":[" + exclusions + "]}"),
            Texts{"1 ExclusionZone[32]: 33 exclusion zones; at most 32 are allowed"});
}

TEST(Lint, SensorBoundZonesNeedTheirHeights) {
  EXPECT_EQ(findings(R"({"Zone3d":{"id":"x","name":"z","enabled":true,"Sensors":{"lidar":["a","b"]},"zMin":0,
      "shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1}}})"),
            Texts{"1 Zone3d[0]: no \"zMax\""});
}

TEST(Lint, ManyCrossingsAreCounted) {
  // A star of 7 corners, each edge of which crosses 4 others: 14 pairs.
  EXPECT_EQ(
      zoneFindings(polygon(R"({"x":10,"y":0},{"x":-9,"y":4},{"x":6,"y":-8},{"x":-2,"y":10},{"x":-2,"y":-10},
                                    {"x":6,"y":8},{"x":-9,"y":-4})"))
          .back(),
      "1 " + zonePath + "/Polygon: 11 more pairs of edges cross or touch");
}

TEST(Lint, WhatIsNoObjectIsNamed) {
  EXPECT_EQ(findings("5"), Texts{"1 : the document has to be an object"});
  EXPECT_EQ(findings(R"({"ZoneDetector":5})"), Texts{"1 ZoneDetector: ZoneDetector has to be an object"});
  EXPECT_EQ(findings(R"({"EvaluationField":"f"})"),
            Texts{"1 EvaluationField[0]: an evaluation field has to be an object"});
  EXPECT_EQ(findings(R"({"CounterLines":[1]})"),
            Texts{"1 CounterLines[0]: \"CounterLines\" has to be an object"});
}

TEST(LocatedJson, LinesAreThoseOfTheValues) {
  const auto document = parseLocated("\xEF\xBB\xBF{\r\n  \"a\":\n  1,\n\n  \"list\": [ 2,\n 3 ] }");
  ASSERT_TRUE(document);
  EXPECT_EQ(document->find("a")->line, 3U);
  const auto list = document->all("list");
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0]->line, 5U);
  EXPECT_EQ(list[1]->line, 6U);
  EXPECT_EQ(list[1]->text, "3");
}

TEST(LocatedJson, TextThatIsNoDocumentGivesNone) {
  for (const std::string text : {"", "{", "{} {}", "{\"a\":1,}", "nul", "\"a\nb\""}) {
    EXPECT_FALSE(parseLocated(text)) << text;
  }
  EXPECT_FALSE(parseLocated(std::string(100000, '[')));
}

TEST(LocatedJson, LongStringsAndNumbersAreWhole) {
  const std::string text(200000, 'a');
  const std::string digits(50000, '1');
  const auto document = parseLocated("{\"" + text + "\":\"" + text + "\",\"n\":" + digits + "}");
  ASSERT_TRUE(document);
  EXPECT_EQ(document->children[0].name, text);
  EXPECT_EQ(document->children[0].text, text);
  EXPECT_EQ(document->find("n")->text, digits);
}

}  // namespace
}  // namespace orvantis::toolkit
