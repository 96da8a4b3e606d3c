#pragma once

#include <csignal>
#include <map>
#include <string>
#include <vector>

namespace lab {

/// Keeps the signals that end a program (INT, TERM, HUP, as far as they are not ignored) waiting
/// until its end, so that what is made meanwhile can be taken down first.
class HeldSignals {
 public:
  HeldSignals();
  /// The process gets the signals that came.
  ~HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  /// Waits for the child, the first of a process group of its own. A signal that comes meanwhile
  /// ends the whole group. Returns the exit status, 128 and the signal's number when a signal ended
  /// the child, or -1.
  int WaitFor(pid_t child);
  /// As it was before, for a child.
  const sigset_t& GetMaskBefore() const { return before_; }

 private:
  sigset_t held_{};
  sigset_t before_{};
  int signal_ = 0;
};

/// The files that a program's standard output and error go to.
struct OutputFiles {
  std::string out;
  std::string err;
};

/// Runs the program with these words, its name included, and waits as long as it takes. Its
/// environment is the caller's, but for `settings`; it reads nothing. Returns as WaitFor, -1 too
/// when the program could not be run.
int RunWords(HeldSignals& signals, const std::string& program, std::vector<std::string> words,
             const std::map<std::string, std::string>& settings, const OutputFiles& files);

}  // namespace lab
