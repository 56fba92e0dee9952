#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace orvantis::app {

struct Console;

/// What the user asked for, once every word of it is understood. Gives the exit code.
using Task = std::function<int(const Console&)>;

/// The name of a command, what it does in a line, and its help: worked examples, then what it does.
struct CommandText {
  std::string name;
  std::string summary;
  std::string help;
};

/// Adds a command without options to the program.
CLI::App& addCommand(CLI::App& program, const CommandText& text);

// Each adds one command with its options. When the user gives that command, `task` becomes what is to be
// done; nothing is done while the words are read.

void addValidateCommand(CLI::App& program, Task& task);
void addShowCommand(CLI::App& program, Task& task);
void addInfoCommand(CLI::App& program, Task& task);
void addRunCommand(CLI::App& program, Task& task);
void addExplainCommand(CLI::App& program, Task& task);
void addPlotCommand(CLI::App& program, Task& task);
void addNewCommand(CLI::App& program, Task& task);
void addStudioCommand(CLI::App& program, Task& task);

}  // namespace orvantis::app
