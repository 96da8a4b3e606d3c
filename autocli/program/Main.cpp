#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "autocli/base/Fault.h"
#include "autocli/line/Line.h"
#include "autocli/plugin/Loader.h"
#include "autocli/program/Program.h"

namespace autocli {

using Corvex::AutoCli::Namespace;

namespace {

/// A standard stream that was closed before the program began is given to nothing, or the next file
/// that a plug-in opens would take its number and get what is meant for people.
void KeepStandardStreamsTaken() {
  for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
    // Read-only, so that writing to it fails and is noticed.
    if (fcntl(file, F_GETFD) < 0) open("/dev/null", O_RDONLY);
  }
}

int RunWithPlugins(const std::vector<std::string>& arguments) {
  FileSink out(STDOUT_FILENO);
  FileSink err(STDERR_FILENO);
  // Never taken down, node by node: the process ends and takes it along.
  static const auto& root = *new std::shared_ptr<Namespace>(Namespace::New());
  const bool hasWords = arguments.size() > 1;
  std::vector<Plugin> plugins;
  if (!hasWords || !AsksForVersionFirst({arguments.begin() + 1, arguments.end()})) {
    plugins = LoadPlugins(PluginFolder(), root);
  }
  return Run(arguments, root, plugins, out, err);
}

/// Says so without anything that could fail again, such as memory to be had.
int Fail(std::string_view message) {
  const ssize_t written = write(STDERR_FILENO, message.data(), message.size());
  static_cast<void>(written);
  return MeaningOf(FaultKind::Internal).status;
}

}  // namespace

int Main(int argc, char** argv) {
  KeepStandardStreamsTaken();
  // A file that may not grow any more is then an error of whoever writes it.
  signal(SIGXFSZ, SIG_IGN);
  try {
    return RunWithPlugins({argv, argv + argc});
  } catch (const std::bad_alloc&) {
    return Fail("error: out of memory\n");
  } catch (...) {
    return Fail("error: the program ran out of what it needs to go on\n");
  }
}

}  // namespace autocli
