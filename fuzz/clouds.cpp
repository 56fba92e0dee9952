// The command's readers of frames: any bytes are points, or a refusal that names the file and the reason, and
// the kinds that need no header give exactly the points that another way of reading gives.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "Check.h"
#include "CloudReader.h"
#include "Console.h"
#include "InputFile.h"

using orvantis::app::Cloud;
using orvantis::fuzz::InputFile;

namespace {

// Nothing when the file was refused, as it must be.
std::optional<Cloud> read(const std::string& path) {
  try {
    return orvantis::app::readCloud(path);
  } catch (const orvantis::toolkit::Failure& failure) {
    const std::string text = failure.what();
    const std::string start = path + ": cannot be read: ";
    ORVANTIS_FUZZ_CHECK(text.starts_with(start) && text.size() > start.size());
    ORVANTIS_FUZZ_CHECK(std::ranges::none_of(text, [](unsigned char c) { return c < 0x20U || c == 0x7FU; }));
    return std::nullopt;
  }
}

bool isSame(double a, double b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

void checkRecords(const InputFile& file, const std::string& bytes) {
  const std::optional<Cloud> cloud = read(file.as("frame.bin"));
  ORVANTIS_FUZZ_CHECK(cloud.has_value() == (!bytes.empty() && bytes.size() % 16 == 0));
  if (!cloud) {
    return;
  }
  ORVANTIS_FUZZ_CHECK(cloud->size() == bytes.size() / 16);
  for (std::size_t i = 0; i < cloud->size(); ++i) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      float value = 0.0F;
      std::memcpy(&value, bytes.data() + 16 * i + 4 * axis, sizeof(value));
      ORVANTIS_FUZZ_CHECK(isSame((*cloud)[i][static_cast<Eigen::Index>(axis)], value));
    }
  }
}

// The lines of a text that hold something other than a comment.
std::vector<std::string> linesWithPoints(const std::string& text) {
  std::vector<std::string> result;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    const std::size_t begin = line.find_first_not_of(" \t\r");
    if (begin != std::string::npos && line[begin] != '#') {
      result.push_back(line.substr(begin));
    }
  }
  return result;
}

void checkText(const InputFile& file, const std::string& text) {
  const std::optional<Cloud> cloud = read(file.as("frame.xyz"));
  if (!cloud) {
    return;
  }
  const std::vector<std::string> lines = linesWithPoints(text);
  ORVANTIS_FUZZ_CHECK(cloud->size() == lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const char* at = lines[i].c_str();
    for (Eigen::Index axis = 0; axis < 3; ++axis) {
      char* end = nullptr;
      ORVANTIS_FUZZ_CHECK(isSame((*cloud)[i][axis], std::strtod(at, &end)));
      at = end;
    }
  }
}

// Open3D is not instrumented: where it hands out memory that it never wrote, Valgrind shows that a decision
// here hangs on it.
void checkSize(const std::optional<Cloud>& cloud, std::size_t most) {
  if (!cloud) {
    return;
  }
  const auto numFinite = std::ranges::count_if(*cloud, [](const auto& point) { return point.allFinite(); });
  ORVANTIS_FUZZ_CHECK(cloud->size() <= most && static_cast<std::size_t>(numFinite) <= cloud->size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  static const InputFile file;
  file.write(bytes);
  checkRecords(file, bytes);
  checkText(file, bytes);
  // A byte of the compressed kind stands for at most 264, and a point has three.
  checkSize(read(file.as("frame.pcd")), 264 * size);
  checkSize(read(file.as("frame.ply")), size);
  return 0;
}
