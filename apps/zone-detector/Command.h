#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace orvantis::app {

struct Console;

/// The work that the user asked for. It runs after the whole command line was read, and returns the exit
/// code.
using Task = std::function<int(const Console&)>;

/// The name of a command, its summary in one line, and its help: examples, then a description.
struct CommandText {
  std::string name;
  std::string summary;
  std::string help;
};

/// Adds a command without options to the program.
CLI::App& addCommand(CLI::App& program, const CommandText& text);

// Each adds one command with its options. If the user gives that command, reading the command line only sets
// `task`.

void addValidateCommand(CLI::App& program, Task& task);
void addShowCommand(CLI::App& program, Task& task);
void addInfoCommand(CLI::App& program, Task& task);
void addRunCommand(CLI::App& program, Task& task);
void addExplainCommand(CLI::App& program, Task& task);
void addPlotCommand(CLI::App& program, Task& task);
void addNewCommand(CLI::App& program, Task& task);
void addStudioCommand(CLI::App& program, Task& task);

}  // namespace orvantis::app
