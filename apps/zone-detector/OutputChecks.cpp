#include "OutputChecks.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "files/Failure.h"
#include "text/LowerCase.h"

namespace orvantis::app {
namespace {

using toolkit::Failure;
using toolkit::Recording;

std::vector<std::string> inputsOf(const std::string& document, const Recording& recording) {
  std::vector<std::string> inputs = recording.clouds;
  inputs.insert(inputs.end(), {document, recording.sensors, recording.stamps, recording.tracks});
  return inputs;
}

bool isSame(const std::filesystem::path& a, const std::filesystem::path& b) {
  std::error_code error;
  return std::filesystem::equivalent(a, b, error);
}

}  // namespace

void checkPicture(const std::string& path, const std::string& document, const Recording& recording) {
  const std::vector<std::string> inputs = inputsOf(document, recording);
  if (std::any_of(inputs.begin(), inputs.end(), [&](const auto& input) { return isSame(path, input); })) {
    throw Failure(path, "cannot be written: the picture is drawn from it");
  }
  std::error_code error;
  if (toolkit::lowerCase(std::filesystem::path(path).extension().string()) != ".svg" &&
      !std::filesystem::is_character_file(path, error)) {
    throw Failure(path,
                  "cannot be written: pictures are SVG; give a name that ends with .svg, and convert it "
                  "with a program such as rsvg-convert or a browser");
  }
}

}  // namespace orvantis::app
