#include "PictureFile.h"

#include <filesystem>

#include "Console.h"
#include "TimeLine.h"
#include "files/AtomicFile.h"

namespace orvantis::app {

void PictureFile::add(const Moment& moment, const SessionFrame& frame) {
  plot_.add(frame, moment.objectsOrNull());
}

void PictureFile::finish(const SessionResult&) {
  std::string svg;
  try {
    svg = plot_.draw(std::filesystem::path(document_).filename().string());
  } catch (const std::exception& error) {
    throw Failure(document_, error.what());
  }
  writeWhole(path_, svg);
}

}  // namespace orvantis::app
