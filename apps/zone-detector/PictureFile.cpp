#include "PictureFile.h"

#include <filesystem>

#include "Console.h"
#include "RunCommand.h"
#include "files/AtomicFile.h"
#include "recording/TimeLine.h"

namespace orvantis::app {

void PictureFile::add(const Moment& moment, const SessionFrame& frame) {
  plot_.add(frame, moment.objectsOrNull());
}

void PictureFile::finish(const SessionResult&) {
  const auto nameOf = [](const std::string& path) { return std::filesystem::path(path).filename().string(); };
  // The title names the files of the session.
  std::string title = nameOf(options_.document);
  const Recording& recording = options_.recording;
  if (!recording.stamps.empty()) {
    title += ", " + nameOf(recording.stamps);
  } else if (!recording.sensors.empty()) {
    title += ", " + nameOf(recording.sensors);
  } else if (!recording.clouds.empty()) {
    title += ", " + nameOf(recording.clouds.front());
    title += recording.clouds.size() > 1 ? " to " + nameOf(recording.clouds.back()) : "";
  }
  title += recording.hasTracks() ? ", " + nameOf(recording.tracks) : "";
  std::string svg;
  try {
    svg = plot_.draw(title, options_.extent);
  } catch (const std::exception& error) {
    throw Failure(options_.document, error.what());
  }
  writeWhole(options_.picture, svg);
}

}  // namespace orvantis::app
