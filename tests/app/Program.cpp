#include "Program.h"

#include <filesystem>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/TemporaryFolder.h"

namespace orvantis::testing {
namespace {

void redirect(const std::string& path, int descriptor) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT, 0666);
  ::dup2(file, descriptor);
  ::close(file);
}

}  // namespace

Outcome runProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const std::string& folder, const std::string& outputPath) {
  const TemporaryFolder captured;
  const std::string outPath = outputPath.empty() ? captured.path("out") : outputPath;
  const std::string errPath = captured.path("err");
  std::vector<char*> argv = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);

  const pid_t child = ::fork();
  if (child == 0) {
    redirect(outPath, STDOUT_FILENO);
    redirect(errPath, STDERR_FILENO);
    if (::chdir(folder.c_str()) == 0) {
      ::execv(program.c_str(), argv.data());
    }
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  Outcome outcome;
  outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  outcome.out = outputPath.empty() ? readAll(outPath) : "";
  outcome.err = readAll(errPath);
  return outcome;
}

}  // namespace orvantis::testing
