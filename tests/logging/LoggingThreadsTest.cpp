#include <atomic>
#include <barrier>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <spdlog/sinks/null_sink.h>

#include <logging/LoggingManager.h>

#include "support/LogCapture.h"

namespace orvantis {
namespace {

using testing::LogCapture;
using testing::Record;

// Standard error would print every record of these tests; what matters is what the captured sink gets.
class LoggingThreads : public ::testing::Test {
 protected:
  void SetUp() override { ::testing::internal::CaptureStderr(); }
  void TearDown() override {
    LoggingManager::getInstance().addDefaultSink();
    ::testing::internal::GetCapturedStderr();
  }
};

std::string loggerName(int writer) {
  return std::string("thread").append(std::to_string(writer));
}

TEST_F(LoggingThreads, RecordsOfManyThreadsArriveWholeWhileSinksComeAndGo) {
  constexpr int writers = 4;
  constexpr int recordsEach = 500;
  LoggingManager& manager = LoggingManager::getInstance();
  const LogCapture log;
  std::atomic<int> running = writers;

  std::vector<std::thread> threads;
  for (int writer = 0; writer < writers; ++writer) {
    threads.emplace_back([&manager, &running, writer] {
      for (int i = 0; i < recordsEach; ++i) {
        const std::string name = loggerName(writer);
        const Logger logger = i % 2 == 0 ? manager.getLogger(name) : Logger();
        logger.traceStream().write(writer, ':', i, ':', std::string(100, static_cast<char>('a' + writer)));
      }
      --running;
    });
  }
  threads.emplace_back([&manager, &running] {
    while (running > 0) {
      const auto sink = std::make_shared<spdlog::sinks::null_sink_mt>();
      manager.addSink(sink);
      manager.removeSink(sink);
    }
  });
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&manager, &running] {
      while (running > 0) {
        manager.removeDefaultSink();
        manager.addDefaultSink();
      }
    });
  }
  threads.emplace_back([&manager, &running] {
    while (running > 0) {
      manager.setLevel(LogLevel::Trace);
      EXPECT_EQ(manager.getLevel(), LogLevel::Trace);
    }
  });
  for (std::thread& thread : threads) {
    thread.join();
  }

  std::vector<int> next(writers, 0);
  for (const Record& record : log.records()) {
    const int writer = record.text.at(0) - '0';
    ASSERT_TRUE(writer >= 0 && writer < writers) << record;
    const int i = next[static_cast<std::size_t>(writer)]++;
    std::ostringstream expected;
    expected << writer << ':' << i << ':' << std::string(100, static_cast<char>('a' + writer));
    EXPECT_EQ(record.text, expected.str());
    EXPECT_EQ(record.logger, i % 2 == 0 ? loggerName(writer) : "");
  }
  EXPECT_EQ(next, std::vector<int>(writers, recordsEach));
}

TEST_F(LoggingThreads, TheDefaultSinkIsThereOnceAfterManyPutItBack) {
  constexpr int rounds = 2000;
  constexpr int count = 3;
  LoggingManager& manager = LoggingManager::getInstance();
  std::barrier start(count + 1);
  std::barrier done(count + 1);
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < rounds; ++round) {
        start.arrive_and_wait();
        manager.addDefaultSink();
        done.arrive_and_wait();
      }
    });
  }
  for (int round = 0; round < rounds; ++round) {
    manager.removeDefaultSink();
    start.arrive_and_wait();
    done.arrive_and_wait();
    Logger().errorStream().write("once");
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  const std::string written = ::testing::internal::GetCapturedStderr();
  ::testing::internal::CaptureStderr();
  int records = 0;
  for (auto at = written.find("once"); at != std::string::npos; at = written.find("once", at + 1)) {
    ++records;
  }
  EXPECT_EQ(records, rounds);
}

TEST_F(LoggingThreads, ManyThreadsGetTheSameLoggerForOneName) {
  constexpr std::size_t count = 8;
  std::vector<Logger*> loggers(count * 100);
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < count; ++thread) {
    threads.emplace_back([&loggers, thread] {
      for (std::size_t i = 0; i < 100; ++i) {
        loggers[thread * 100 + i] =
            &LoggingManager::getInstance().getLogger("LoggingThreads." + std::to_string(i));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (std::size_t at = 0; at < loggers.size(); ++at) {
    EXPECT_EQ(loggers[at], loggers[at % 100]);
  }
  EXPECT_EQ(std::set<Logger*>(loggers.begin(), loggers.end()).size(), 100U);
}

}  // namespace
}  // namespace orvantis
