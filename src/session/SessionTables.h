#pragma once

#include <string>
#include <utility>
#include <vector>

#include "document/FieldZones.h"
#include "session/Session.h"
#include "session/SessionSummary.h"

namespace orvantis::toolkit {

/// A session as the texts of four CSV tables. Cells for which the session has no input are empty.
class SessionTables {
 public:
  /// @param numSensorZones how many zones that are bound to sensors are followed
  explicit SessionTables(std::vector<FieldZone> zones, std::size_t numSensorZones = 0)
      : zones_(std::move(zones)), numSensorZones_(numSensorZones) {}

  /// Leaves the cell of the time that a frame took empty, so that the same recording gives the same bytes.
  void leaveOutTimings() { tellsTimings_ = false; }

  // The header row, and the rows of a frame, each with its line end.

  std::string eventHeader() const;
  std::string eventRows(const SessionFrame& frame) const;
  std::string frameHeader() const;
  /// @param file the file of its points
  std::string frameRow(const SessionFrame& frame, const std::string& file) const;

  // Whole tables, after all frames were added to the summary.

  std::string zoneTable(const SessionSummary& summary, const Session& session,
                        const SessionInputs& inputs) const;
  std::string lineTable(const Session& session) const;

 private:
  std::vector<FieldZone> zones_;
  std::size_t numSensorZones_;
  bool tellsTimings_ = true;
};

}  // namespace orvantis::toolkit
