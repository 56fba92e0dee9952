#include "drawing/PlanTracks.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "drawing/Palette.h"
#include "drawing/PlanMarks.h"
#include "trigonometry/Length.h"

namespace orvantis::toolkit {
namespace {

constexpr std::size_t mostIds = 12;

bool isNear(const Pixel& a, const Pixel& b, double distance) {
  return trigonometry::length(a.x - b.x, a.y - b.y) < distance;
}

// The place of an id: beyond the end of its track if there is room, else beside it; nothing when there is no
// room.
std::optional<PixelBox> placeOfId(const std::vector<Pixel>& sightings, double width,
                                  const std::vector<PixelBox>& taken) {
  const Pixel& begin = sightings.front();
  const Pixel& end = sightings.back();
  const double length = trigonometry::length(end.x - begin.x, end.y - begin.y);
  const Pixel ahead =
      length > 3.0 ? Pixel{(end.x - begin.x) / length, (end.y - begin.y) / length} : Pixel{1.0, 0.0};
  for (const double distance : {9.0, 21.0, 33.0, 45.0}) {
    for (const double aside : {0.0, 12.0, -12.0, 24.0, -24.0}) {
      const double along = distance + std::abs(ahead.x) * (width / 2.0 - 4.0);
      const Pixel centre{end.x + along * ahead.x - aside * ahead.y,
                         end.y + along * ahead.y + aside * ahead.x};
      const PixelBox box = PixelBox::around(centre, width, 12.0);
      if (std::none_of(taken.begin(), taken.end(),
                       [&box](const PixelBox& other) { return box.overlaps(other); })) {
        return box;
      }
    }
  }
  return std::nullopt;
}

SvgElement idText(const PixelBox& box, const std::string& id, std::string_view colour) {
  return words({box.centre().x, box.centre().y + 4.0}, id)
      .set("font-size", 11)
      .set("text-anchor", "middle")
      .set("fill", colour)
      .set("stroke", palette::paper)
      .set("stroke-width", 2.5)
      .set("stroke-opacity", 0.85, 2)
      .set("paint-order", "stroke");
}

// Leaves out sightings that are closer to the last one than that many pixels, since they would not be
// visible.
std::string dataOf(const std::vector<Pixel>& sightings, double distance) {
  std::string data = "M" + at(sightings.front());
  Pixel last = sightings.front();
  for (const Pixel& p : sightings) {
    if (!isNear(p, last, distance)) {
      data += "L" + at(p);
      last = p;
    }
  }
  return data;
}

}  // namespace

PlanTracks::PlanTracks(const std::vector<PlanContent::Track>& tracks, std::string ids)
    : tracks_(tracks), ids_(std::move(ids)) {
  for (const PlanContent::Track& track : tracks) {
    if (places_.try_emplace(track.className, classes_.size()).second) {
      classes_.push_back(track.className);
    }
  }
}

bool PlanTracks::hasIds() const {
  return tracks_.size() <= mostIds;
}

// Classes get colours in the order in which they are first seen. A single class needs no colour of its own.
std::string_view PlanTracks::colourOf(const std::string& className) const {
  if (classes_.size() <= 1 || className.empty()) {
    return palette::trackWithoutClass;
  }
  return palette::trackClasses[places_.at(className) % palette::trackClasses.size()];
}

std::string PlanTracks::arrowHeadId(std::string_view colour) const {
  return ids_ + "track" + std::string(colour.substr(1));
}

std::vector<SvgElement> PlanTracks::arrowHeads() const {
  std::vector<SvgElement> heads;
  std::vector<std::string_view> done;
  for (const std::string& className : classes_) {
    const std::string_view colour = colourOf(className);
    if (std::find(done.begin(), done.end(), colour) == done.end()) {
      done.push_back(colour);
      heads.push_back(arrowHead(arrowHeadId(colour), colour, 9));
    }
  }
  return heads;
}

// A line from a dot to an arrow head; for an object that stands still, only the dot.
SvgElement PlanTracks::trackOf(const std::vector<Pixel>& sightings, std::string_view colour,
                               const std::string& title) const {
  const bool isCrowd = !hasIds();
  const Pixel& first = sightings.front();
  SvgElement group("g");
  if (std::any_of(sightings.begin(), sightings.end(),
                  [&first](const Pixel& p) { return !isNear(p, first, 3.0); })) {
    SvgElement way = path(dataOf(sightings, isCrowd ? 3.0 : 1.0));
    way.set("fill", "none").set("stroke", colour).set("stroke-width", isCrowd ? 1.0 : 1.5);
    way.set("stroke-opacity", isCrowd ? 0.35 : 0.75, 2).set("stroke-linejoin", "round");
    if (!isCrowd) {
      way.set("marker-end", "url(#" + arrowHeadId(colour) + ")");
    }
    group.add(way);
  }
  return group.add(circle(first, isCrowd ? 1.4 : 2.4).set("fill", colour)).addTitle(title);
}

SvgElement PlanTracks::draw(const Viewport& view, std::vector<PixelBox>& taken) const {
  SvgElement group("g");
  for (const PlanContent::Track& track : tracks_) {
    const std::string title =
        (track.className.empty() ? "track" : track.className) + " " + std::to_string(track.id);
    group.add(trackOf(view.toPixels(track.path), colourOf(track.className), title));
  }
  if (!hasIds()) {
    return group;
  }
  for (const PlanContent::Track& track : tracks_) {
    const std::string id = std::to_string(track.id);
    const double width = 7.0 * static_cast<double>(id.size()) + 2.0;
    if (const auto box = placeOfId(view.toPixels(track.path), width, taken)) {
      taken.push_back(*box);
      group.add(idText(*box, id, colourOf(track.className)));
    }
  }
  return group;
}

SvgElement PlanTracks::sample(const Pixel& from, const Pixel& to, const std::string& className) const {
  return trackOf({from, to}, colourOf(className), "");
}

}  // namespace orvantis::toolkit
