#include <fstream>
#include <set>
#include <stdexcept>
#include <string>

#include "CloudCheck.h"
#include "Words.h"

namespace orvantis::app {

// Open3D hands out points without a height, or with one that was never written, when a property is missing,
// and makes room for as many as the header says.
void checkPly(const std::string& path, std::uint64_t size) {
  constexpr int longestHeader = 1000;  // lines
  std::ifstream in(path, std::ios::binary);
  std::string line;
  std::getline(in, line);
  if (const auto magic = words(line); magic.size() != 1 || magic[0] != "ply") {
    throw std::runtime_error("does not begin with \"ply\"");
  }
  std::uint64_t vertices = 0;
  std::set<std::string, std::less<>> properties;
  std::string element;
  bool ended = false;
  for (int i = 0; i < longestHeader && !ended && std::getline(in, line); ++i) {
    const auto parts = words(line);
    if (parts.size() == 3 && parts[0] == "element") {
      element = parts[1];
      if (element == "vertex") {
        vertices = wholeNumber("the number of vertices", parts[2]);
      }
    } else if (parts.size() >= 3 && parts[0] == "property" && element == "vertex") {
      properties.emplace(parts.back());
    }
    ended = parts.size() == 1 && parts[0] == "end_header";
  }
  if (!ended) {
    throw std::runtime_error("the header has no \"end_header\"");
  }
  if (vertices == 0) {
    throw std::runtime_error("it holds no vertices");
  }
  for (const char* property : {"x", "y", "z"}) {
    if (!properties.contains(property)) {
      throw std::runtime_error("its vertices have no property \"" + std::string(property) + "\"");
    }
  }
  // Three coordinates take three bytes in the tightest of its formats.
  if (vertices > size / 3) {
    throw std::runtime_error("too short for the " + std::to_string(vertices) + " vertices of its header");
  }
}

}  // namespace orvantis::app
