#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Console.h"
#include "input/Input.h"
#include "recording/TrackReader.h"
#include "support/TemporaryFolder.h"

namespace orvantis::app {
namespace {

using testing::TemporaryFolder;

// Can be opened, but reading its beginning is an error.
const std::string unreadable = "/proc/self/mem";

TEST(BrokenTracks, AReadErrorIsNamed) {
  for (const TracksFormat format : {TracksFormat::Csv, TracksFormat::Kitti}) {
    try {
      TrackReader(openInput(unreadable), unreadable, format).next();
      ADD_FAILURE();
    } catch (const Failure& failure) {
      EXPECT_STREQ(failure.what(), "/proc/self/mem: cannot be read: Input/output error");
    }
  }
}

TEST(BrokenTracks, AFileThatCannotBeOpenedIsNamed) {
  const TemporaryFolder folder;
  const auto reasonOf = [](const std::string& path) -> std::string {
    try {
      openInput(path);
      return "";
    } catch (const Failure& failure) {
      return failure.what();
    }
  };
  EXPECT_EQ(reasonOf(folder.path("missing.csv")),
            folder.path("missing.csv") + ": cannot be read: No such file or directory");
  EXPECT_EQ(reasonOf(folder.path()), folder.path() + ": cannot be read: it is a folder");
}

const std::string csvHeader = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n";

TEST(BrokenTracks, AFileThatEndsInsideARowIsRefusedAfterTheFramesBefore) {
  const TemporaryFolder folder;
  const std::string path =
      folder.write("tracks.csv", csvHeader + "0,1,a,0,0,1,1,0,0,1\n1,1,a,0,0,1,1,0,0,1\n2,1,a,0,0,1");
  TrackReader reader(openInput(path), path, TracksFormat::Csv);
  EXPECT_EQ(reader.next()->stamp.count(), 0);
  try {
    reader.next();
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.what(), path + ":4:11: the row has 6 columns instead of 10");
  }
}

TEST(BrokenTracks, SignalsWhileItWaitsForAPipeLoseNothing) {
  const TemporaryFolder folder;
  const std::string path = folder.path("tracks");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  struct sigaction previous {};
  struct sigaction action {};
  action.sa_handler = [](int) {};  // without SA_RESTART: the read that waits fails with EINTR
  sigaction(SIGUSR1, &action, &previous);

  std::vector<TrackFrame> frames;
  std::thread reading([&] {
    TrackReader reader(openInput(path), path, TracksFormat::Csv);
    while (auto frame = reader.next()) {
      frames.push_back(std::move(*frame));
    }
  });
  constexpr int numRows = 30;
  {
    std::ofstream out(path);
    out << csvHeader;
    for (int i = 0; i < numRows; ++i) {
      out << i << ",1,a,0,0,1,1,0,0,1\n" << std::flush;
      std::this_thread::sleep_for(std::chrono::milliseconds(2));  // for the reader to come to wait
      pthread_kill(reading.native_handle(), SIGUSR1);
    }
  }
  reading.join();
  sigaction(SIGUSR1, &previous, nullptr);
  EXPECT_EQ(frames.size(), static_cast<std::size_t>(numRows));
}

}  // namespace
}  // namespace orvantis::app
