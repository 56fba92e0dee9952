// `zone-detector studio` reads the command line and starts this program. It is a separate program because the
// HTTP library needs TLS libraries, and loading them would take longer than the work of the other commands.

#include <array>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <unistd.h>

#include "SharedFiles.h"
#include "StudioServer.h"
#include "input/Interrupt.h"

namespace {

using namespace orvantis::studio;

// Opens the browser in the background and ignores its output, because the link is printed as well.
void openBrowser(std::string link) {
  std::string program = "xdg-open";
  const std::array<char*, 3> words = {program.data(), link.data(), nullptr};
  posix_spawn_file_actions_t actions{};
  ::posix_spawn_file_actions_init(&actions);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
  }
  pid_t child = 0;
  ::posix_spawnp(&child, program.c_str(), &actions, nullptr, words.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
}

void waitForSignal() {
  while (orvantis::toolkit::Interrupt::signal() == 0) {
    pollfd wait{orvantis::toolkit::Interrupt::descriptor(), POLLIN, 0};
    ::poll(&wait, 1, -1);
  }
}

// The words are PAGE PORT BROWSER DOCUMENT TRACKS FRAMES... BROWSER is 1 or 0, and any of the others may be
// empty.
int serve(std::span<char*> words) {
  constexpr std::size_t firstFrame = 6;
  if (words.size() < firstFrame) {
    std::cerr << "zone-detector-studio is started by: zone-detector studio\n";
    return 2;
  }
  const NamedFiles named{words[4], {words.begin() + firstFrame, words.end()}, words[5]};
  SharedFiles files = pageFiles(words[1]);
  addNamed(named, files);
  const std::string session = sessionText(named, files);
  StudioServer server(std::move(files), session);
  server.bind(std::atoi(words[2]));

  const orvantis::toolkit::Interrupt interrupt;
  std::thread serving([&server] { server.run(); });
  std::cout << server.link() << "\n" << std::flush;
  std::cerr << "Open this link in a browser; Ctrl-C ends.\n";
  if (words[3] == std::string("1")) {
    openBrowser(server.link());
  }
  waitForSignal();
  server.stop();
  serving.join();
  return orvantis::toolkit::Interrupt::exitCode();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return serve({argv, static_cast<std::size_t>(argc)});
  } catch (const std::exception& error) {
    std::cerr << "zone-detector: " << error.what() << '\n';
    return 1;
  }
}
