#pragma once

#include <cstddef>

namespace orvantis::filter::detection {

// The limits of an accepted document. Static assertions in Validation.cpp keep them equal to the constants of
// the public classes. They are here as well because those headers include the geometry.

/// How many bytes of a document are read; it must be shorter.
constexpr std::size_t documentSizeLimit = 102400;
/// In bytes, for the name of a field, a zone or an exclusion zone. A name has at least one byte.
constexpr std::size_t maxNameLength = 18;

constexpr int maxEvaluationFields = 8;
/// A field has at least one zone.
constexpr int maxZonesPerField = 3;
constexpr int maxExclusionZones = 32;
constexpr int maxPolygonVertices = 16;

}  // namespace orvantis::filter::detection
