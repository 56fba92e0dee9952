#pragma once

#include <memory>
#include <string>

#include "SharedFiles.h"

namespace orvantis::studio {

/// Serves the page and the named files on 127.0.0.1 to clients that know the link, and saves the document.
///
/// Other pages in the same browser can send requests to this machine, too. So every request must name this
/// host and port, must not come from another origin, and its path must begin with a token that only the link
/// has. Any other request is refused without a reason.
class StudioServer {
 public:
  /// @param files   the files that are served
  /// @param session the content of `session.json`
  StudioServer(SharedFiles files, std::string session);
  StudioServer(const StudioServer&) = delete;
  StudioServer& operator=(const StudioServer&) = delete;
  ~StudioServer();

  /// @param port 0 for the usual port, or any free one when that is taken
  /// @throws std::runtime_error when the port is taken
  void bind(int port);
  /// The link that the user opens. Call it after `bind`.
  std::string link() const;

  /// Serves until `stop`. Call it after `bind`.
  void run();
  /// May be called from another thread.
  void stop();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace orvantis::studio
