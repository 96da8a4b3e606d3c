#include "autocli/plugin/Trust.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace autocli {

std::string TrustProblem(int file) {
  struct stat state {};
  if (fstat(file, &state) != 0) return std::strerror(errno);
  if (state.st_uid != 0 && state.st_uid != geteuid()) {
    return "belongs to neither root nor the user";
  }
  if ((state.st_mode & (S_IWGRP | S_IWOTH)) != 0) return "writable by group or others";
  return "";
}

std::string OpenTrusted(int folder, const std::string& name, File& file) {
  struct stat state {};
  if (fstatat(folder, name.c_str(), &state, AT_SYMLINK_NOFOLLOW) != 0) {
    return std::strerror(errno);
  }
  // Before it is opened, for opening a pipe or a device can have effects of its own.
  if (!S_ISREG(state.st_mode)) return "no regular file";
  file = File(openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  if (file.Number() < 0) return std::strerror(errno);
  return TrustProblem(file.Number());
}

}  // namespace autocli
