#pragma once

#include <memory>
#include <string>
#include <vector>

#include "autocli/base/Fault.h"
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
  std::string name;     ///< of the file
  std::string problem;  ///< why it was refused; empty when it was loaded
};

/// Loads the plug-ins (*.so) of `folder` in byte order of their names and lets each register its
/// nodes below `root`; what one registered before it threw stays. No folder means no plug-ins. A
/// folder or a plug-in that somebody other than root or the user could have written is not touched.
/// One that ends the process while it is loaded is named on standard error, with status 3.
std::vector<Plugin> LoadPlugins(const std::string& folder,
                                const std::shared_ptr<Corvex::AutoCli::Namespace>& root);

/// One for each that was refused.
std::vector<Fault> FaultsOf(const std::vector<Plugin>& plugins);

}  // namespace autocli
