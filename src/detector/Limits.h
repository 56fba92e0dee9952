#pragma once

#include <cstddef>

namespace orvantis::filter::detection {

// The limits that a document must keep to be accepted. Where a public class has a constant of the same
// meaning, the compiler checks in Validation.cpp that both are equal; here they can be had without the
// geometry that those headers bring along.

/// Bytes that are read of a document; it must be shorter.
constexpr std::size_t documentSizeLimit = 102400;
/// Bytes of the name of a field, a zone or an exclusion zone; at least one.
constexpr std::size_t maxNameLength = 18;

constexpr int maxEvaluationFields = 8;
/// At least one.
constexpr int maxZonesPerField = 3;
constexpr int maxExclusionZones = 32;
constexpr int maxPolygonVertices = 16;

}  // namespace orvantis::filter::detection
