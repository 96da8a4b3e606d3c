#pragma once

#include <memory>

#include "autocli/program/Tools.h"
#include "korel/Tree.h"
#include "lab/plugin/Tree.h"
#include "platform/autocli/Declare.h"

namespace fuzz {

/// The plug-ins that the build has, for their companions.
inline const std::vector<autocli::Plugin>& Plugins() {
  static const std::vector<autocli::Plugin> plugins = {{KOREL_PLUGIN_DIR "/korel.so", "korel.so"},
                                                       {KOREL_PLUGIN_DIR "/lab.so", "lab.so"}};
  return plugins;
}

/// The commands of both plug-ins and the tools, as the program has them.
inline const autocli::Vocabulary& WholeTree() {
  static const autocli::Vocabulary vocabulary = [] {
    auto space = Corvex::AutoCli::Namespace::New();
    Corvex::Declare::RegisterTop(*space, OstrelCli::KorelNamespace::Tree());
    Corvex::Declare::RegisterTop(*space, lab::Tree());
    return autocli::Vocabulary{space, autocli::Tools(), "", autocli::Companions(Plugins())};
  }();
  return vocabulary;
}

}  // namespace fuzz
