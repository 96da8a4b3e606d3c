#include "platform/autocli/Declare.h"

namespace {
thread_local int kept = 5;
}

/// Also takes the handle away that it was given: the framework must not depend on it.
extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root) {
  if (kept++ == 5) Corvex::Declare::RegisterTop(*root, {"good", "Came from a file", {}});
  root.reset();
}
