#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <logging/LoggedComponent.h>
#include <logging/LoggingManager.h>

#include "support/LogCapture.h"

namespace orvantis {
namespace {

using testing::LogCapture;

std::string nameOf(const LoggedComponent& component) {
  const LogCapture log;
  component.getLogger().errorStream().write("who");
  return log.records().at(0).logger;
}

Logger& named(const std::string& name) {
  return LoggingManager::getInstance().getLogger(name);
}

TEST(LoggedComponent, IsBornWithADefaultLogger) {
  EXPECT_EQ(nameOf(LoggedComponent()), "");
}

TEST(LoggedComponent, WritesUnderTheLoggerThatWasSet) {
  LoggedComponent component;
  component.setLogger(named("component"));
  EXPECT_EQ(nameOf(component), "component");
}

TEST(LoggedComponent, CopiesAndAssignmentsTakeTheLoggerAlong) {
  LoggedComponent source;
  source.setLogger(named("source"));
  LoggedComponent copy(source);
  EXPECT_EQ(nameOf(copy), "source");

  LoggedComponent assigned;
  assigned.setLogger(named("old"));
  assigned = source;
  EXPECT_EQ(nameOf(assigned), "source");

  const LoggedComponent moved(std::move(copy));
  EXPECT_EQ(nameOf(moved), "source");
  LoggedComponent moveAssigned;
  moveAssigned = std::move(assigned);
  EXPECT_EQ(nameOf(moveAssigned), "source");
}

// A derived class may watch or replace its logger, also behind a reference to the base.
class Watching : public LoggedComponent {
 public:
  explicit Watching(bool& destroyed) : destroyed_(destroyed) {}
  ~Watching() override { destroyed_ = true; }
  void setLogger(const Logger& logger) override {
    ++changes;
    LoggedComponent::setLogger(logger);
  }
  const Logger& getLogger() const override { return fixed_; }
  int changes = 0;

 private:
  bool& destroyed_;
  Logger fixed_ = named("fixed");
};

TEST(LoggedComponent, ItsOperationsAndDestructorAreVirtual) {
  bool destroyed = false;
  auto derived = std::make_unique<Watching>(destroyed);
  Watching& watching = *derived;
  std::unique_ptr<LoggedComponent> base = std::move(derived);
  base->setLogger(named("other"));
  EXPECT_EQ(watching.changes, 1);
  EXPECT_EQ(nameOf(*base), "fixed");
  base.reset();
  EXPECT_TRUE(destroyed);
}

}  // namespace
}  // namespace orvantis
