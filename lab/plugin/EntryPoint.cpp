#include "lab/plugin/Tree.h"

extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root) {
  Corvex::Declare::RegisterTop(*root, lab::Tree());
}
