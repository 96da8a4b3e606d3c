#include "autocli/tools/Paths.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>

namespace autocli {

std::vector<std::string> PathsFrom(const std::string& begun, bool onlyFolders) {
  // npos + 1 is 0, where a path without a slash begins.
  const std::string folder = begun.substr(0, begun.rfind('/') + 1);
  const std::string name = begun.substr(folder.size());
  std::vector<std::string> paths;
  DIR* directory = opendir(folder.empty() ? "." : folder.c_str());
  if (directory == nullptr) return paths;
  while (const dirent* entry = readdir(directory)) {
    const std::string found = entry->d_name;
    if (!found.starts_with(name) || found == "." || found == "..") continue;
    if (found.starts_with('.') && name.empty()) continue;
    std::string path = folder + found;
    struct stat state {};
    const bool isFolder = stat(path.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
    if (isFolder) path += '/';
    if (isFolder || !onlyFolders) paths.push_back(std::move(path));
  }
  closedir(directory);
  std::ranges::sort(paths);
  return paths;
}

}  // namespace autocli
