#include "drawing/PlanLegend.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "drawing/Palette.h"
#include "drawing/PlanAreas.h"
#include "drawing/PlanMarks.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

class Legend {
 public:
  Legend(const PlanContent& content, const Viewport& view, const PlanTracks& tracks)
      : content_(content),
        view_(view),
        tracks_(tracks),
        left_(marginLeft + view.box().width + 24.0),
        y_(marginTop + 8.0) {}

  PlanLegend draw() {
    addZones();
    if (!content_.lines.empty()) {
      y_ += 14.0;  // room for the mark of the left side
      add(counterLineMark({left_, y_}, {left_ + 32.0, y_}, content_.idPrefix), "Counter line, L: left side");
    }
    if (!content_.dots.empty()) {
      add(dots(palette::ground), "Scan, " + counted(content_.dots.size(), "point"));
      add(dots(palette::low), "0.25 to 0.7 m over ground");
      add(dots(palette::high), "higher");
      add(dots(palette::counted), "counted in a zone");
    }
    if (!content_.tracks.empty()) {
      addTracks();
    }
    if (!content_.crossings.empty()) {
      add(crossingMark({left_ + 15.0, y_}, "", false), "Crossing counted");
    }
    if (view_.box().contains(view_.toPixel({0.0, 0.0}))) {
      add(originMark({left_ + 15.0, y_}), "Origin (0, 0)");
    }
    return {group_, y_};
  }

 private:
  void add(const SvgElement& sign, const std::string& meaning) {
    constexpr std::size_t longest = 26;
    group_.add(sign).add(words({left_ + 42.0, y_ + 4.5}, shortened(meaning, longest)));
    y_ += 24.0;
  }

  SvgElement swatch() const { return rectangle({left_, y_ - 8.0, 30.0, 16.0}).set("rx", 2); }

  void addZones() {
    for (const PlanContent::Field& field : content_.fields) {
      SvgElement sign = swatch();
      drawAsZone(sign, palette::field(field.index));
      add(sign, "Field " + std::to_string(field.index) + ": " + field.name);
    }
    if (std::any_of(content_.areas.begin(), content_.areas.end(),
                    [](const PlanContent::Area& area) { return !area.field; })) {
      SvgElement sign = swatch();
      drawAsExclusion(sign, content_.idPrefix);
      add(sign, "Exclusion zone");
    }
  }

  SvgElement dots(std::string_view colour) const {
    std::string data;
    for (const auto& [x, y] : {std::pair(4.0, -3.0), {11.0, 2.0}, {17.0, -4.0}, {22.0, 3.0}, {27.0, -1.0}}) {
      data += "M" + at({left_ + x, y_ + y}) + "h0";
    }
    return path(data).set("stroke", colour).set("stroke-width", 2.4).set("stroke-linecap", "round");
  }

  void addTracks() {
    constexpr std::size_t mostClasses = 6;
    for (std::size_t i = 0; i < std::min(mostClasses, tracks_.classes().size()); ++i) {
      const std::string& className = tracks_.classes()[i];
      const auto number = static_cast<std::uint64_t>(
          std::count_if(content_.tracks.begin(), content_.tracks.end(),
                        [&](const PlanContent::Track& track) { return track.className == className; }));
      const std::string name = className.empty() ? "track" : shortened(className, 12);
      add(tracks_.sample({left_, y_}, {left_ + 30.0, y_}, className),
          tracks_.hasIds() ? name + ", id at its end" : name + ": " + counted(number, "track"));
    }
  }

  const PlanContent& content_;
  const Viewport& view_;
  const PlanTracks& tracks_;
  double left_;
  double y_;  // the height of the next sign
  SvgElement group_{"g"};
};

}  // namespace

PlanLegend planLegend(const PlanContent& content, const Viewport& view, const PlanTracks& tracks) {
  return Legend(content, view, tracks).draw();
}

}  // namespace orvantis::toolkit
