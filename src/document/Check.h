#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "detector/Limits.h"
#include "document/Configuration.h"
#include "document/Finding.h"

namespace orvantis::toolkit {

/// The library refuses documents of that many bytes or more, so no more bytes need to be read.
using filter::detection::documentSizeLimit;

/// The finding about a text that is not read because of that limit.
/// @param what names the text, as the subject of a sentence
Finding tooLarge(const std::string& what);

/// The findings about the text of a zone document, and its content.
struct CheckedDocument {
  std::vector<Finding> findings;               ///< in the order of the document
  std::optional<Configuration> configuration;  ///< when no finding is an error
  std::string complaint;  ///< the text of the library's own check; empty when it accepts the document

  std::size_t errors() const { return countOf(findings, Severity::Error); }
  std::size_t warnings() const { return countOf(findings, Severity::Warning); }
};

/// Checks a document, and loads it if loading loses nothing. What loading refuses, or drops silently, is an
/// error. What is loaded but is probably a mistake is a warning. The text may be anything. Safe to call from
/// several threads.
CheckedDocument check(std::string_view text);

}  // namespace orvantis::toolkit
