#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <spdlog/sinks/base_sink.h>

#include <logging/Logger.h>
#include <logging/LoggingManager.h>

#include "support/LogCapture.h"

namespace orvantis {
namespace {

using testing::LogCapture;
using testing::Record;
using Records = std::vector<Record>;

constexpr LogLevel levels[] = {LogLevel::Error, LogLevel::Warning, LogLevel::Debug, LogLevel::Trace};

LogStream openAt(const Logger& logger, LogLevel level) {
  switch (level) {
    case LogLevel::Error:
      return logger.errorStream();
    case LogLevel::Warning:
      return logger.warnStream();
    case LogLevel::Debug:
      return logger.debugStream();
    case LogLevel::Trace:
      return logger.traceStream();
  }
  return LogStream();
}

TEST(Logger, EachStreamWritesAtItsOwnLevel) {
  const LogCapture log;
  const Logger logger = LoggingManager::getInstance().getLogger("LoggerTest");
  logger.errorStream().write("e");
  logger.warnStream().write("w");
  logger.debugStream().write("d");
  logger.traceStream().write("t");
  EXPECT_EQ(log.records(), (Records{{LogLevel::Error, "LoggerTest", "e"},
                                    {LogLevel::Warning, "LoggerTest", "w"},
                                    {LogLevel::Debug, "LoggerTest", "d"},
                                    {LogLevel::Trace, "LoggerTest", "t"}}));
}

// The levels as the sink library has them, more of them than ours.
class LevelSink : public spdlog::sinks::base_sink<std::mutex> {
 public:
  const std::vector<spdlog::level::level_enum>& levels() const { return levels_; }

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override { levels_.push_back(message.level); }
  void flush_() override {}

 private:
  std::vector<spdlog::level::level_enum> levels_;
};

TEST(Logger, ASinkGetsEachLevelUnderItsOwnName) {
  const LogCapture log;
  const auto sink = std::make_shared<LevelSink>();
  LoggingManager::getInstance().addSink(sink);
  for (const LogLevel level : levels) {
    openAt(Logger(), level).write("text");
  }
  LoggingManager::getInstance().removeSink(sink);
  EXPECT_EQ(sink->levels(), (std::vector{spdlog::level::err, spdlog::level::warn, spdlog::level::debug,
                                         spdlog::level::trace}));
}

TEST(Logger, ALevelIsWrittenWhenItIsNotMoreVerboseThanTheSetOne) {
  for (const LogLevel set : levels) {
    for (const LogLevel level : levels) {
      const LogCapture log(set);
      openAt(Logger(), level).write("text");
      EXPECT_EQ(log.records().size(), level <= set ? 1U : 0U)
          << "set " << static_cast<int>(set) << ", written " << static_cast<int>(level);
      EXPECT_EQ(openAt(Logger(), level).stream() != nullptr, level <= set);
    }
  }
}

TEST(Logger, ADefaultLoggerWritesWithoutAName) {
  const LogCapture log;
  Logger().warnStream().write("nameless");
  EXPECT_EQ(log.records(), (Records{{LogLevel::Warning, "", "nameless"}}));
}

TEST(Logger, ACopyWritesUnderTheSameName) {
  const LogCapture log;
  const Logger original = LoggingManager::getInstance().getLogger("LoggerTest.original");
  const Logger copy(original);  // NOLINT(performance-unnecessary-copy-initialization): the copy is tested
  Logger assigned;
  assigned = original;
  copy.warnStream().write("copy");
  assigned.warnStream().write("assigned");
  EXPECT_EQ(log.records(), (Records{{LogLevel::Warning, "LoggerTest.original", "copy"},
                                    {LogLevel::Warning, "LoggerTest.original", "assigned"}}));
}

TEST(Logger, AssigningADefaultLoggerTakesTheNameAway) {
  const LogCapture log;
  Logger logger = LoggingManager::getInstance().getLogger("LoggerTest.named");
  logger = Logger();
  logger.warnStream().write("text");
  EXPECT_EQ(log.records(), (Records{{LogLevel::Warning, "", "text"}}));
}

}  // namespace
}  // namespace orvantis
