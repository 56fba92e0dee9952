#pragma once

#include <string>
#include <vector>

#include "document/Check.h"

namespace orvantis::app {

struct Console;

/// Reads and checks a zone document. The file may have any content.
/// @throws Failure when the file cannot be read
toolkit::CheckedDocument checkFile(const std::string& path);

/// Prints warnings on the error stream.
/// @param hint follows the number of errors that are not shown
/// @throws Failure with the path and the errors, when there are any
void tellFindings(const std::string& path, const std::vector<toolkit::Finding>& findings,
                  const std::string& hint, const Console& console);

/// Reads, checks and loads a zone document. Its warnings go to the error stream.
/// @throws Failure with the path and every error, when there are any
toolkit::Configuration readConfiguration(const std::string& path, const Console& console);

}  // namespace orvantis::app
