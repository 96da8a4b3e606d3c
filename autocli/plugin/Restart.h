#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace autocli {

/// Sees that a plug-in which ends the program while it is loaded (an exception in a static
/// initialiser, abort(), a memory fault, exit()) does not end it for the others. The dynamic linker
/// stands in the midst of its work then, so there is no going on: the program starts anew in its
/// place, with the same arguments, and leaves the plug-in out. What was left out is handed on in a
/// variable that counts only in the process that wrote it. When the object is gone, signals are as
/// before, but for those that a plug-in took for itself. There is one at a time.
class Restart {
 public:
  /// Without `arguments`, which end with a null as main() gets them, or with more rights than the
  /// caller of the program has, nothing is done: such a plug-in ends the program.
  explicit Restart(char** arguments);
  ~Restart();
  Restart(const Restart&) = delete;
  Restart& operator=(const Restart&) = delete;

  /// Why the plug-in was left out by this process; empty when it was not.
  std::string ProblemOf(const std::string& plugin) const;

  /// From here on the plug-in is left out if the program ends. An empty name means none.
  void Blame(const std::string& plugin);

  /// Starts anew without the plug-in, with that for the reason. Aborts when that cannot be done.
  [[noreturn]] void LeaveOut(std::string problem);

 private:
  char** arguments_;
  std::string plugin_;  ///< the one that is being loaded
  std::string list_;    ///< the variable, "NAME=PID" and "/PLUG-IN/PROBLEM" for each
  std::string next_;    ///< the same with the one that is being loaded
  std::vector<char*> environment_;
};

}  // namespace autocli
