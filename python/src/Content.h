#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include <filter/detection/Zone3dBase.h>

#include "document/Configuration.h"

namespace orvantis::python {

// What == asks: content, never identity. NaN is the same as NaN, so that a copy is always the same.

bool sameShape(const filter::detection::Zone* a, const filter::detection::Zone* b);
bool sameZone(const filter::detection::Zone3dBase* a, const filter::detection::Zone3dBase* b);
bool sameField(const filter::detection::ZoneDetector::EvaluationField* a,
               const filter::detection::ZoneDetector::EvaluationField* b);
bool sameLine(const filter::detection::CounterLine& a, const filter::detection::CounterLine& b);
/// Zones, lines and options; the active field too.
bool sameContent(const toolkit::Configuration& a, const toolkit::Configuration& b);

/// A copy that nobody else has, to be worked on while other threads change the original. Taken while the
/// interpreter's lock is held.
toolkit::Configuration snapshotOf(const toolkit::Configuration& configuration);

/// Puts the zones in place of the exclusion zones that are there; none of them is null.
/// @param newOne the number of a zone that was not there before: its name is checked, as the library does
/// @throws std::invalid_argument for more than 32, and for a new one whose name does not have 1 to 18 bytes
/// or
///   is that of another
void setExclusionZones(filter::detection::ZoneDetector& detector,
                       const std::vector<std::shared_ptr<filter::detection::Zone3dBase>>& zones,
                       std::optional<std::size_t> newOne);

}  // namespace orvantis::python
