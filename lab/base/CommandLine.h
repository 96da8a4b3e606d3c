#pragma once

#include <string>

namespace lab {

/// The command line that this process carries out now, as the framework tells it.
struct CommandLine {
  std::string number;  ///< differs from command to command of the process; empty when not told
  std::string text;    ///< "korel datastore add --name ds1"; empty when not told
};

/// Reads AUTOCLI_LINE, "PROCESS NUMBER TEXT", which counts in the process of that number alone:
/// programs that this one starts inherit it. A process that is told nothing is one command.
CommandLine CurrentCommand();

}  // namespace lab
