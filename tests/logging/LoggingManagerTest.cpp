#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <spdlog/sinks/base_sink.h>

#include <logging/LoggingManager.h>

#include "support/LogCapture.h"

namespace orvantis {
namespace {

using testing::LogCapture;
using Texts = std::vector<std::string>;

LoggingManager& manager() {
  return LoggingManager::getInstance();
}

class CountingSink : public spdlog::sinks::base_sink<std::mutex> {
 public:
  int count() const { return count_; }

 protected:
  void sink_it_(const spdlog::details::log_msg&) override { ++count_; }
  void flush_() override {}

 private:
  int count_ = 0;
};

class FailingSink : public spdlog::sinks::base_sink<std::mutex> {
 public:
  explicit FailingSink(bool throwsNumber) : throwsNumber_(throwsNumber) {}

 protected:
  void sink_it_(const spdlog::details::log_msg&) override {
    if (throwsNumber_) {
      throw 7;
    }
    throw std::runtime_error("disk full");
  }
  void flush_() override {}

 private:
  bool throwsNumber_;
};

TEST(LoggingManager, ThereIsOne) {
  EXPECT_EQ(&LoggingManager::getInstance(), &LoggingManager::getInstance());
  EXPECT_FALSE(std::is_copy_constructible_v<LoggingManager>);
  EXPECT_FALSE(std::is_copy_assignable_v<LoggingManager>);
}

TEST(LoggingManager, TheDefaultLevelIsWarning) {
  EXPECT_EQ(manager().getLevel(), LogLevel::Warning);
}

TEST(LoggingManager, OneNameIsOneLogger) {
  Logger& first = manager().getLogger("LoggingManagerTest.a");
  EXPECT_EQ(&manager().getLogger("LoggingManagerTest.a"), &first);
  EXPECT_NE(&manager().getLogger("LoggingManagerTest.b"), &first);
  EXPECT_NE(&manager().getLogger("loggingmanagertest.A"), &first);
}

TEST(LoggingManager, AReferenceStaysValidWhileThousandsOfLoggersFollow) {
  Logger& first = manager().getLogger("LoggingManagerTest.first");
  for (int i = 0; i < 5000; ++i) {
    manager().getLogger("LoggingManagerTest." + std::to_string(i));
  }
  EXPECT_EQ(&manager().getLogger("LoggingManagerTest.first"), &first);
  const LogCapture log;
  first.warnStream().write("still here");
  EXPECT_EQ(log.records().at(0).logger, "LoggingManagerTest.first");
}

TEST(LoggingManager, TheEmptyNameIsANameLikeAnother) {
  const LogCapture log;
  manager().getLogger("").warnStream().write("text");
  EXPECT_EQ(log.records().at(0).logger, "");
}

TEST(LoggingManager, ALevelChangesLoggersThatExistAlready) {
  const LogCapture log(LogLevel::Error);
  Logger& reference = manager().getLogger("LoggingManagerTest.level");
  const Logger copy = reference;
  const Logger unnamed;
  const Logger* const loggers[] = {&reference, &copy, &unnamed};
  for (const LogLevel level : {LogLevel::Trace, LogLevel::Error, LogLevel::Debug, LogLevel::Warning}) {
    manager().setLevel(level);
    EXPECT_EQ(manager().getLevel(), level);
    for (const Logger* logger : loggers) {
      EXPECT_EQ(logger->warnStream().stream() != nullptr, level >= LogLevel::Warning);
      EXPECT_EQ(logger->debugStream().stream() != nullptr, level >= LogLevel::Debug);
      EXPECT_EQ(logger->traceStream().stream() != nullptr, level >= LogLevel::Trace);
      EXPECT_NE(logger->errorStream().stream(), nullptr);
    }
  }
}

TEST(LoggingManager, ARecordThatWasBegunIsWrittenAlsoWhenItsLevelGoesOff) {
  const LogCapture log(LogLevel::Trace);
  {
    const LogStream record = Logger().traceStream();
    manager().setLevel(LogLevel::Error);
    record.write("begun");
  }
  EXPECT_EQ(log.texts(LogLevel::Trace), Texts{"begun"});
}

TEST(LoggingManager, EverySinkGetsEveryRecordUntilItIsRemoved) {
  const LogCapture quiet(LogLevel::Error);
  const auto first = std::make_shared<CountingSink>();
  const auto second = std::make_shared<CountingSink>();
  manager().addSink(first);
  Logger().errorStream().write("1");
  manager().addSink(second);
  Logger().errorStream().write("2");
  manager().removeSink(first);
  Logger().errorStream().write("3");
  manager().removeSink(second);
  Logger().errorStream().write("4");
  EXPECT_EQ(first->count(), 2);
  EXPECT_EQ(second->count(), 2);
  EXPECT_EQ(quiet.records().size(), 4U);
}

TEST(LoggingManager, ASinkReachesLoggersThatWereMadeBeforeIt) {
  Logger& logger = manager().getLogger("LoggingManagerTest.earlier");
  const LogCapture log;
  logger.warnStream().write("late sink");
  EXPECT_EQ(log.texts(LogLevel::Warning), Texts{"late sink"});
}

TEST(LoggingManager, SharesItsSinksAndLetsThemGo) {
  auto sink = std::make_shared<CountingSink>();
  const std::weak_ptr<CountingSink> watch = sink;
  manager().addSink(sink);
  manager().removeSink(sink);
  sink.reset();
  EXPECT_TRUE(watch.expired());
}

TEST(LoggingManager, NoSinkAndAnUnknownSinkAreIgnored) {
  manager().addSink(nullptr);
  manager().removeSink(nullptr);
  manager().removeSink(std::make_shared<CountingSink>());
  const LogCapture log;
  Logger().errorStream().write("text");
  EXPECT_EQ(log.texts(LogLevel::Error), Texts{"text"});
}

TEST(LoggingManager, TheDefaultSinkWritesToStandardError) {
  ::testing::internal::CaptureStderr();
  manager().getLogger("LoggingManagerTest.stderr").warnStream().write("limit of ", 18, " bytes");
  const std::string written = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(written.find("LoggingManagerTest.stderr"), std::string::npos) << written;
  EXPECT_NE(written.find("limit of 18 bytes\n"), std::string::npos) << written;
}

// What a record writes to standard error.
std::string errorOutputOf(const std::string& text) {
  ::testing::internal::CaptureStderr();
  Logger().errorStream().write(text);
  return ::testing::internal::GetCapturedStderr();
}

// Puts the default sink back, whatever the test did.
class DefaultSink : public ::testing::Test {
 protected:
  void TearDown() override { manager().addDefaultSink(); }
};

TEST_F(DefaultSink, WritesNothingWhileItIsRemovedAndTheOthersGoOn) {
  const LogCapture log;
  manager().removeDefaultSink();
  EXPECT_EQ(errorOutputOf("1"), "");
  manager().removeDefaultSink();
  EXPECT_EQ(errorOutputOf("2"), "");
  EXPECT_EQ(log.texts(LogLevel::Error), (Texts{"1", "2"}));
}

TEST_F(DefaultSink, WritesEachRecordOnceWhenItIsBackHoweverOftenThatWasAskedFor) {
  const LogCapture log;
  manager().addDefaultSink();
  manager().removeDefaultSink();
  EXPECT_EQ(errorOutputOf("removed"), "");
  manager().addDefaultSink();
  manager().addDefaultSink();
  const std::string written = errorOutputOf("back");
  EXPECT_NE(written.find("back\n"), std::string::npos) << written;
  EXPECT_EQ(written.find("back"), written.rfind("back")) << written;
  EXPECT_EQ(log.texts(LogLevel::Error), (Texts{"removed", "back"}));
}

TEST_F(DefaultSink, MayBeRemovedWithNoOtherSinkThere) {
  manager().removeDefaultSink();
  EXPECT_EQ(errorOutputOf("to nobody"), "");
  manager().addDefaultSink();
  EXPECT_NE(errorOutputOf("heard"), "");
}

TEST(LoggingManager, AFailingSinkDoesNotReachTheOneWhoLogs) {
  for (const bool throwsNumber : {false, true}) {
    const auto sink = std::make_shared<FailingSink>(throwsNumber);
    manager().addSink(sink);
    ::testing::internal::CaptureStderr();
    EXPECT_NO_THROW(Logger().errorStream().write("text"));
    ::testing::internal::GetCapturedStderr();
    manager().removeSink(sink);
  }
  const LogCapture log;
  Logger().errorStream().write("afterwards");
  EXPECT_EQ(log.texts(LogLevel::Error), Texts{"afterwards"});
}

}  // namespace
}  // namespace orvantis
