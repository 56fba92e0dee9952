#pragma once

#include <vector>

#include "document/FieldZones.h"
#include "session/Session.h"
#include "session/SessionSummary.h"

namespace orvantis::toolkit {
struct Moment;
}

namespace orvantis::app {

/// The results of a whole session.
struct SessionResult {
  const toolkit::SessionSummary& summary;
  const toolkit::Session& session;
  const std::vector<toolkit::FieldZone>& zones;
  const toolkit::SessionInputs& inputs;
};

/// An output of a session, such as a table or a picture.
class SessionOutput {
 public:
  SessionOutput() = default;
  SessionOutput(const SessionOutput&) = delete;
  SessionOutput& operator=(const SessionOutput&) = delete;
  virtual ~SessionOutput() = default;

  /// Takes the next frame. @throws Failure when it cannot be written
  virtual void add(const toolkit::Moment& moment, const toolkit::SessionFrame& frame) = 0;
  /// Called once, after the last frame. @throws Failure when it cannot be written
  virtual void finish(const SessionResult& result) = 0;
};

}  // namespace orvantis::app
