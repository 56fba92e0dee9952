#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ReadRecording.h"
#include "WrittenRecording.h"

namespace orvantis::testing {

/// A small recording: four clouds on /points, one of them empty, and three messages of /status between them.
WrittenRecording mcapSample();
WrittenRecording bagSample();

/// Its clouds as they must come out; `place` is left 0.
std::vector<ReadCloud> sampleClouds();

/// The clouds without their places.
std::vector<ReadCloud> placeless(std::vector<ReadCloud> clouds);

/// A recording in each form that is read, small enough to be spoiled at every byte.
struct Sample {
  std::string name;
  std::string bytes;
  bool hasCrcs = false;    ///< a CRC or check sum covers every byte of the messages
  bool countsAll = false;  ///< something tells when a message is missing
};
std::vector<Sample> mcapSamples();
std::vector<Sample> bagSamples();
std::vector<Sample> allSamples();

}  // namespace orvantis::testing
