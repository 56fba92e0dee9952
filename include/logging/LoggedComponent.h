#pragma once

#include <logging/Logger.h>
#include <orvantis/Api.h>

namespace orvantis {

/// Base of everything that logs: holds one Logger, a default one at first, which copies and assignments take
/// along, moves too. Nothing in it throws.
class ORVANTIS_API LoggedComponent {
 public:
  LoggedComponent() = default;
  LoggedComponent(const LoggedComponent&) = default;
  LoggedComponent(LoggedComponent&&) = default;
  LoggedComponent& operator=(const LoggedComponent&) = default;
  LoggedComponent& operator=(LoggedComponent&&) = default;
  virtual ~LoggedComponent();

  /// Not to be called while another thread uses the object, whatever else the object allows.
  virtual void setLogger(const Logger& logger);
  /// Valid as long as the object.
  virtual const Logger& getLogger() const;

 protected:
  Logger logger_;
};

}  // namespace orvantis
