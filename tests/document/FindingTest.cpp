#include <functional>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "Documents.h"

// What no single key tells.

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

const std::string empty =
    "empty-document : no zone and no counter line; zones belong in \"EvaluationField\" in \"ZoneDetector\"";

TEST(Findings, EveryKindHasItsOwnId) {
  std::set<std::string_view> ids;
  for (int kind = 0; kind <= static_cast<int>(FindingKind::EmptyLine); ++kind) {
    EXPECT_TRUE(ids.insert(idOf(static_cast<FindingKind>(kind))).second) << kind;
  }
  EXPECT_EQ(ids.count(""), 0U);
  EXPECT_EQ(wordOf(severityOf(FindingKind::Refused)), "error");
  EXPECT_EQ(wordOf(severityOf(FindingKind::UnknownKey)), "warning");
}

TEST(Findings, ADocumentWithoutZonesIsAnError) {
  EXPECT_EQ(findingsOnOneLine("{}"), Texts{empty});
  EXPECT_EQ(findingsOnOneLine(detector("")), Texts{empty});
  EXPECT_EQ(findingsOnOneLine(detector("\"sensitivity\":5,\"EvaluationField\":[]")), Texts{empty});
  EXPECT_EQ(findingsOnOneLine(R"({"CounterLines":{}})"), Texts{empty});
  EXPECT_EQ(findings("0"),
            Texts{"1:1 empty-document : 0 stands where an object with \"ZoneDetector\" belongs"});
  EXPECT_EQ(findings("[]"),
            Texts{"1:1 empty-document : a list stands where an object with \"ZoneDetector\" belongs"});
  EXPECT_EQ(findings("[{\"ZoneDetector\":{}}]"),
            Texts{"1:1 empty-document : a list stands where an object with \"ZoneDetector\" belongs"});
  EXPECT_EQ(findingsOnOneLine(R"({"type":"FeatureCollection","features":[{"type":"Feature"}]})"),
            (Texts{empty, "unknown-key type: unknown key; nothing reads it",
                   "unknown-key features: unknown key; nothing reads it"}));
}

TEST(Findings, WithoutTheTopNodeNoOptionIsRead) {
  EXPECT_EQ(
      findings(
          "{\n \"sensitivity\":1,\"EvaluationField\":{\"name\":\"f\",\"index\":0,\"Zone\":{\"name\":\"z\","
          "\"index\":9," +
          disc + "}}}"),
      (Texts{"2:2 missing-top-node : \"ZoneDetector\" is missing, without which no option is read; put "
             "\"sensitivity\" and what belongs to it into \"ZoneDetector\"",
             "2:85 out-of-range EvaluationField[0]/Zone[0]/index: 9 is outside 0 to 2"}));
}

TEST(Findings, ExclusionZonesAloneDetectNothing) {
  EXPECT_EQ(findingsOnOneLine(detector("\"ExclusionZone\":{\"name\":\"e\"," + disc + "}")),
            Texts{"no-fields ZoneDetector: no \"EvaluationField\": nothing will be detected"});
}

TEST(Findings, ANewerVersionIsAWarning) {
  const auto version = [](const std::string& text) {
    return findingsOnOneLine(detector("\"version\":\"" + text + R"(","EvaluationField":{"name":"f","index":0,
        "Zone":{"name":"z","index":0,"shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1}}})"));
  };
  EXPECT_EQ(version("1.1"), Texts());
  EXPECT_EQ(version("2.0"),
            Texts{"newer-version ZoneDetector/version: \"2.0\" is newer than 1.1, which this program reads"});
}

TEST(Findings, HeightsTheWrongWayRoundAreAWarning) {
  EXPECT_EQ(findings(zone("\"zMin\":1,\"zMax\":1," + triangle)), Texts());
  EXPECT_EQ(findingsOnOneLine(zone("\"zMin\":3,\"zMax\":2," + triangle)),
            Texts{"empty-heights " + zonePath + "/zMin: zMin 3 is above zMax 2; the zone contains nothing"});
  EXPECT_EQ(findingsOnOneLine(zone("\"zMax\":-1," + triangle)),
            Texts{"empty-heights " + zonePath +
                  "/zMax: zMin 0 (the default) is above zMax -1; the zone contains nothing"});
  EXPECT_EQ(findingsOnOneLine(zone("\"zMin\":25," + triangle)),
            Texts{"empty-heights " + zonePath +
                  "/zMin: zMin 25 is above zMax 20 (the default); the zone contains nothing"});
}

TEST(Findings, APolygonEnclosesSomething) {
  const auto found = [](const std::string& points) { return findingsOnOneLine(zone(polygon(points))); };
  EXPECT_EQ(found(R"({"x":0,"y":0},{"x":0,"y":1},{"x":1,"y":0},{"x":0,"y":0})"), Texts());
  EXPECT_EQ(found(R"({"x":0,"y":0},{"x":2,"y":2},{"x":0,"y":0})"),
            Texts{"empty-region " + zonePath + "/Polygon: only 2 distinct vertices; a polygon needs 3"});
  EXPECT_EQ(found(R"({"x":0,"y":0})"),
            Texts{"empty-region " + zonePath + "/Polygon: only 1 distinct vertex; a polygon needs 3"});
  EXPECT_EQ(
      found(R"({"x":0,"y":0},{"x":1,"y":1},{"x":3,"y":3})"),
      Texts{"empty-region " + zonePath + "/Polygon: all vertices lie on one line; the polygon is empty"});
  EXPECT_EQ(found(R"({"x":0,"y":0},{"x":2,"y":2},{"x":2,"y":0},{"x":0,"y":2})"),
            Texts{"crossing-edges " + zonePath +
                  "/Polygon: edge 0-1 (0, 0) to (2, 2) crosses edge 2-3 (2, 0) to (0, 2) at (1, 1)"});
}

TEST(Findings, ManyCrossingsAreCounted) {
  // A star of 7 corners, each edge of which crosses 4 others: 14 pairs.
  const Texts found = findingsOnOneLine(zone(
      polygon(R"({"x":10,"y":0},{"x":-9,"y":4},{"x":6,"y":-8},{"x":-2,"y":10},{"x":-2,"y":-10},{"x":6,"y":8},
                 {"x":-9,"y":-4})")));
  ASSERT_EQ(found.size(), 4U);
  EXPECT_EQ(found[3], "crossing-edges " + zonePath + "/Polygon: 11 more pairs of edges cross or touch");
}

TEST(Findings, ARectangleHasTwoOppositeCorners) {
  const auto found = [](const std::string& points) {
    return findingsOnOneLine(
        zone("\"shape\":\"rectangle\",\"Rectangle\":{\"rotation\":0,\"Point\":[" + points + "]}"));
  };
  EXPECT_EQ(found(R"({"x":0,"y":0},{"x":1,"y":1})"), Texts());
  EXPECT_EQ(found(R"({"x":0,"y":0})"),
            Texts{"too-few " + zonePath + "/Rectangle: only 1 corner; a rectangle needs 2 opposite ones"});
  EXPECT_EQ(found(R"({"x":0,"y":0},{"x":1,"y":1},{"x":1,"y":0})"),
            Texts{"too-many " + zonePath + "/Rectangle/Point[2]: 3 corners; at most 2 are allowed"});
  EXPECT_EQ(found(R"({"x":0,"y":0},{"x":0,"y":1})"),
            Texts{"empty-region " + zonePath +
                  "/Rectangle: the two corners are not opposite ones; the rectangle is empty"});
}

std::string repeated(int count, const std::function<std::string(int)>& entry) {
  std::string list;
  for (int i = 0; i < count; ++i) {
    list += (i == 0 ? "" : ",") + entry(i);
  }
  return "[" + list + "]";
}

TEST(Findings, ListsHaveTheirLimits) {
  const auto zones = [](int count) {
    return detector("\"EvaluationField\":{\"name\":\"f\",\"index\":0,\"Zone\":" +
                    repeated(count,
                             [](int i) {
                               return "{\"name\":\"z" + std::to_string(i) +
                                      "\",\"index\":" + std::to_string(i % 3) + "," + disc + "}";
                             }) +
                    "}");
  };
  EXPECT_EQ(findings(zones(3)), Texts());
  EXPECT_EQ(findingsOnOneLine(zones(4)).at(0),
            "too-many ZoneDetector/EvaluationField[0]/Zone[3]: 4 zones; at most 3 are allowed");
  const auto fields = [](int count) {
    return detector("\"EvaluationField\":" + repeated(count, [](int i) {
                      return "{\"name\":\"f" + std::to_string(i) + "\",\"index\":" + std::to_string(i % 8) +
                             ",\"Zone\":{\"name\":\"z\",\"index\":0," + disc + "}}";
                    }));
  };
  EXPECT_EQ(findings(fields(8)), Texts());
  EXPECT_EQ(findingsOnOneLine(fields(9)).at(0),
            "too-many ZoneDetector/EvaluationField[8]: 9 evaluation fields; at most 8 are allowed");
  const auto exclusions = [](int count) {
    return findingsOnOneLine(
        detector("\"EvaluationField\":{\"name\":\"f\",\"index\":0,\"Zone\":{\"name\":\"z\","
                 "\"index\":0," +
                 disc + "}},\"ExclusionZone\":" + repeated(count, [](int i) {
                   return "{\"name\":\"e" + std::to_string(i) + "\"," + disc + "}";
                 })));
  };
  EXPECT_EQ(exclusions(32), Texts());
  EXPECT_EQ(exclusions(33),
            Texts{"too-many ZoneDetector/ExclusionZone[32]: 33 exclusion zones; at most 32 are allowed"});
  const auto vertices = [](int count) {
    return findingsOnOneLine(zone("\"shape\":\"polygon\",\"Polygon\":{\"Point\":" +
                                  repeated(count,
                                           [](int i) {
                                             return "{\"x\":" + std::to_string(i) +
                                                    ",\"y\":" + std::to_string(i * i) + "}";
                                           }) +
                                  "}"));
  };
  EXPECT_EQ(vertices(16), Texts());
  EXPECT_EQ(vertices(17),
            Texts{"too-many " + zonePath + "/Polygon/Point[16]: 17 vertices; at most 16 are allowed"});
}

TEST(Findings, NamesAndIndicesAreUsedOnce) {
  const std::string other = "{\"name\":\"z\",\"index\":0," + disc + "}";
  EXPECT_EQ(findings(detector("\"EvaluationField\":{\"name\":\"f\",\"index\":0,\"Zone\":[" + other + ",\n" +
                              other + "]}")),
            (Texts{"2:9 repeated-name ZoneDetector/EvaluationField[0]/Zone[1]/name: name \"z\" is already "
                   "used in line 1",
                   "2:21 repeated-index ZoneDetector/EvaluationField[0]/Zone[1]/index: index 0 is already "
                   "used in line "
                   "1; only the later entry would be kept"}));
  const std::string field = "{\"name\":\"f\",\"index\":0,\"Zone\":" + other + "}";
  EXPECT_EQ(
      findings(detector("\"EvaluationField\":[" + field + ",\n" + field + "]")),
      (Texts{"2:9 repeated-name ZoneDetector/EvaluationField[1]/name: name \"f\" is already used in line 1",
             "2:21 repeated-index ZoneDetector/EvaluationField[1]/index: index 0 is already used in line 1; "
             "only "
             "the later entry would be kept"}));
  const std::string gate = R"({"name":"gate","first":{"x":0,"y":0},"second":{"x":1,"y":0}})";
  EXPECT_EQ(findings("{\"CounterLines\":{\"CounterLine\":[" + gate + ",\n" + gate + "]}}"),
            Texts{"2:9 repeated-line CounterLines/CounterLine[1]/name: name \"gate\" is already used in line "
                  "1; only the "
                  "later points would be kept"});
  EXPECT_EQ(
      findings(detector("\"EvaluationField\":" + field + ",\"ExclusionZone\":[{\"name\":\"e\"," + disc +
                        "},\n{\"name\":\"e\"," + disc + "}]")),
      Texts{"2:9 repeated-name ZoneDetector/ExclusionZone[1]/name: name \"e\" is already used in line 1"});
}

TEST(Findings, ACounterLineHasALengthAndAName) {
  EXPECT_EQ(
      findingsOnOneLine(line(R"("name":"","first":{"x":1,"y":2},"second":{"x":1,"y":2})")),
      (Texts{
          "empty-line CounterLines/CounterLine[0]: both ends are (1, 2); nothing is left or right of the "
          "line",
          "empty-name CounterLines/CounterLine[0]/name: the name is empty; give the line one to tell it from "
          "others"}));
}

TEST(Findings, SensorBoundZonesNeedHeightsAndAnId) {
  const auto bound = [](const std::string& id, const std::string& rest) {
    return findingsOnOneLine("{\"Zone3d\":{\"id\":\"" + id + "\",\"name\":\"z\",\"zMin\":0," + rest + disc +
                             "}}");
  };
  const std::string nil = "00000000-0000-0000-0000-000000000000";
  EXPECT_EQ(bound(nil, R"("zMax":1,"enabled":true,"Sensors":{"lidar":["a","b"]},)"), Texts());
  EXPECT_EQ(bound(nil, ""), Texts{"missing-key Zone3d[0]: \"zMax\" is missing; give a number (m)"});
  EXPECT_EQ(bound("7", "\"zMax\":1,\"enabled\":\"on\","),
            (Texts{"invalid-id Zone3d[0]/id: \"7\" is not a UUID; write 36 characters such as "
                   "00000000-0000-0000-0000-000000000000, which asks for a fresh one",
                   "wrong-type Zone3d[0]/enabled: \"on\" stands where true or false belongs"}));
}

TEST(Check, AGoodDocumentIsLoaded) {
  const CheckedDocument document = check(zone("\"zMax\":3," + triangle));
  ASSERT_TRUE(document.configuration);
  EXPECT_EQ(document.configuration->detector.getZone(0, 0)->getZMax(), 3.0);
  EXPECT_EQ(document.complaint, "");
  EXPECT_EQ(document.errors() + document.warnings(), 0U);
}

TEST(Check, AWarningDoesNotKeepADocumentFromBeingLoaded) {
  const CheckedDocument document = check(zone("\"Zmax\":3,\"zMax\":3," + triangle));
  EXPECT_TRUE(document.configuration);
  EXPECT_EQ(document.errors(), 0U);
  EXPECT_EQ(document.warnings(), 1U);
}

TEST(Check, AnErrorKeepsADocumentFromBeingLoaded) {
  const CheckedDocument document = check(zone("\"zMax\":\"3m\"," + triangle));
  EXPECT_FALSE(document.configuration);
  EXPECT_EQ(document.errors(), 1U);
  EXPECT_EQ(document.complaint, "");
}

TEST(Check, TheLibrarysComplaintIsHandedOn) {
  EXPECT_EQ(check(R"({"ZoneDetector":{"EvaluationField":{"name":"f","Zone":{}}}})").complaint,
            "No such node (index)");
  EXPECT_EQ(check("{").complaint, "JSON error in line 1, column 2: the document ends too early");
}

TEST(Check, ADocumentIsBelowTheLimit) {
  const std::string text = zone(triangle);
  EXPECT_TRUE(check(text + std::string(documentSizeLimit - 1 - text.size(), ' ')).configuration);
  for (const std::size_t size : {documentSizeLimit, documentSizeLimit + 1}) {
    const CheckedDocument document = check(text + std::string(size - text.size(), ' '));
    EXPECT_FALSE(document.configuration);
    ASSERT_EQ(document.findings.size(), 1U);
    EXPECT_EQ(document.findings[0].kind, FindingKind::TooLarge);
    EXPECT_EQ(document.findings[0].text, "the document is too large; give it fewer than 102400 bytes");
    EXPECT_EQ(document.complaint, "Input file size exceeds maximum allowable size of 102400 bytes.");
  }
}

}  // namespace
}  // namespace orvantis::toolkit
