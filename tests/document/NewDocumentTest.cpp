#include <string>

#include <gtest/gtest.h>

#include "document/Check.h"
#include "document/NewDocument.h"

namespace orvantis::toolkit {
namespace {

TEST(NewDocument, NamesTellWhatToDo) {
  EXPECT_EQ(newDocument({{-8.0, 0.0}, {24.0, 4.0}, -1.734}), R"({
  "$schema": "zone-detector.schema.json",
  "ZoneDetector": {
    "version": "1.1",
    "debounceTimeMs": 200,
    "sensitivity": 6,
    "triggerActiveLevel": "high",
    "useSoftwareAPICommand": false,
    "EvaluationField": [
      {
        "name": "Rename this field",
        "index": 0,
        "Zone": [
          {
            "name": "Move this zone",
            "index": 0,
            "shape": "polygon",
            "Polygon": {
              "Point": [
                { "x": 4, "y": 1.5 },
                { "x": 4, "y": 2.5 },
                { "x": 12, "y": 2.5 },
                { "x": 12, "y": 1.5 }
              ]
            },
            "zMin": -1.53,
            "zMax": 0.47
          }
        ]
      }
    ],
    "ExclusionZone": []
  },
  "CounterLines": {
    "CounterLine": [
      { "name": "Move this line", "first": { "x": 4, "y": 2 }, "second": { "x": 12, "y": 2 } }
    ]
  }
}
)");
}

TEST(NewDocument, CheckingItFindsNothingWhateverTheSite) {
  for (const Site& site :
       {Site{}, Site{{3.0, 3.0}, {3.0, 3.0}, 0.0}, Site{{5e6, 4e5}, {5e6, 4e5}, 120.0},
        Site{{-1e15, 1e15}, {-1e15, 1e15}, -1e15}, Site{{-1e300, -1.0}, {1e300, 1.0}, 1e300},
        Site{{1e-9, 1e-9}, {2e-9, 2e-9}, 0.0}}) {
    const std::string text = newDocument(site);
    const CheckedDocument document = check(text);
    EXPECT_TRUE(document.configuration) << text;
    for (const Finding& finding : document.findings) {
      ADD_FAILURE() << finding.path << ": " << finding.text << "\n" << text;
    }
  }
}

}  // namespace
}  // namespace orvantis::toolkit
