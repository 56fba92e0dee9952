#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <logging/LoggingManager.h>

#include "AtOnce.h"
#include "support/LogCapture.h"

namespace orvantis::testing {
namespace {

// Standard error would print every record; what matters is what the captured sink gets.
class LogLevelsAtOnce : public ::testing::Test {
 protected:
  void SetUp() override { ::testing::internal::CaptureStderr(); }
  void TearDown() override { ::testing::internal::GetCapturedStderr(); }
};

TEST_F(LogLevelsAtOnce, SwitchingThemLosesNothingThatIsOnAtEach) {
  constexpr int writers = 4;
  constexpr int recordsEach = 500;
  LoggingManager& manager = LoggingManager::getInstance();
  const LogCapture log;
  std::atomic<int> running = writers;
  atOnce(writers + 1, [&](int thread) {
    if (thread == writers) {
      for (int i = 0; running > 0; ++i) {
        manager.setLevel(i % 2 == 0 ? LogLevel::Warning : LogLevel::Trace);
      }
      return;
    }
    const Logger logger = manager.getLogger("LogLevelsAtOnce." + std::to_string(thread));
    for (int i = 0; i < recordsEach; ++i) {
      logger.errorStream().write(i);
      logger.warnStream().write(i);
      logger.debugStream().write(i);
      logger.traceStream().write(i);
    }
    --running;
  });

  std::map<std::string, std::map<LogLevel, std::vector<int>>> written;
  for (const Record& record : log.records()) {
    written[record.logger][record.level].push_back(std::stoi(record.text));
  }
  std::vector<int> all(recordsEach);
  std::iota(all.begin(), all.end(), 0);
  ASSERT_EQ(written.size(), static_cast<std::size_t>(writers));
  for (auto& [logger, levels] : written) {
    EXPECT_EQ(levels[LogLevel::Error], all) << logger;
    EXPECT_EQ(levels[LogLevel::Warning], all) << logger;
    for (const LogLevel level : {LogLevel::Debug, LogLevel::Trace}) {
      // Some may be off, but none comes twice or out of turn.
      EXPECT_TRUE(std::ranges::is_sorted(levels[level], std::ranges::less_equal())) << logger;
    }
  }
}

}  // namespace
}  // namespace orvantis::testing
