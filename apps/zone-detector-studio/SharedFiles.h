#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvantis::studio {

/// A file that the page may ask for.
struct SharedFile {
  std::string path;  ///< on this machine
  std::string type;  ///< its media type
};

/// Every file that the server gives out, by the path of its link without the token. The list is made once, at
/// the start, so that a path in a request never becomes a path of the file system.
using SharedFiles = std::map<std::string, SharedFile>;

/// The files that the user named.
struct NamedFiles {
  std::string document;             ///< may be empty
  std::vector<std::string> frames;  ///< frames and recordings
  std::string tracks;               ///< may be empty
};

/// The link of the document, which is the only one that can be written to.
inline constexpr const char* documentLink = "files/document";

/// The page: every regular file in the folder and below it. Symbolic links are left out, since they may lead
/// elsewhere.
/// @throws toolkit::Failure when the folder has no index.html
SharedFiles pageFiles(const std::string& folder);

/// Adds the named files. @throws toolkit::Failure for one that is not a regular file that can be read
void addNamed(const NamedFiles& named, SharedFiles& files);

/// The named files as JSON for the page: `document`, `frames` and `tracks`, each with `name`, `link` and
/// `size`. What was not named is null or an empty list.
std::string sessionText(const NamedFiles& named, const SharedFiles& files);

/// A text that changes when the file changes, made from its size and the time of its last change. Empty when
/// there is no such file.
std::string versionOf(const std::string& path);

}  // namespace orvantis::studio
