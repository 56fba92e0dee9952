#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <filter/monitor/Stamp.h>
#include <filter/monitor/TrackedObject.h>

#include "recording/Pose.h"
#include "recording/RowReader.h"

namespace orvantis::toolkit {

enum class TracksFormat {
  Csv,    ///< with the header stamp,id,class,x,y,length,width,heading,zmin,zmax
  Kitti,  ///< KITTI tracking labels, whose camera axes are turned to the plan
};

/// The box that a row gives an object, in the frame of the site. The footprint is made of it; its vertices do
/// not tell it exactly.
struct TrackBox {
  double x = 0.0;
  double y = 0.0;
  double length = 0.0;
  double width = 0.0;
  double heading = 0.0;
};

/// The objects that a tracker reported for one stamp.
struct TrackFrame {
  filter::monitor::Stamp stamp{0};
  std::vector<filter::monitor::TrackedObject> objects;
  std::vector<TrackBox> boxes;  ///< of the objects, in the same order
};

/// Reads tracked objects from text, frame by frame, and keeps only one frame in memory. docs/command.md
/// describes both formats.
class TrackReader {
 public:
  /// @param path names the text in messages
  /// @param pose of the sensor. The rows are in the frame of the sensor, the objects are in that of the site.
  ///   The centre of a box is moved, and the box is turned on the plan; it keeps its extents and stays
  ///   upright
  /// @throws Failure when the text has a wrong header
  TrackReader(std::unique_ptr<std::istream> in, const std::string& path, TracksFormat format,
              const Pose& pose = {});

  /// The rows of the next stamp; nothing at the end of the file.
  /// @throws Failure at a bad row, with file, line, column and reason
  std::optional<TrackFrame> next();

 private:
  struct TrackObject {
    filter::monitor::TrackedObject object;
    TrackBox box;
  };
  struct Row {
    filter::monitor::Stamp stamp{0};
    std::optional<TrackObject> object;  // empty when the row says only that there was a frame
    Field id;                           // in the line that was read last
  };

  TrackObject objectOf(std::int32_t id, const TrackBox& box, double zMin, double zMax,
                       std::string_view className) const;
  std::optional<Row> readRow();
  Row csvRow() const;
  Row kittiRow() const;
  void append(Row row);

  RowReader rows_;
  TracksFormat format_;
  Pose pose_;
  std::optional<TrackFrame> frame_;  // the frame of the row that was read ahead
  std::set<std::int32_t> ids_;       // the ids in that frame
};

}  // namespace orvantis::toolkit
