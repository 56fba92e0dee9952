#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvantis::studio {

/// A file that the page may ask for.
struct SharedFile {
  std::string path;  ///< on this machine
  std::string type;  ///< as HTTP names it
};

/// Every file that the server hands out, by the path of its link without the token. The list is made once, at
/// the start: no path of a request ever becomes a path of the file system.
using SharedFiles = std::map<std::string, SharedFile>;

/// What the user named.
struct NamedFiles {
  std::string document;             ///< empty: none
  std::vector<std::string> frames;  ///< and recordings
  std::string tracks;               ///< empty: none
};

/// The link of the document, which is the only one that can be written to.
inline constexpr const char* documentLink = "files/document";

/// The page: every regular file in the folder and below it. Symbolic links are left out, since they may lead
/// elsewhere.
/// @throws toolkit::Failure when the folder does not hold an index.html
SharedFiles pageFiles(const std::string& folder);

/// Adds the named files. @throws toolkit::Failure for one that is not a regular file that can be read
void addNamed(const NamedFiles& named, SharedFiles& files);

/// What the page is told about the named files, as JSON: `document`, `frames` and `tracks`, each with `name`,
/// `link` and `size`; null or an empty list where nothing was named.
std::string sessionText(const NamedFiles& named, const SharedFiles& files);

/// Changes whenever the file does: from its size and the time it was last written. Empty when it cannot be
/// found.
std::string versionOf(const std::string& path);

}  // namespace orvantis::studio
