#include "drawing/PlanTracks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "drawing/Svg.h"
#include "text/Xml.h"

namespace orvantis::toolkit {
namespace {

constexpr std::size_t mostIds = 12;

// The first is that of tracks without a class; then a colour for each class, told apart by colour-blind
// readers.
constexpr std::array<std::string_view, 6> colours = {"#243b53", "#00629b", "#a33b00",
                                                     "#00735c", "#8a2d7c", "#6b5900"};

bool isNear(const Pixel& a, const Pixel& b, double distance) {
  return std::hypot(a.x - b.x, a.y - b.y) < distance;
}

// Beyond the end of its track where there is room, else beside it; none in a crowd.
std::string idText(std::int32_t id, const std::vector<Pixel>& path, std::string_view colour,
                   std::vector<PixelBox>& taken) {
  const Pixel& end = path.back();
  const double length = std::hypot(end.x - path.front().x, end.y - path.front().y);
  const Pixel ahead = length > 3.0
                          ? Pixel{(end.x - path.front().x) / length, (end.y - path.front().y) / length}
                          : Pixel{1.0, 0.0};
  const std::string text = std::to_string(id);
  const double width = 7.0 * static_cast<double>(text.size()) + 2.0;
  for (const double distance : {9.0, 21.0, 33.0, 45.0}) {
    for (const double aside : {0.0, 12.0, -12.0, 24.0, -24.0}) {
      const double along = distance + std::abs(ahead.x) * (width / 2.0 - 4.0);
      const PixelBox box = PixelBox::around(
          {end.x + along * ahead.x - aside * ahead.y, end.y + along * ahead.y + aside * ahead.x}, width,
          12.0);
      if (std::none_of(taken.begin(), taken.end(),
                       [&box](const PixelBox& other) { return box.overlaps(other); })) {
        const Pixel centre = box.centre();
        taken.push_back(box);
        return "<text x=\"" + px(centre.x) + "\" y=\"" + px(centre.y + 4.0) +
               "\" font-size=\"11\" text-anchor=\"middle\" fill=\"" + std::string(colour) +
               "\" stroke=\"#ffffff\" stroke-width=\"2.5\" stroke-opacity=\"0.85\" paint-order=\"stroke\">" +
               text + "</text>\n";
      }
    }
  }
  return "";
}

}  // namespace

PlanTracks::PlanTracks(const std::vector<PlanContent::Track>& tracks) : tracks_(tracks) {
  for (const PlanContent::Track& track : tracks) {
    if (std::find(classes_.begin(), classes_.end(), track.className) == classes_.end()) {
      classes_.push_back(track.className);
    }
  }
}

bool PlanTracks::hasIds() const {
  return tracks_.size() <= mostIds;
}

std::string_view PlanTracks::colourOf(const std::string& className) const {
  if (classes_.size() <= 1) {
    return colours[0];
  }
  const auto place = std::find(classes_.begin(), classes_.end(), className) - classes_.begin();
  return className.empty() ? colours[0] : colours[1 + static_cast<std::size_t>(place) % (colours.size() - 1)];
}

std::string PlanTracks::markerId(std::string_view colour) const {
  return prefix_ + "track" + std::string(colour.substr(1));
}

std::string PlanTracks::markers(const std::string& prefix) const {
  std::string text;
  std::vector<std::string_view> done;
  for (const std::string& name : classes_) {
    const std::string_view colour = colourOf(name);
    if (std::find(done.begin(), done.end(), colour) == done.end()) {
      done.push_back(colour);
      text += "<marker id=\"" + prefix + "track" + std::string(colour.substr(1)) +
              "\" viewBox=\"0 0 10 10\" refX=\"8\" refY=\"5\" markerWidth=\"9\" markerHeight=\"9\" "
              "markerUnits=\"userSpaceOnUse\" orient=\"auto\"><path d=\"M0 0L10 5L0 10z\" fill=\"" +
              std::string(colour) + "\"/></marker>\n";
    }
  }
  return text;
}

// From a dot to an arrow head. Sightings closer to each other than a pixel add nothing to see; of an object
// that stands still the dot is enough.
std::string PlanTracks::pathOf(const std::vector<Pixel>& path, std::string_view colour,
                               const std::string& title) const {
  const bool stands =
      std::all_of(path.begin(), path.end(), [&](const Pixel& p) { return isNear(p, path[0], 3.0); });
  const bool isCrowd = !hasIds();
  const std::string hover = title.empty() ? "" : "<title>" + xmlEscaped(title) + "</title>";
  std::string text;
  if (!stands) {
    std::string line = "M" + at(path.front());
    Pixel last = path.front();
    for (const Pixel& p : path) {
      if (!isNear(p, last, isCrowd ? 3.0 : 1.0)) {
        line += "L" + at(p);
        last = p;
      }
    }
    text = "<path d=\"" + line + "\" fill=\"none\" stroke=\"" + std::string(colour) + "\" stroke-width=\"" +
           (isCrowd ? "1" : "1.5") + "\" stroke-opacity=\"" + (isCrowd ? "0.35" : "0.75") +
           "\" stroke-linejoin=\"round\"" +
           (isCrowd ? "" : " marker-end=\"url(#" + markerId(colour) + ")\"") + ">" + hover + "</path>";
  }
  return text + "<circle cx=\"" + px(path.front().x) + "\" cy=\"" + px(path.front().y) + "\" r=\"" +
         (isCrowd ? "1.4" : "2.4") + "\" fill=\"" + std::string(colour) + "\">" + hover + "</circle>";
}

std::string PlanTracks::draw(const Viewport& view, std::vector<PixelBox>& taken) const {
  std::string body;
  for (const PlanContent::Track& track : tracks_) {
    const std::string title =
        (track.className.empty() ? "track" : track.className) + " " + std::to_string(track.id);
    body += pathOf(view.toPixels(track.path), colourOf(track.className), title) + "\n";
  }
  if (hasIds()) {
    for (const PlanContent::Track& track : tracks_) {
      body += idText(track.id, view.toPixels(track.path), colourOf(track.className), taken);
    }
  }
  return body;
}

std::string PlanTracks::sample(const Pixel& from, const Pixel& to, std::string_view colour) const {
  return pathOf({from, to}, colour, "");
}

}  // namespace orvantis::toolkit
