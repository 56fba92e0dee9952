// What reading a recording takes: memory, and what happens when there is none.

#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "ReadRecording.h"
#include "RecordingSamples.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "recording/RecordingReader.h"
#include "support/AllocationCounter.h"
#include "support/FailingRun.h"

namespace orvantis::testing {
namespace {

// A frame like the ones before it takes no memory that is not there already, however long the recording is.
TEST(RecordingMemory, DoesNotGrowWithTheNumberOfFrames) {
  for (const char* compression : {"", "lz4", "zstd"}) {
    for (const std::size_t messagesInChunk : {0U, 1U, 3U}) {
      WrittenRecording recording{{{"/status", "std_msgs/msg/String"}, {"/points"}}, {}};
      for (std::size_t i = 0; i < 60; ++i) {
        recording.messages.push_back({i % 2, i, asCdr(floatCloud(std::vector<Point3>(100), 5))});
      }
      McapForm form;
      form.compression = compression;
      form.messagesInChunk = messagesInChunk;
      const std::string bytes = asMcap(recording, form);
      toolkit::MemorySource source(viewOf(bytes));
      toolkit::RecordingReader reader(source);
      for (int i = 0; i < 10; ++i) {
        ASSERT_TRUE(reader.next());
      }
      const AllocationCounter counter;
      for (int i = 0; i < 19; ++i) {
        ASSERT_TRUE(reader.next());
      }
      EXPECT_EQ(counter.count(), 0U) << compression << ' ' << messagesInChunk;
    }
  }
}

TEST(RecordingMemory, MayRunOutAnywhere) {
  for (const Sample& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    Outcome outcome = Outcome::Failed;
    for (std::size_t n = 0; outcome != Outcome::Done; ++n) {
      ASSERT_LT(n, 10'000U);
      outcome = runFailing(n, [&] {
        toolkit::MemorySource source(viewOf(sample.bytes));
        toolkit::RecordingReader reader(source);
        while (reader.next()) {
        }
      });
      ASSERT_NE(outcome, Outcome::DoneWithoutMemory) << n;
    }
  }
}

TEST(RecordingReaders, MayWorkAtOnce) {
  const std::vector<Sample> samples = allSamples();
  std::vector<int> wrong(4);
  std::vector<std::thread> threads;
  for (int& count : wrong) {
    threads.emplace_back([&samples, &count] {
      for (const Sample& sample : samples) {
        count += placeless(readRecording(sample.bytes).clouds) == sampleClouds() ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace
}  // namespace orvantis::testing
