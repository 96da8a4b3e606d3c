#include "autocli/plugin/Loader.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "autocli/base/File.h"
#include "autocli/base/Guard.h"
#include "autocli/plugin/Elf.h"
#include "autocli/plugin/Trust.h"
#include "autocli/plugin/Watch.h"

namespace autocli {

using Corvex::AutoCli::Namespace;

namespace {

using EntryPoint = void(std::shared_ptr<Namespace>&);
constexpr const char* kEntryPoint = "AutoCli_RegisterNamespaces";

std::string FileProblem(int folder, const std::string& name) {
  File file;
  const std::string problem = OpenTrusted(folder, name, file);
  return problem.empty() ? ElfProblem(file.Number()) : problem;
}

/// Loads the file and calls its entry point. Returns why that failed; empty when it did not.
std::string Load(const std::string& path, std::shared_ptr<Namespace> root, Watch& watch) {
  // By a pointer, for it is declared to throw nothing, and static initialisers may.
  void* (*const volatile load)(const char*, int) = dlopen;
  // Never unloaded: the nodes that it registers hold its code.
  void* library = nullptr;
  const auto thrown = Guarded([&] { library = load(path.c_str(), RTLD_NOW | RTLD_LOCAL); });
  if (thrown) watch.End(*thrown);
  if (library == nullptr) return dlerror();
  auto* entryPoint = reinterpret_cast<EntryPoint*>(dlsym(library, kEntryPoint));
  if (entryPoint == nullptr) return fmt::format("no entry point {}", kEntryPoint);
  return Guarded([&] { entryPoint(root); }).value_or("");
}

/// Lists the plug-ins of the open folder, in byte order.
std::vector<std::string> PluginsIn(DIR* folder) {
  std::vector<std::string> names;
  while (const dirent* entry = readdir(folder)) {
    std::string name = entry->d_name;
    if (name.ends_with(".so")) names.push_back(std::move(name));
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace

std::string ProgramFolder() {
  std::array<char, 4096> buffer;
  const ssize_t size = readlink("/proc/self/exe", buffer.data(), buffer.size());
  if (size <= 0 || static_cast<std::size_t>(size) == buffer.size()) return "";
  const std::string_view path(buffer.data(), static_cast<std::size_t>(size));
  return std::string(path.substr(0, path.rfind('/')));
}

std::string PluginFolder() {
  const std::string folder = ProgramFolder();
  return folder.empty() ? "" : folder.substr(0, folder.rfind('/')) + "/lib/autocli/plugins";
}

std::vector<Plugin> LoadPlugins(const std::string& folder, const std::shared_ptr<Namespace>& root) {
  File file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (file.Number() < 0) {
    if (errno == ENOENT) return {};
    return {{folder, "", std::strerror(errno)}};
  }
  const std::string untrusted = TrustProblem(file.Number());
  if (!untrusted.empty()) return {{folder, "", untrusted}};
  DIR* directory = fdopendir(file.Number());
  if (directory == nullptr) return {{folder, "", "cannot be listed"}};
  const int searched = file.Release();  // closed with the directory
  std::vector<Plugin> plugins;
  Watch watch;
  for (const std::string& name : PluginsIn(directory)) {
    Plugin plugin{fmt::format("{}/{}", folder, name), name, FileProblem(searched, name)};
    if (plugin.problem.empty()) {
      watch.Blame(plugin.path);
      plugin.problem = Load(plugin.path, root, watch);
      watch.Blame("");
    }
    plugins.push_back(std::move(plugin));
  }
  closedir(directory);
  return plugins;
}

std::vector<Fault> FaultsOf(const std::vector<Plugin>& plugins) {
  std::vector<Fault> faults;
  for (const auto& [path, name, problem] : plugins) {
    if (problem.empty()) continue;
    faults.push_back(
        {FaultKind::Plugin, name.empty() ? fmt::format("plug-in folder \"{}\": {}", path, problem)
                                         : fmt::format("plug-in \"{}\": {}", name, problem)});
  }
  return faults;
}

}  // namespace autocli
