// What the whole command takes for frames: `run --json`, less its start-up, against a program that reads the
// same files into one buffer, and counts in it what it knows the place of. Processor time, user and system,
// of processes of their own on one processor; the least of some rounds, by turns.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <malloc.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filter/classify/PointClassifier.h>
#include <settings/SettingsManager.h>

#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "classify/Clouds.h"
#include "classify/Sites.h"
#include "recording/Files.h"

namespace orvantis::benchmarks {
namespace {

using filter::classify::PointClassifier;
using filter::classify::PointsView;

constexpr int numFrames = 40;
constexpr std::size_t numPoints = 120000;

struct Taken {
  double milliseconds = std::numeric_limits<double>::infinity();
  long kilobytes = 0;  // resident at most
};

// Does the work in a process of its own.
Taken measured(const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    ::_exit(EXIT_FAILURE);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) {
    std::cerr << "a process could not do its work\n";
    std::exit(EXIT_FAILURE);
  }
  const auto milliseconds = [](const timeval& time) {
    return 1000.0 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1000.0;
  };
  return {milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime), usage.ru_maxrss};
}

// A program, which writes nowhere.
std::function<void()> program(std::vector<std::string> words) {
  return [words = std::move(words)]() mutable {
    std::vector<char*> arguments;
    for (std::string& word : words) {
      arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
    ::execv(arguments[0], arguments.data());
  };
}

// Reads the files into one buffer, and counts where it is told how the points lie.
std::function<void()> baseline(std::vector<std::string> paths, std::size_t size, RawLayout raw,
                               const PointClassifier* classifier) {
  return [paths = std::move(paths), size, raw, classifier] {
    std::vector<char> buffer(size);
    std::uint64_t sum = 0;
    for (const std::string& path : paths) {
      const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
      const bool isRead = ::read(file, buffer.data(), size) == static_cast<ssize_t>(size);
      ::close(file);
      if (!isRead) {
        return;
      }
      if (classifier != nullptr) {
        sum += classifier
                   ->count(PointsView<float>::interleaved(buffer.data() + raw.begin, raw.stride, numPoints))
                   .excluded;
      }
    }
    ::_exit(sum == std::numeric_limits<std::uint64_t>::max() ? EXIT_FAILURE : EXIT_SUCCESS);
  };
}

struct Row {
  std::string name;
  std::function<void()> work;
  Taken taken{};
};

void measure(std::vector<Row>& rows) {
  constexpr int rounds = 15;
  for (int round = 0; round < rounds; ++round) {
    for (Row& row : rows) {
      const Taken taken = measured(row.work);
      row.taken.milliseconds = std::min(row.taken.milliseconds, taken.milliseconds);
      row.taken.kilobytes = std::max(row.taken.kilobytes, taken.kilobytes);
    }
  }
}

class Folder {
 public:
  Folder() : path_((std::filesystem::temp_directory_path() / "command-benchmark-XXXXXX").string()) {
    if (::mkdtemp(path_.data()) == nullptr) {
      std::exit(EXIT_FAILURE);
    }
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(path_); }

  std::string path(const std::string& name) const { return (std::filesystem::path(path_) / name).string(); }
  std::string write(const std::string& name, std::string_view content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }
  std::string copy(const std::string& from, const std::string& name) const {
    std::filesystem::copy_file(from, path(name));
    return path(name);
  }

 private:
  std::string path_;
};

double perFrame(const Taken& many, const Taken& one) {
  return (many.milliseconds - one.milliseconds) / (numFrames - 1);
}

// A frame in a file. Its text is not kept: what this process has is counted as resident in a program that it
// starts.
struct Frame {
  std::string name;
  std::string path;
  std::size_t size = 0;
  RawLayout raw;
};

std::vector<Frame> writtenFrames(const Folder& folder, const Cloud& cloud) {
  std::vector<Frame> frames;
  for (const FrameText& text : everyKind(cloud)) {
    frames.push_back(
        {text.name, folder.write(text.name, text.content), text.content.size(), rawLayout(text, numPoints)});
  }
  return frames;
}

std::vector<std::string> copies(const Folder& folder, const Frame& frame) {
  std::vector<std::string> paths;
  for (int i = 0; i < numFrames; ++i) {
    paths.push_back(folder.copy(frame.path, std::to_string(i) + frame.name));
  }
  return paths;
}

// One kind of file: as many as there are frames, against one of them.
void compare(const std::string& command, const std::string& document, const Frame& frame,
             const PointClassifier& classifier) {
  const Folder folder;
  const std::vector<std::string> paths = copies(folder, frame);
  const auto run = [&](int count, const std::vector<std::string>& options) {
    std::vector<std::string> words = {command, "run", "--json", "--quiet", document};
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), paths.begin(), paths.begin() + count);
    return program(words);
  };
  const RawLayout& raw = frame.raw;
  const auto plain = [&](int count, const PointClassifier* counts) {
    return baseline({paths.begin(), paths.begin() + count}, frame.size, raw, counts);
  };
  std::vector<std::string> columns;
  if (frame.name.ends_with(".bin")) {
    columns = {"--columns", "4"};
  }
  std::vector<std::string> pose = columns;
  pose.insert(pose.end(), {"--pose", "1,2,0.5,1,2,30"});
  std::vector<Row> rows = {{"one", run(1, columns)},
                           {"run", run(numFrames, columns)},
                           {"run with a pose", run(numFrames, pose)},
                           {"bytes of one", plain(1, nullptr)},
                           {"bytes", plain(numFrames, nullptr)}};
  if (raw.stride != 0) {
    rows.push_back({"bytes and count", plain(numFrames, &classifier)});
    rows.push_back({"bytes and count of one", plain(1, &classifier)});
  }
  measure(rows);
  const double perRun = perFrame(rows[1].taken, rows[0].taken);
  const double perPose = perFrame(rows[2].taken, rows[0].taken);
  const double perBytes = perFrame(rows[4].taken, rows[3].taken);
  std::printf("%-16s %6.2f ns a point, %5.2f of bytes", frame.name.c_str(), 1e6 * perRun / numPoints,
              perRun / perBytes);
  if (raw.stride != 0) {
    const double perCount = perFrame(rows[5].taken, rows[6].taken);
    std::printf(", %5.2f of bytes and count (%.2f ns), with a pose %5.2f", perRun / perCount,
                1e6 * perCount / numPoints, perPose / perCount);
  }
  std::printf("; %.1f MB resident, a frame is %.1f MB\n", static_cast<double>(rows[1].taken.kilobytes) / 1e3,
              static_cast<double>(frame.size) / 1e6);
}

void startUp(const std::string& command, const std::string& small) {
  std::vector<Row> rows = {{"--version", program({command, "--version"})},
                           {"validate of a small document", program({command, "validate", small})}};
  measure(rows);
  for (const Row& row : rows) {
    std::printf("%-30s %5.2f ms, %.1f MB resident\n", row.name.c_str(), row.taken.milliseconds,
                static_cast<double>(row.taken.kilobytes) / 1e3);
  }
}

// The same frame again and again in a recording that is not compressed. Another process writes it, so that
// this one stays small.
std::string writtenRecording(const Folder& folder, const Cloud& cloud, int count) {
  const std::string name = std::to_string(count) + ".mcap";
  measured([&] {
    std::vector<testing::Point3> points;
    for (std::size_t i = 0; i < cloud.size(); ++i) {
      points.push_back({cloud.x[i], cloud.y[i], cloud.z[i]});
    }
    testing::WrittenRecording recording{{{"/points"}}, {}};
    for (int i = 0; i < count; ++i) {
      recording.messages.push_back(
          {0, static_cast<std::uint64_t>(i), testing::asCdr(testing::floatCloud(points, i))});
    }
    folder.write(name, testing::asMcap(recording));
    ::_exit(EXIT_SUCCESS);
  });
  return folder.path(name);
}

// A recording of many frames against one of one: what a frame more takes.
void compareRecordings(const std::string& command, const std::string& document, const Cloud& cloud,
                       const Frame& records, const PointClassifier& classifier) {
  const Folder folder;
  const std::string many = writtenRecording(folder, cloud, numFrames);
  const std::string one = writtenRecording(folder, cloud, 1);
  const std::vector<std::string> paths = copies(folder, records);
  const auto run = [&](const std::string& path, const std::vector<std::string>& options) {
    std::vector<std::string> words = {command, "run", "--json", "--quiet", document, path};
    words.insert(words.end(), options.begin(), options.end());
    return program(words);
  };
  const auto plain = [&](int count, const PointClassifier* counts) {
    return baseline({paths.begin(), paths.begin() + count}, records.size, records.raw, counts);
  };
  std::vector<Row> rows = {{"one", run(one, {})},
                           {"run", run(many, {})},
                           {"run with a pose", run(many, {"--pose", "1,2,0.5,1,2,30"})},
                           {"bytes of one", plain(1, nullptr)},
                           {"bytes", plain(numFrames, nullptr)},
                           {"bytes and count", plain(numFrames, &classifier)},
                           {"bytes and count of one", plain(1, &classifier)}};
  measure(rows);
  const double perRun = perFrame(rows[1].taken, rows[0].taken);
  const double perCount = perFrame(rows[5].taken, rows[6].taken);
  std::printf(
      "%-16s %6.2f ns a point, %5.2f of bytes, %5.2f of bytes and count (%.2f ns), with a pose %5.2f; "
      "%.1f MB resident, a frame is %.1f MB\n",
      "plain.mcap", 1e6 * perRun / numPoints, perRun / perFrame(rows[4].taken, rows[3].taken),
      perRun / perCount, 1e6 * perCount / numPoints, perFrame(rows[2].taken, rows[0].taken) / perCount,
      static_cast<double>(rows[1].taken.kilobytes) / 1e3, static_cast<double>(records.size) / 1e6);
}

int measureAll(const std::string& command, const std::string& small, const std::set<std::string>& kinds) {
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(static_cast<unsigned>(::sched_getcpu()), &one);
  ::sched_setaffinity(0, sizeof(one), &one);  // one processor: nothing is read ahead
  startUp(command, small);
  SettingsManager settings;
  site(Shapes::Mixed, mostZones).save(settings);
  std::ostringstream document;
  settings.saveStream(document, SettingsManager::JSON);
  std::istringstream text(document.str());
  SettingsManager loaded;
  loaded.loadStream(text, SettingsManager::JSON);
  filter::detection::ZoneDetector detector;  // what the command has
  detector.load(loaded);
  const Folder folder;
  const std::string path = folder.write("site.json", document.str());
  const PointClassifier classifier(detector);
  const Cloud cloud = ringCloud(numPoints);
  const std::vector<Frame> frames = writtenFrames(folder, cloud);
  ::malloc_trim(0);
  for (const Frame& frame : frames) {
    const auto isAsked = [&kinds](const std::string& name) { return kinds.empty() || kinds.contains(name); };
    if (frame.name.ends_with(".bin") && isAsked("plain.mcap")) {
      compareRecordings(command, path, cloud, frame, classifier);
    }
    if (isAsked(frame.name)) {
      compare(command, path, frame, classifier);
    }
    std::fflush(stdout);
  }
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace orvantis::benchmarks

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: command_benchmark ZONE_DETECTOR SMALL_DOCUMENT [KIND...]\n";
    return EXIT_FAILURE;
  }
  return orvantis::benchmarks::measureAll(argv[1], argv[2], {argv + 3, argv + argc});
}
