#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "detector/Limits.h"
#include "document/Configuration.h"
#include "document/Finding.h"

namespace orvantis::toolkit {

/// The library refuses documents of so many bytes, and larger ones, so no more need be read.
using filter::detection::documentSizeLimit;

/// What is said of a text that is not read because of that limit.
/// @param what the text is, as the subject of a sentence
Finding tooLarge(const std::string& what);

/// What there is to say about the text of a zone document, and what it holds.
struct CheckedDocument {
  std::vector<Finding> findings;               ///< in the order of the document
  std::optional<Configuration> configuration;  ///< when no finding is an error
  std::string complaint;  ///< of the library's own check, as a host is told; empty when it has none

  std::size_t errors() const { return countOf(findings, Severity::Error); }
  std::size_t warnings() const { return countOf(findings, Severity::Warning); }
};

/// Looks a document over as an integrator would, and loads it when that loses nothing: what loading refuses
/// or drops without a word is an error; what is loaded as it stands, but hardly meant, is a warning. The text
/// may be anything. Safe to call from several threads.
CheckedDocument check(std::string_view text);

}  // namespace orvantis::toolkit
