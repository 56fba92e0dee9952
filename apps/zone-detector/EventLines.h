#pragma once

#include "SessionOutput.h"

namespace orvantis::app {

struct Console;

/// Prints each event when it happens, and the summary at the end, as text or as JSON objects.
class EventLines : public SessionOutput {
 public:
  EventLines(const Console& console, bool asJson) : console_(console), asJson_(asJson) {}

  void add(const toolkit::Moment& moment, const toolkit::SessionFrame& frame) override;
  void finish(const SessionResult& result) override;

 private:
  const Console& console_;
  bool asJson_;
};

}  // namespace orvantis::app
