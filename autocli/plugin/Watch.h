#pragma once

#include <string>

namespace autocli {

/// Names the plug-in that ends the process while it is loaded: by a signal, exit(), quick_exit(),
/// or an exception from a static initialiser. The dynamic linker is then in the middle of its work,
/// so the program cannot go on: a line on standard error names the plug-in's path, and the status
/// is the one for plug-ins. When the watch is gone, signals are handled as before, until the
/// program ends: a signal in what the plug-in has left to be done then, such as static destructors,
/// is told in the same way. Only one exists at a time.
class Watch {
 public:
  Watch();
  ~Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  /// From here on this plug-in is to blame; nobody is when `path` is empty. After each plug-in one
  /// such call belongs, which takes note of what it leaves for the end.
  void Blame(const std::string& path);
  /// Ends the process for the plug-in that is to blame.
  [[noreturn]] void End(const std::string& reason);
};

}  // namespace autocli
