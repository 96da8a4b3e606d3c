#pragma once

#include <memory>

#include "autocli/program/Tools.h"
#include "korel/Tree.h"
#include "lab/plugin/Tree.h"
#include "platform/autocli/Declare.h"

namespace fuzz {

/// The commands of both plug-ins and the tools, as the program has them.
inline const autocli::Vocabulary& WholeTree() {
  static const autocli::Vocabulary vocabulary = [] {
    auto space = Corvex::AutoCli::Namespace::New();
    Corvex::Declare::RegisterTop(*space, OstrelCli::KorelNamespace::Tree());
    Corvex::Declare::RegisterTop(*space, lab::Tree());
    return autocli::Vocabulary{space, autocli::Tools()};
  }();
  return vocabulary;
}

}  // namespace fuzz
