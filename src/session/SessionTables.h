#pragma once

#include <string>
#include <utility>
#include <vector>

#include "document/FieldZones.h"
#include "session/Session.h"
#include "session/SessionSummary.h"

namespace orvantis::toolkit {

/// A session as the text of four CSV tables; what a session has no input for is empty in them.
class SessionTables {
 public:
  /// @param numSensorZones those that are bound to sensors, where they are followed
  explicit SessionTables(std::vector<FieldZone> zones, std::size_t numSensorZones = 0)
      : zones_(std::move(zones)), numSensorZones_(numSensorZones) {}

  // The first row, and the rows of a frame, each with its line end.

  std::string eventHeader() const;
  std::string eventRows(const SessionFrame& frame) const;
  std::string frameHeader() const;
  /// @param file where its points came from
  std::string frameRow(const SessionFrame& frame, const std::string& file) const;

  // Whole tables, once all frames were added to the summary.

  std::string zoneTable(const SessionSummary& summary, const Session& session,
                        const SessionInputs& inputs) const;
  std::string lineTable(const Session& session) const;

 private:
  std::vector<FieldZone> zones_;
  std::size_t numSensorZones_;
};

}  // namespace orvantis::toolkit
