#include "platform/autocli/Declare.h"

extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root) {
  Corvex::Declare::RegisterTop(*root, {"half", "Registered before the failure", {}});
  throw std::runtime_error("no disk today");
}
