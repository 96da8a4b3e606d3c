#include "platform/autocli/AutoCli.h"

// Takes the same name twice.
extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root) {
  for (int i = 0; i < 2; ++i) {
    root->RegisterNamespaceNode(Corvex::AutoCli::Namespace::New(), "twice");
  }
}
