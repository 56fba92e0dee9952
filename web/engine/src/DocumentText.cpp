#include "DocumentText.h"

#include <utility>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "document/DocumentJson.h"
#include "drawing/Outline.h"
#include "text/JsonText.h"

namespace orvantis::engine {
namespace {

using boost::json::array;
using boost::json::object;
using filter::detection::Zone3dBase;

array outlineOf(const Zone3dBase& zone) {
  array ring;
  if (const auto shape = zone.getZone2d()) {
    for (const auto& vertex : toolkit::outline(*shape)) {
      ring.push_back(object{{"x", vertex.x()}, {"y", vertex.y()}});
    }
  }
  return ring;
}

// The content as the command tells it, and what a page needs to draw it besides.
object siteOf(const toolkit::Configuration& configuration) {
  const auto& detector = configuration.detector;
  object site = toolkit::toObject(configuration);
  site["activeField"] = detector.getEvaluationFieldIndex();
  for (auto& field : site["evaluationFields"].as_array()) {
    const int f = static_cast<int>(field.as_object()["index"].as_int64());
    for (auto& zone : field.as_object()["zones"].as_array()) {
      const int z = static_cast<int>(zone.as_object()["index"].as_int64());
      zone.as_object()["outline"] = outlineOf(*detector.getZone(f, z));
    }
  }
  std::size_t k = 0;
  for (auto& zone : site["exclusionZones"].as_array()) {
    zone.as_object()["outline"] = outlineOf(*detector.getExclusionZoneVector()[k++]);
  }
  return site;
}

object toObject(const toolkit::Finding& finding) {
  return {{"kind", toolkit::idOf(finding.kind)},
          {"severity", toolkit::wordOf(finding.severity())},
          {"line", finding.at.line},
          {"column", finding.at.column},
          {"path", finding.path},
          {"text", finding.text},
          {"excerpt", finding.excerpt}};
}

}  // namespace

std::string toJson(const toolkit::CheckedDocument& document) {
  object result;
  array findings;
  for (const toolkit::Finding& finding : document.findings) {
    findings.push_back(toObject(finding));
  }
  result["findings"] = std::move(findings);
  result["complaint"] = document.complaint;
  result["site"] = nullptr;
  if (document.configuration) {
    result["site"] = siteOf(*document.configuration);
  }
  return toolkit::toJson(result);
}

}  // namespace orvantis::engine
