#pragma once

#include <memory>
#include <string>

#include "SharedFiles.h"

namespace orvantis::studio {

/// Serves the page and the named files on 127.0.0.1 to those who know the link, and saves the document back.
///
/// A browser runs pages of others too, and they can send requests to this machine. So every request must name
/// this host and port, come from no other origin, and begin with a token that only the link tells. What is
/// asked for otherwise is refused without a reason.
class StudioServer {
 public:
  /// @param files what is served; @param session what `session.json` says
  StudioServer(SharedFiles files, std::string session);
  StudioServer(const StudioServer&) = delete;
  StudioServer& operator=(const StudioServer&) = delete;
  ~StudioServer();

  /// @param port 0: any that is free. @throws std::runtime_error when the port is taken
  void bind(int port);
  /// What the user opens. After `bind`.
  std::string link() const;

  /// Serves until `stop`. After `bind`.
  void run();
  /// May be called from another thread.
  void stop();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace orvantis::studio
