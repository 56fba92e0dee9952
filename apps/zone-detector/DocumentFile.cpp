#include "DocumentFile.h"

#include "Console.h"
#include "Input.h"
#include "text/Text.h"

namespace orvantis::app {

Configuration readConfiguration(const std::string& path) {
  const std::string text = readInput(path, documentSizeLimit);
  try {
    return loadConfiguration(text);
  } catch (const std::exception& error) {
    throw Failure(path, printable(error.what()) + " (zone-detector validate shows where)");
  }
}

}  // namespace orvantis::app
