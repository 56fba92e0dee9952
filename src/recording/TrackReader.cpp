#include "recording/TrackReader.h"

#include <chrono>
#include <cstdint>
#include <numbers>
#include <utility>

#include "text/StampText.h"

namespace orvantis::toolkit {
namespace {

using core::State;
using filter::monitor::Stamp;

constexpr std::string_view csvHeader = "stamp,id,class,x,y,length,width,heading,zmin,zmax";

}  // namespace

TrackReader::TrackObject TrackReader::objectOf(std::int32_t id, const TrackBox& box, double zMin, double zMax,
                                               std::string_view className) const {
  const double middle = 0.5 * zMin + 0.5 * zMax;
  const auto [x, y, z] = pose_(box.x, box.y, middle);
  const TrackBox placed = {x, y, box.length, box.width, pose_.heading(box.heading)};
  return {{id, State(x, y, placed.length, placed.width, placed.heading), zMin + (z - middle),
           zMax + (z - middle), std::string(className)},
          placed};
}

TrackReader::TrackReader(std::unique_ptr<std::istream> in, const std::string& path, TracksFormat format,
                         const Pose& pose)
    : rows_(std::move(in), path), format_(format), pose_(pose) {
  if (format == TracksFormat::Csv && (!rows_.next() || rows_.line() != csvHeader)) {
    const std::size_t numWords = rows_.words().size();
    const bool isKitti = numWords == 17 || numWords == 18;
    rows_.refuse({}, "the header must be " + std::string(csvHeader) +
                         (isKitti ? "; this looks like KITTI labels: --tracks-format kitti reads them" : ""));
  }
}

std::optional<TrackFrame> TrackReader::next() {
  while (std::optional<Row> row = readRow()) {
    std::optional<TrackFrame> complete;
    if (frame_ && row->stamp != frame_->stamp) {
      complete = std::exchange(frame_, std::nullopt);
      ids_.clear();
    }
    append(std::move(*row));
    if (complete) {
      return complete;
    }
  }
  return std::exchange(frame_, std::nullopt);
}

std::optional<TrackReader::Row> TrackReader::readRow() {
  while (rows_.next()) {
    if (!rows_.line().empty()) {
      return format_ == TracksFormat::Csv ? csvRow() : kittiRow();
    }
  }
  return std::nullopt;
}

TrackReader::Row TrackReader::csvRow() const {
  const std::vector<Field> f = rows_.fields(',');
  if (f.size() != 10) {
    rows_.refuse(f.back(), "the row has " + std::to_string(f.size()) + " columns instead of 10");
  }
  const Stamp stamp(rows_.nanoseconds(f[0], "stamp"));
  if (frame_ && stamp < frame_->stamp) {
    rows_.refuse(f[0], "stamp is earlier than the one before, " + toText(frame_->stamp) + " s");
  }
  const std::int32_t id = rows_.wholeNumber(f[1], "id");
  const double x = rows_.number(f[3], "x");
  const double y = rows_.number(f[4], "y");
  const double length = rows_.extent(f[5], "length");
  const double width = rows_.extent(f[6], "width");
  const double heading = rows_.number(f[7], "heading");
  const double zMin = rows_.number(f[8], "zmin");
  const double zMax = rows_.number(f[9], "zmax");
  if (zMin > zMax) {
    rows_.refuse(f[9], "zmax is below zmin");
  }
  return {stamp, objectOf(id, {x, y, length, width, heading}, zMin, zMax, f[2].text), f[1]};
}

TrackReader::Row TrackReader::kittiRow() const {
  const std::vector<Field> f = rows_.words();
  if (f.size() != 17 && f.size() != 18) {  // trackers may append a score
    rows_.refuse(f.empty() ? Field() : f.back(),
                 "the row has " + std::to_string(f.size()) + " columns instead of 17");
  }
  const std::int32_t number = rows_.wholeNumber(f[0], "frame");
  if (number < 0) {
    rows_.refuse(f[0], "frame is below zero");
  }
  const Stamp stamp = number * std::chrono::milliseconds(100);
  if (frame_ && stamp < frame_->stamp) {
    rows_.refuse(f[0], "frame is earlier than the one before, " +
                           std::to_string(frame_->stamp / std::chrono::milliseconds(100)));
  }
  const std::int32_t id = rows_.wholeNumber(f[1], "track id");
  if (f[2].text == "DontCare") {
    return {stamp, std::nullopt, f[1]};
  }
  const double height = rows_.extent(f[10], "height");
  const double width = rows_.extent(f[11], "width");
  const double length = rows_.extent(f[12], "length");
  // The camera looks along its z axis; its x axis points to the right and its y axis down. The place is the
  // middle of the bottom of the box.
  const double right = rows_.number(f[13], "x");
  const double down = rows_.number(f[14], "y");
  const double forward = rows_.number(f[15], "z");
  const double rotation = rows_.number(f[16], "rotation_y");
  const double heading = -rotation - std::numbers::pi / 2.0;
  return {stamp, objectOf(id, {forward, -right, length, width, heading}, -down, height - down, f[2].text),
          f[1]};
}

void TrackReader::append(Row row) {
  if (!frame_) {
    frame_ = TrackFrame{row.stamp, {}, {}};
  }
  if (!row.object) {
    return;
  }
  const std::int32_t id = row.object->object.id;
  if (id >= 0 && !ids_.insert(id).second) {
    rows_.refuse(row.id, "track " + std::to_string(id) + " is there twice at " + toText(row.stamp) + " s");
  }
  frame_->objects.push_back(std::move(row.object->object));
  frame_->boxes.push_back(row.object->box);
}

}  // namespace orvantis::toolkit
