#pragma once

#include <map>
#include <string>
#include <vector>

namespace lab {

/// Runs the program of that absolute path with `arguments` cut at blanks, and no shell. With `wait`
/// it is given 60 s, and killed then; with `showOutput` it prints where the caller prints.
/// Returns the exit status, 128 and the signal's number when a signal ended it, 0 when it was not
/// waited for, and -1 when it could not be run or did not end in time.
int RunProgram(const std::string& program, const std::string& arguments, bool wait,
               bool showOutput);

/// The files that a program's standard output and error go to; empty for those of the caller.
struct OutputFiles {
  std::string out;
  std::string err;
};

/// Runs the program with these words, its name included, and waits as long as it takes. Its
/// environment is the caller's, but for `settings`; it reads nothing. Meanwhile an interrupt from
/// the terminal is for the program alone. Returns as RunProgram.
int RunWords(const std::string& program, std::vector<std::string> words,
             const std::map<std::string, std::string>& settings, const OutputFiles& files);

/// Runs the init script of the current host's trace daemon with that argument. Throws
/// KorelCtlException when it does not end with 0.
void RunTraceDaemon(const std::string& argument);

}  // namespace lab
