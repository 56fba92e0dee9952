#pragma once

#include <string>
#include <vector>

#include "document/Check.h"

namespace orvantis::toolkit::testing {

using Texts = std::vector<std::string>;

/// Each finding as "line:column id path: text", in order.
inline Texts findings(const std::string& json) {
  Texts texts;
  for (const Finding& finding : check(json).findings) {
    texts.push_back(std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) + " " +
                    std::string(idOf(finding.kind)) + " " + finding.path + ": " + finding.text);
  }
  return texts;
}

/// Each finding as "id path: text", for documents on one line.
inline Texts findingsOnOneLine(const std::string& json) {
  Texts texts = findings(json);
  for (std::string& text : texts) {
    text.erase(0, text.find(' ') + 1);
  }
  return texts;
}

const std::string disc = R"("shape":"sector","Sector":{"minAngle":0,"maxAngle":1,"radius":1})";
const std::string triangle =
    R"("shape":"polygon","Polygon":{"Point":[{"x":0,"y":0},{"x":0,"y":1},{"x":1,"y":0}]})";

/// A document with that text in "ZoneDetector".
inline std::string detector(const std::string& entries) {
  return "{\"ZoneDetector\":{" + entries + "}}";
}

/// A document with one field of one zone, whose name and index stand before the text.
inline std::string zone(const std::string& entries) {
  return detector(R"("EvaluationField":{"name":"f","index":0,"Zone":{"name":"z","index":0,)" + entries +
                  "}}");
}
const std::string zonePath = "ZoneDetector/EvaluationField[0]/Zone[0]";

inline std::string polygon(const std::string& points) {
  return R"("shape":"polygon","Polygon":{"Point":[)" + points + "]}";
}

/// A document of one counter line.
inline std::string line(const std::string& entries) {
  return R"({"CounterLines":{"CounterLine":[{)" + entries + "}]}}";
}

}  // namespace orvantis::toolkit::testing
