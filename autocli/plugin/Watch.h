#pragma once

#include <string>

namespace autocli {

/// Names the plug-in that ends the process while it is loaded: by a signal, exit(), or an exception
/// from a static initialiser. The dynamic linker is then in the middle of its work, so the program
/// cannot go on: a line on standard error names the plug-in's path, and the status is the one for
/// plug-ins. When the watch is gone, signals are handled as before. Only one exists at a time.
class Watch {
 public:
  Watch();
  ~Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  /// From here on this plug-in is to blame; nobody is when `path` is empty.
  void Blame(const std::string& path);
  /// Ends the process for the plug-in that is to blame.
  [[noreturn]] void End(const std::string& reason);
};

}  // namespace autocli
