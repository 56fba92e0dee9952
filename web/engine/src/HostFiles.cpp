#include "HostFiles.h"

#include <stdexcept>
#include <string>

#include "HostSource.h"
#include "document/LocatedJson.h"
#include "text/Words.h"

namespace orvantis::engine {
namespace {

using toolkit::LocatedNode;

LocatedNode parsed(std::string_view json) {
  toolkit::LocatedDocument files = toolkit::parseLocated(json);
  if (!files.root) {
    throw std::invalid_argument("the files are not JSON");
  }
  return std::move(*files.root);
}

const std::string& valueOf(const LocatedNode& file, std::string_view key) {
  const LocatedNode* value = file.find(key);
  if (value == nullptr) {
    throw std::invalid_argument("a file has no " + std::string(key));
  }
  return value->text;
}

NamedSource fileOf(const LocatedNode& json) {
  NamedSource source;
  source.name = valueOf(json, "name");
  source.size = toolkit::wholeNumber("size", valueOf(json, "size"));
  const int number = static_cast<int>(toolkit::wholeNumber("file", valueOf(json, "file")));
  source.open = [name = source.name, number, size = source.size] {
    return std::make_unique<HostSource>(name, number, size);
  };
  return source;
}

std::optional<NamedSource> fileAt(const LocatedNode& files, std::string_view key) {
  const LocatedNode* file = files.find(key);
  return file != nullptr ? std::optional(fileOf(*file)) : std::nullopt;
}

}  // namespace

NamedSource hostFileOf(std::string_view json) {
  return fileOf(parsed(json));
}

RecordingFiles hostFilesOf(std::string_view json) {
  const LocatedNode files = parsed(json);
  RecordingFiles result;
  for (const LocatedNode* cloud : files.all("clouds")) {
    result.clouds.push_back(fileOf(*cloud));
  }
  result.stamps = fileAt(files, "stamps");
  result.tracks = fileAt(files, "tracks");
  return result;
}

}  // namespace orvantis::engine
