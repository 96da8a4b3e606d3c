#include "lab/model/OldFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "lab/base/File.h"
#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/TraceDaemon.h"

namespace lab {
namespace {

constexpr const char* kRunningMark = "/var/run/koreltraced.running";
/// Follows from the text of the init script that older versions laid out.
constexpr std::string_view kScriptUuid = "fa374a53-133b-8536-80bc-a339e81f834f";
constexpr int kDeepest = 16;
constexpr std::size_t kMostFiles = 1000;
constexpr std::size_t kLongestPath = 1000;

File OpenBelow(int folder, const char* name, int flags) {
  return File(openat(folder, name, flags | O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
}

/// The content, as far as it can be of interest: a byte more than a host's file may have.
std::string ContentOf(const File& file, std::size_t size) {
  std::string content(std::min(size, 16 * kMostFileBytes), '\0');
  const ssize_t count = pread(file.Get(), content.data(), content.size(), 0);
  content.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return content;
}

bool IsUnfinished(std::string_view path) {
  return path.ends_with(".conf.new") || path.ends_with(".conf.daemon");
}

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

class Reader {
 public:
  explicit Reader(OldFiles& found) : found_(found) {}

  void ReadFolder(int folder, const std::string& path, int depth) {
    const std::unique_ptr<DIR, CloseFolder> entries(fdopendir(dup(folder)));
    while (entries && depth < kDeepest) {
      const dirent* entry = readdir(entries.get());
      if (entry == nullptr) return;
      const std::string name = entry->d_name;
      if (name == "." || name == "..") continue;
      const File file = OpenBelow(folder, entry->d_name, 0);
      struct stat status {};
      if (!file.IsOpen() || fstat(file.Get(), &status) != 0) continue;
      const std::string below = path + "/" + name;
      if (S_ISDIR(status.st_mode)) ReadFolder(file.Get(), below, depth + 1);
      if (S_ISREG(status.st_mode)) TakeFile(file, status, below);
    }
  }

 private:
  void TakeFile(const File& file, const struct stat& status, const std::string& path) {
    if (IsUnfinished(path)) return;
    std::string content = ContentOf(file, static_cast<std::size_t>(status.st_size));
    if (path == kRunningMark) {
      found_.isDaemonRunning = true;
    } else if (path == kTraceDaemon) {
      if (DerivedUuid(content) != kScriptUuid) found_.left.push_back(path);
    } else if (path == kTraceLogFile) {
      found_.files.push_back({path, NewestLogLines(content), false});
    } else if (content.size() > kMostFileBytes || path.size() > kLongestPath ||
               found_.files.size() == kMostFiles) {
      found_.left.push_back(path);
    } else {
      found_.files.push_back({path, std::move(content), (status.st_mode & S_IWUSR) == 0});
    }
  }

  OldFiles& found_;
};

}  // namespace

OldFiles ReadOldFiles(const std::string& labPath, const std::string& hostName) {
  OldFiles found;
  if (!IsPlainName(hostName)) return found;
  const File roots = OpenBelow(AT_FDCWD, (labPath + ".root").c_str(), O_DIRECTORY);
  if (!roots.IsOpen()) return found;
  const File root = OpenBelow(roots.Get(), hostName.c_str(), O_DIRECTORY);
  found.isThere = root.IsOpen();
  if (found.isThere) Reader(found).ReadFolder(root.Get(), "", 0);
  return found;
}

}  // namespace lab
