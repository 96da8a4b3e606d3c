#pragma once

#include <string>

namespace lab {

/// Runs the program of that absolute path with `arguments` cut at blanks, and no shell. With `wait`
/// it is given 60 s, and killed then; with `showOutput` it prints where the caller prints.
/// Returns the exit status, 128 and the signal's number when a signal ended it, 0 when it was not
/// waited for, and -1 when it could not be run or did not end in time.
int RunProgram(const std::string& program, const std::string& arguments, bool wait,
               bool showOutput);

/// Runs the init script of the current host's trace daemon with that argument. Throws
/// KorelCtlException when it does not end with 0.
void RunTraceDaemon(const std::string& argument);

}  // namespace lab
