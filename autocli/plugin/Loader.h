#pragma once

#include <memory>
#include <string>
#include <vector>

#include "autocli/base/Fault.h"
#include "autocli/plugin/Trust.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// The folder that holds the running program, links followed. Empty when the program does not know
/// where it is.
std::string ProgramFolder();

/// The plug-in folder that belongs to the running program: ../lib/autocli/plugins, seen from the
/// program's own folder. Empty when the program does not know where it is.
std::string PluginFolder();

/// A plug-in that was found; without a name, the folder that could not be searched.
struct Plugin {
  std::string path;
  std::string name;      ///< of the file
  Trouble trouble = {};  ///< why it, or a part of it, could not be loaded
  /// What was left out because another plug-in has its name, a message each.
  std::vector<std::string> clashes = {};
};

/// Loads the plug-ins (*.so) of `folder` in byte order of their names and lets each register its
/// nodes below `root`; what one registered before it threw stays. No folder means no plug-ins. With
/// OwnersOnly, a folder or a plug-in that somebody other than root or the user could have written
/// is not touched. One that ends the process while it is loaded is named on standard error, with
/// status 3.
std::vector<Plugin> LoadPlugins(const std::string& folder,
                                const std::shared_ptr<Corvex::AutoCli::Namespace>& root,
                                Trust trust = Trust::OwnersOnly);

/// What is to be said of a plug-in in trouble: its path, the reason and the command that mends it.
std::string TroubleText(const Plugin& plugin);

/// A notice for each that is in trouble.
std::vector<Fault> FaultsOf(const std::vector<Plugin>& plugins);

}  // namespace autocli
