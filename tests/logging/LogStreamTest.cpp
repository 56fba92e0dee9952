#include <cmath>
#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <logging/LogStream.h>
#include <logging/Logger.h>
#include <logging/LoggingManager.h>

#include "support/AllocationCounter.h"
#include "support/GroupingLocale.h"
#include "support/LogCapture.h"

namespace orvantis {
namespace {

using testing::AllocationCounter;
using testing::GroupingLocale;
using testing::LogCapture;
using Texts = std::vector<std::string>;

// Tells how often it was written.
struct Spy {
  int* insertions;
  friend std::ostream& operator<<(std::ostream& out, const Spy& spy) {
    ++*spy.insertions;
    return out << "spy";
  }
};

TEST(LogStream, OneStreamIsOneRecordWithItsTextUnchanged) {
  const LogCapture log;
  {
    const LogStream record = Logger().debugStream();
    record.write("a ", 1);
    record.write(", b ", 2.5, '\n');
    *record.stream() << "{} %s\tend\n";
    EXPECT_TRUE(log.records().empty()) << "emitted before the stream ended";
  }
  EXPECT_EQ(log.texts(LogLevel::Debug), Texts{"a 1, b 2.5\n{} %s\tend\n"});
  EXPECT_EQ(log.records().size(), 1U);
}

TEST(LogStream, AStreamWithoutTextIsAnEmptyRecord) {
  const LogCapture log;
  Logger().errorStream();
  EXPECT_EQ(log.texts(LogLevel::Error), Texts{""});
}

TEST(LogStream, ATextOfAnyLengthAndAnyBytesIsKept) {
  const LogCapture log;
  std::string text(1000000, 'x');
  text[10] = '\0';
  text[20] = '\xFF';
  Logger().warnStream().write(text);
  EXPECT_EQ(log.texts(LogLevel::Warning), Texts{text});
}

TEST(LogStream, NothingIsFormattedWhenTheLevelIsOff) {
  const LogCapture log(LogLevel::Warning);
  int insertions = 0;
  const LogStream off = Logger().debugStream();
  EXPECT_EQ(off.stream(), nullptr);
  off.write("never ", Spy{&insertions});
  EXPECT_EQ(insertions, 0);

  Logger().warnStream().write("once ", Spy{&insertions});
  EXPECT_EQ(insertions, 1);
  EXPECT_EQ(log.texts(LogLevel::Warning), Texts{"once spy"});
  EXPECT_EQ(log.records().size(), 1U);
}

TEST(LogStream, AStreamThatIsOffAllocatesNothing) {
  const LogCapture log(LogLevel::Error);
  const Logger named = LoggingManager::getInstance().getLogger("LogStreamTest");
  const Logger unnamed;
  const AllocationCounter allocations;
  for (const Logger* logger : {&named, &unnamed}) {
    logger->warnStream().write("a", 1, 2.0);
    logger->debugStream().write("a", 1, 2.0);
    logger->traceStream().write("a", 1, 2.0);
  }
  EXPECT_EQ(allocations.count(), 0U);
}

TEST(LogStream, ADefaultStreamIsOff) {
  const LogCapture log;
  int insertions = 0;
  {
    const LogStream off;
    EXPECT_EQ(off.stream(), nullptr);
    off.write(Spy{&insertions});
  }
  EXPECT_EQ(insertions, 0);
  EXPECT_TRUE(log.records().empty());
}

TEST(LogStream, AMovedStreamCarriesTheRecordAlong) {
  const LogCapture log;
  {
    LogStream source = Logger().traceStream();
    source.write("first");
    const LogStream target = std::move(source);
    EXPECT_EQ(source.stream(), nullptr);  // NOLINT(bugprone-use-after-move): that state is promised
    source.write("lost");
    target.write(" second");
  }
  EXPECT_EQ(log.texts(LogLevel::Trace), Texts{"first second"});
  EXPECT_EQ(log.records().size(), 1U);
}

TEST(LogStream, AMovedFromStreamEmitsNothingWhenItEndsFirst) {
  const LogCapture log;
  const auto open = [] {
    LogStream inner = Logger().traceStream();
    inner.write("in");
    LogStream moved = std::move(inner);
    return moved;
  };
  {
    const LogStream outer = open();
    EXPECT_TRUE(log.records().empty());
    outer.write(" out");
  }
  EXPECT_EQ(log.texts(LogLevel::Trace), Texts{"in out"});
}

TEST(LogStream, IsMovedButNeverCopiedOrAssigned) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<LogStream>);
  EXPECT_FALSE(std::is_copy_constructible_v<LogStream>);
  EXPECT_FALSE(std::is_copy_assignable_v<LogStream>);
  EXPECT_FALSE(std::is_move_assignable_v<LogStream>);
}

TEST(LogStream, NumbersAreWrittenInTheStreamsDefaultFormat) {
  const LogCapture log;
  Logger().traceStream().write(0.0, ' ', 1.0 / 3.0, ' ', 1e-7, ' ', 123456789.0, ' ', true, false, ' ',
                               std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(log.texts(LogLevel::Trace), Texts{"0 0.333333 1e-07 1.23457e+08 10 -9223372036854775808"});
}

TEST(LogStream, NumbersAreWrittenInTheClassicLocale) {
  const LogCapture log;
  const GroupingLocale grouping;
  Logger().traceStream().write(102400, ' ', 1234.5, ' ', true);
  EXPECT_EQ(log.texts(LogLevel::Trace), Texts{"102400 1234.5 1"});
}

TEST(LogStream, AManipulatorEndsWithItsRecord) {
  const LogCapture log;
  Logger().traceStream().write(std::hex, 255, std::boolalpha, true);
  Logger().traceStream().write(255, true);
  EXPECT_EQ(log.texts(LogLevel::Trace), (Texts{"fftrue", "2551"}));
}

}  // namespace
}  // namespace orvantis
