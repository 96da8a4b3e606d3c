#pragma once

#include <memory>
#include <string>
#include <vector>

#include "autocli/base/Sink.h"
#include "autocli/plugin/Loader.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// Runs one command line, program name included, against the tree: one of the program's own tools
/// where the first word names it, else a command. `arguments` may be empty; a link that is named
/// like a top-level namespace implies that word. The faults of `plugins` are reported with whatever
/// comes of it. Returns the exit status: the highest that applies of 0 done, 1 the command reported
/// an error, 2 the command line was refused, 3 there are plug-in faults, 4 the command broke its
/// contract or `out` failed. Flushes both.
int Run(const std::vector<std::string>& arguments,
        const std::shared_ptr<Corvex::AutoCli::Namespace>& root, const std::vector<Plugin>& plugins,
        Sink& out, Sink& err);

/// The program: loads the plug-ins beside it and runs the command line on the standard streams.
/// No exception leaves it.
int Main(int argc, char** argv);

}  // namespace autocli
