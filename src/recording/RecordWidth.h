#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace orvantis::toolkit {

/// How many float32 columns the records of a file may have when nothing says so: those numbers among 3, 4, 5
/// and 6 that divide its size and whose first three columns can be coordinates.
///
/// When a file has enough points, its values tell more. With the right number, each column has one quantity
/// with its own signs and sizes; with a wrong number, each column mixes several. How much the column tells
/// about sign and size (their mutual information, over a sample of the file) is compared for all periods up
/// to 16, so that records of 7 to 16 columns are not taken for shorter ones.
/// @return all plausible numbers; with more than one, the width is not known
std::vector<std::size_t> plausibleRecordWidths(std::span<const std::byte> bytes);

}  // namespace orvantis::toolkit
