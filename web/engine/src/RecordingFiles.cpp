#include "RecordingFiles.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "SourceStream.h"
#include "files/Failure.h"
#include "recording/StampList.h"

namespace orvantis::engine {

using toolkit::Failure;

namespace {

// A page knows no folders: a file is found by what its path ends with.
std::string lastOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

const NamedSource& cloudAt(const std::string& path, const RecordingFiles& files) {
  for (const std::string& name : {path, lastOf(path)}) {
    const auto found = std::find_if(files.clouds.begin(), files.clouds.end(),
                                    [&](const NamedSource& cloud) { return cloud.name == name; });
    if (found != files.clouds.end()) {
      return *found;
    }
  }
  throw Failure(files.stamps->name, "names " + path + ", which was not opened with it");
}

std::unique_ptr<CloudStream> openClouds(const RecordingFiles& files, const toolkit::FrameOptions& options) {
  if (!files.stamps) {
    return std::make_unique<CloudStream>(files.clouds, std::vector<filter::monitor::Stamp>(), options);
  }
  std::vector<NamedSource> clouds;
  std::vector<filter::monitor::Stamp> stamps;
  toolkit::StampList list(streamOf(*files.stamps), files.stamps->name);
  while (const auto frame = list.next()) {
    clouds.push_back(cloudAt(frame->path, files));
    stamps.push_back(frame->stamp);
  }
  if (clouds.empty()) {
    throw Failure(files.stamps->name, "lists no frames");
  }
  return std::make_unique<CloudStream>(std::move(clouds), std::move(stamps), options);
}

}  // namespace

OpenedFiles openFiles(const RecordingFiles& files, const RecordingOptions& options) {
  auto clouds = openClouds(files, options.frames);
  std::unique_ptr<toolkit::TrackReader> tracks;
  if (files.tracks) {
    tracks = std::make_unique<toolkit::TrackReader>(streamOf(*files.tracks), files.tracks->name,
                                                    options.tracksFormat,
                                                    options.frames.pose.value_or(toolkit::Pose()));
  }
  // A list has the stamps.
  const toolkit::FrameClock clock(files.stamps ? std::nullopt : options.rate);
  CloudStream* const stream = clouds.get();
  return {toolkit::TimeLine(std::move(clouds), clock, std::move(tracks)), stream};
}

}  // namespace orvantis::engine
