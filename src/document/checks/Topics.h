#pragma once

#include <string_view>

#include "document/checks/Report.h"

namespace orvantis::toolkit {

// What no single key tells. Each takes an object of its kind; what is not readable in it has been reported.

/// Whether the document holds anything that is evaluated, and in the place where all of it is read.
void checkDocument(const Entry& document, Report& report);
void checkDetector(const Entry& detector, Report& report);
/// Heights, and the id of a zone that is bound to sensors.
void checkZone(const Entry& zone, Report& report);
void checkPolygon(const Entry& polygon, Report& report);
void checkRectangle(const Entry& rectangle, Report& report);
void checkLine(const Entry& line, Report& report);
/// Its name, and whether it says where its frames come from.
void checkSensor(const Entry& sensor, Report& report);

/// Whether no two entries of the list have the same name, or the same index.
void checkNames(const Entry& parent, std::string_view list, FindingKind kind, Report& report);
void checkIndices(const Entry& parent, std::string_view list, Report& report);

}  // namespace orvantis::toolkit
