#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvantis::toolkit {

struct LocatedNode;

/// Something in a document that the fixed check lets pass, or where it is that the fixed check complains
/// about.
struct Finding {
  std::size_t line = 0;
  std::string path;  ///< such as ZoneDetector/EvaluationField[0]/Zone[1]/Polygon; empty for the document
  std::string text;
};

/// Looks a document over as an integrator would: what is missing, out of range, repeated, misspelt, or no
/// region. In the order of the document's lines.
std::vector<Finding> lint(const LocatedNode& document);

}  // namespace orvantis::toolkit
