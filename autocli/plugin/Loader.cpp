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
#include "autocli/contract/Registering.h"
#include "autocli/plugin/Elf.h"
#include "autocli/plugin/Trust.h"
#include "autocli/plugin/Watch.h"

namespace autocli {

using Corvex::AutoCli::Namespace;

namespace {

using EntryPoint = void(std::shared_ptr<Namespace>&);
constexpr const char* kEntryPoint = "AutoCli_RegisterNamespaces";

Trouble FileTrouble(int folder, const std::string& name, const std::string& path, Trust trust) {
  File file;
  Trouble trouble = OpenTrusted(folder, name, path, trust, file);
  if (!trouble.reason.empty()) return trouble;
  const std::string problem = ElfProblem(file.Number());
  return problem.empty() ? Trouble() : Unusable(path, problem);
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

std::vector<Plugin> LoadPlugins(const std::string& folder, const std::shared_ptr<Namespace>& root,
                                Trust trust) {
  File file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (file.Number() < 0) {
    if (errno == ENOENT) return {};
    return {{folder, "", {std::strerror(errno)}}};
  }
  const Trouble untrusted = TrustTrouble(file.Number(), folder, trust);
  if (!untrusted.reason.empty()) return {{folder, "", untrusted}};
  DIR* directory = fdopendir(file.Number());
  if (directory == nullptr) return {{folder, "", {"cannot be listed"}}};
  const int searched = file.Release();  // closed with the directory
  std::vector<Plugin> plugins;
  Watch watch;
  for (const std::string& name : PluginsIn(directory)) {
    const std::string path = fmt::format("{}/{}", folder, name);
    Plugin plugin{path, name, FileTrouble(searched, name, path, trust)};
    if (plugin.trouble.reason.empty()) {
      const Registering registering(name, *root);
      watch.Blame(path);
      const std::string problem = Load(path, root, watch);
      watch.Blame("");
      // For want of memory the file is not to blame.
      if (problem == kOutOfMemory)
        plugin.trouble = {problem};
      else if (!problem.empty())
        plugin.trouble = Unusable(path, problem);
      plugin.clashes = registering.GetClashes();
    }
    plugins.push_back(std::move(plugin));
  }
  closedir(directory);
  return plugins;
}

std::string TroubleText(const Plugin& plugin) {
  const auto& [reason, remedy] = plugin.trouble;
  return fmt::format("{} \"{}\" could not be loaded: {}{}",
                     plugin.name.empty() ? "plug-in folder" : "plug-in", plugin.path, reason,
                     remedy.empty() ? "" : "; try: " + remedy);
}

std::vector<Fault> FaultsOf(const std::vector<Plugin>& plugins) {
  std::vector<Fault> faults;
  for (const Plugin& plugin : plugins) {
    if (!plugin.trouble.reason.empty()) faults.push_back({FaultKind::Notice, TroubleText(plugin)});
  }
  return faults;
}

}  // namespace autocli
