#include "SharedFiles.h"

#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include "files/Failure.h"
#include "files/File.h"
#include "text/Text.h"

namespace orvantis::studio {
namespace {

namespace fs = std::filesystem;

const std::string tracksLink = "files/tracks";

std::string frameLink(std::size_t index) {
  return "files/frame/" + std::to_string(index);
}

// The types matter: browsers refuse modules and WebAssembly with another type.
std::string typeOf(const fs::path& path) {
  static constexpr std::array<std::pair<std::string_view, std::string_view>, 10> types = {
      {{".html", "text/html; charset=utf-8"},
       {".js", "text/javascript; charset=utf-8"},
       {".css", "text/css; charset=utf-8"},
       {".json", "application/json"},
       {".wasm", "application/wasm"},
       {".svg", "image/svg+xml"},
       {".png", "image/png"},
       {".ico", "image/x-icon"},
       {".webmanifest", "application/manifest+json"},
       {".csv", "text/csv; charset=utf-8"}}};
  const std::string ending = path.extension().string();
  for (const auto& [known, type] : types) {
    if (ending == known) {
      return std::string(type);
    }
  }
  return "application/octet-stream";
}

void add(const std::string& link, const std::string& path, SharedFiles& files) {
  toolkit::fileSize(path);  // throws when the file cannot be read
  files[link] = {path, "application/octet-stream"};
}

boost::json::object told(const std::string& link, const SharedFiles& files) {
  const std::string& path = files.at(link).path;
  return {{"name", toolkit::toUtf8(fs::path(path).filename().string())},
          {"link", link},
          {"size", toolkit::fileSize(path)}};
}

}  // namespace

SharedFiles pageFiles(const std::string& folder) {
  SharedFiles files;
  std::error_code error;
  for (fs::recursive_directory_iterator entry(folder, error);
       !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    if (!entry->is_symlink() && entry->is_regular_file()) {
      const fs::path& path = entry->path();
      files[path.lexically_relative(folder).generic_string()] = {path.string(), typeOf(path)};
    }
  }
  if (!files.contains("index.html")) {
    throw toolkit::Failure(folder, "the page is not here: there is no index.html; --page says where it is");
  }
  return files;
}

void addNamed(const NamedFiles& named, SharedFiles& files) {
  if (!named.document.empty()) {
    add(documentLink, named.document, files);
  }
  for (std::size_t i = 0; i < named.frames.size(); ++i) {
    add(frameLink(i), named.frames[i], files);
  }
  if (!named.tracks.empty()) {
    add(tracksLink, named.tracks, files);
  }
}

std::string sessionText(const NamedFiles& named, const SharedFiles& files) {
  boost::json::object session;
  session["document"] = nullptr;
  session["tracks"] = nullptr;
  if (!named.document.empty()) {
    session["document"] = told(documentLink, files);
  }
  boost::json::array& frames = session["frames"].emplace_array();
  for (std::size_t i = 0; i < named.frames.size(); ++i) {
    frames.push_back(told(frameLink(i), files));
  }
  if (!named.tracks.empty()) {
    session["tracks"] = told(tracksLink, files);
  }
  return boost::json::serialize(session);
}

std::string versionOf(const std::string& path) {
  std::error_code error;
  const auto size = fs::file_size(path, error);
  const auto written = error ? fs::file_time_type() : fs::last_write_time(path, error);
  if (error) {
    return "";
  }
  return std::to_string(size) + "-" + std::to_string(written.time_since_epoch().count());
}

}  // namespace orvantis::studio
