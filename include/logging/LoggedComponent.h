#pragma once

#include <logging/Logger.h>
#include <orvantis/Api.h>

namespace orvantis {

/// Base of everything that logs: holds one Logger, which copies and assignments take along.
class ORVANTIS_API LoggedComponent {
 public:
  LoggedComponent() = default;
  LoggedComponent(const LoggedComponent&) = default;
  LoggedComponent(LoggedComponent&&) = default;
  LoggedComponent& operator=(const LoggedComponent&) = default;
  LoggedComponent& operator=(LoggedComponent&&) = default;
  virtual ~LoggedComponent();

  virtual void setLogger(const Logger& logger);
  virtual const Logger& getLogger() const;

 protected:
  Logger logger_;
};

}  // namespace orvantis
