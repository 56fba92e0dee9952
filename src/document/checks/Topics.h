#pragma once

#include <string_view>

#include "document/checks/Report.h"

namespace orvantis::toolkit {

// Checks of several keys together. Each takes an object of its kind. Values that cannot be read were reported
// before and are skipped.

/// Whether the document has zones or lines, and in the place where all of them are read.
void checkDocument(const CheckedObject& document, Report& report);
void checkDetector(const CheckedObject& detector, Report& report);
/// Heights, and the id of a zone that is bound to sensors.
void checkZone(const CheckedObject& zone, Report& report);
void checkPolygon(const CheckedObject& polygon, Report& report);
void checkRectangle(const CheckedObject& rectangle, Report& report);
void checkLine(const CheckedObject& line, Report& report);
/// The sensor's name, and whether it says where its frames come from.
void checkSensor(const CheckedObject& sensor, Report& report);

/// Whether no two entries of the list have the same name, or the same index.
void checkNames(const CheckedObject& parent, std::string_view list, FindingKind kind, Report& report);
void checkIndices(const CheckedObject& parent, std::string_view list, Report& report);

}  // namespace orvantis::toolkit
