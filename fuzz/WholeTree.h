#pragma once

#include <memory>

#include "korel/frame/Tree.h"
#include "lab/commands/Tree.h"
#include "platform/autocli/Declare.h"

namespace fuzz {

/// The commands of both plug-ins, as the program has them.
inline const std::shared_ptr<Corvex::AutoCli::Namespace>& WholeTree() {
  static const auto root = [] {
    auto space = Corvex::AutoCli::Namespace::New();
    Corvex::Declare::RegisterTop(*space, OstrelCli::KorelNamespace::Tree());
    Corvex::Declare::RegisterTop(*space, lab::Tree());
    return space;
  }();
  return root;
}

}  // namespace fuzz
