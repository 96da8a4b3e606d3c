#include "korel/Tree.h"

extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root) {
  Corvex::Declare::RegisterTop(*root, OstrelCli::KorelNamespace::Tree());
}
