#include <string>
#include <vector>

#include <gtest/gtest.h>

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
