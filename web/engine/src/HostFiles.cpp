#include "HostFiles.h"

#include <stdexcept>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>

#include "HostSource.h"

namespace orvantis::engine {
namespace {

using boost::json::value;

NamedSource fileOf(const value& json) {
  const auto& file = json.as_object();
  NamedSource source;
  source.name = std::string(file.at("name").as_string());
  source.size = file.at("size").to_number<std::uint64_t>();
  const int number = file.at("file").to_number<int>();
  source.open = [name = source.name, number, size = source.size] {
    return std::make_unique<HostSource>(name, number, size);
  };
  return source;
}

value parsed(std::string_view json) {
  return boost::json::parse(boost::json::string_view(json.data(), json.size()));
}

}  // namespace

NamedSource hostFileOf(std::string_view json) {
  return fileOf(parsed(json));
}

RecordingFiles hostFilesOf(std::string_view json) {
  const value files = parsed(json);
  RecordingFiles result;
  for (const value& cloud : files.as_object().at("clouds").as_array()) {
    result.clouds.push_back(fileOf(cloud));
  }
  const auto optionalFile = [&](const char* key) -> std::optional<NamedSource> {
    const value* file = files.as_object().if_contains(key);
    return file != nullptr ? std::optional(fileOf(*file)) : std::nullopt;
  };
  result.stamps = optionalFile("stamps");
  result.tracks = optionalFile("tracks");
  return result;
}

}  // namespace orvantis::engine
