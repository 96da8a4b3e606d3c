#pragma once

#include <string>
#include <vector>

#include "lab/model/HostFiles.h"

namespace lab {

/// What an older version kept of a host's files in a folder beside the lab: FILE.root/HOST.
struct OldFiles {
  bool isThere = false;
  bool isDaemonRunning = false;
  std::vector<HostFile> files;  ///< the regular ones; init script and unfinished ones left out
  /// Paths of what cannot be taken over: an init script that somebody changed, a file larger than
  /// 64 KiB, whatever is beyond 1,000 files.
  std::vector<std::string> left;
};

/// Reads the folder of the host of that name. No link is followed, and nothing is changed.
OldFiles ReadOldFiles(const std::string& labPath, const std::string& hostName);

}  // namespace lab
