// Makes a short recording of the crossing: two seconds of a LiDAR with 32 rings that turns ten times a
// second, as PCD frames, and the tracks of everything that moves as CSV. The same bytes on every machine.

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#include "Scene.h"
#include "Trigonometry.h"

namespace {

using namespace crossing;

constexpr int frames = 20;
constexpr int rings = 32;
constexpr int columns = 900;  // one each 0.4 degrees
constexpr Vector sensor = {0.0, 0.0, 3.6};

// A number from -1000 to 1000 that looks random and is the same whenever the same beam is cast.
int noise(std::uint32_t frame, std::uint32_t ring, std::uint32_t column) {
  std::uint32_t h = frame * 0x9E3779B1U ^ ring * 0x85EBCA77U ^ column * 0xC2B2AE3DU;
  h ^= h >> 16U;
  h *= 0x7FEB352DU;
  h ^= h >> 15U;
  h *= 0x846CA68BU;
  h ^= h >> 16U;
  return static_cast<int>(h % 2001U) - 1000;
}

// Little-endian, whatever the machine.
void append(std::string& bytes, float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  for (unsigned shift = 0; shift < 32; shift += 8) {
    bytes += static_cast<char>(bits >> shift & 0xFFU);
  }
}

// Whole millimetres, which also hides what another compiler might do to the last bit.
float toMillimetres(double metres) {
  return static_cast<float>(static_cast<double>(std::llround(metres * 1000.0)) / 1000.0);
}

void appendPoint(std::string& bytes, const Scene& scene, int frame, int ring, int column) {
  const int elevation = -4600 + ring * 5200 / (rings - 1);  // -46 to +6 degrees
  const int azimuth = column * 36000 / columns;
  const Vector direction = {cosine(elevation) * cosine(azimuth), cosine(elevation) * sine(azimuth),
                            sine(elevation)};
  const auto hit = scene.cast(sensor, direction);
  if (!hit) {
    // A beam into the sky keeps its place among the others; its point is not a number.
    const float noReturn = std::bit_cast<float>(std::uint32_t{0x7FC00000U});
    append(bytes, noReturn);
    append(bytes, noReturn);
    append(bytes, noReturn);
    append(bytes, 0.0F);
    return;
  }
  const double jitter = noise(static_cast<std::uint32_t>(frame), static_cast<std::uint32_t>(ring),
                              static_cast<std::uint32_t>(column)) *
                        0.000015;
  const double distance = hit->distance + jitter;
  append(bytes, toMillimetres(sensor.x + distance * direction.x));
  append(bytes, toMillimetres(sensor.y + distance * direction.y));
  append(bytes, toMillimetres(sensor.z + distance * direction.z));
  append(bytes, toMillimetres(hit->reflectivity));
}

std::string makeFrame(int frame) {
  const Scene scene(frame);
  const std::string width = std::to_string(columns);
  const std::string height = std::to_string(rings);
  std::string bytes =
      "# .PCD v0.7 - Point Cloud Data file format\nVERSION 0.7\nFIELDS x y z intensity\nSIZE 4 4 4 4\n"
      "TYPE F F F F\nCOUNT 1 1 1 1\nWIDTH " +
      width + "\nHEIGHT " + height + "\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + std::to_string(rings * columns) +
      "\nDATA binary\n";
  for (int ring = 0; ring < rings; ++ring) {
    for (int column = 0; column < columns; ++column) {
      appendPoint(bytes, scene, frame, ring, column);
    }
  }
  return bytes;
}

std::string metres(int millimetres) {
  char text[32];
  const int size = millimetres < 0 ? -millimetres : millimetres;
  std::snprintf(text, sizeof text, "%s%d.%03d", millimetres < 0 ? "-" : "", size / 1000, size % 1000);
  return text;
}

std::string makeTracks() {
  std::string text = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n";
  for (int frame = 0; frame < frames; ++frame) {
    for (const Object& object : objects()) {
      text += std::to_string(frame / 10) + "." + std::to_string(frame % 10) + "," +
              std::to_string(object.id) + "," + object.kind + "," + metres(object.x(frame)) + "," +
              metres(object.y(frame)) + "," + metres(object.length) + "," + metres(object.width) + "," +
              object.headingText + ",0.000," + metres(object.height) + "\n";
    }
  }
  return text;
}

bool write(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
  out.close();
  if (!out) {
    std::cerr << "crossing_recording: " << path << " cannot be written\n";
  }
  return out.good();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "crossing_recording FOLDER   writes frame_00.pcd to frame_19.pcd and tracks.csv there\n";
    return 2;
  }
  const std::string folder = std::string(argv[1]) + "/";
  for (int frame = 0; frame < frames; ++frame) {
    const std::string number = std::to_string(frame);
    if (!write(folder + "frame_" + (frame < 10 ? "0" : "") + number + ".pcd", makeFrame(frame))) {
      return 1;
    }
  }
  return write(folder + "tracks.csv", makeTracks()) ? 0 : 1;
}
