#pragma once

#include <logging/Logger.h>
#include <orvantis/Api.h>

namespace orvantis {

/// Base of everything that logs. It holds one Logger, a default one at first, which copies, moves and
/// assignments take over. Its own operations throw nothing. An operation of a derived class that writes a
/// record while the record's level is on may also throw what LoggingManager::getLogger throws.
class ORVANTIS_API LoggedComponent {
 public:
  LoggedComponent() = default;
  LoggedComponent(const LoggedComponent&) = default;
  LoggedComponent(LoggedComponent&&) = default;
  LoggedComponent& operator=(const LoggedComponent&) = default;
  LoggedComponent& operator=(LoggedComponent&&) = default;
  virtual ~LoggedComponent();

  /// Do not call it while another thread uses the object, even if the object's other operations are safe to
  /// call from many threads.
  virtual void setLogger(const Logger& logger);
  /// Valid as long as the object.
  virtual const Logger& getLogger() const;

 protected:
  Logger logger_;
};

}  // namespace orvantis
