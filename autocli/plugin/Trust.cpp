#include "autocli/plugin/Trust.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "autocli/base/ShellWord.h"

namespace autocli {

namespace {

/// A command on the path, which is a word for a shell.
std::string Command(const char* beginning, const std::string& path) {
  std::string command = beginning;
  AppendShellWord(command, path);
  return command;
}

}  // namespace

Trouble Unusable(const std::string& path, const std::string& reason) {
  std::string away = Command("mv ", path) + " ";
  AppendShellWord(away, path + ".off");
  return {reason, away};
}

Trouble TrustTrouble(int file, const std::string& path, Trust trust) {
  if (trust == Trust::Anybody) return {};
  struct stat state {};
  if (fstat(file, &state) != 0) return {std::strerror(errno)};
  if (state.st_uid != 0 && state.st_uid != geteuid()) {
    return {"belongs to neither root nor the user", Command("chown root ", path)};
  }
  if ((state.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    return {"writable by group or others", Command("chmod go-w ", path)};
  }
  return {};
}

Trouble OpenTrusted(int folder, const std::string& name, const std::string& path, Trust trust,
                    File& file) {
  struct stat state {};
  if (fstatat(folder, name.c_str(), &state, AT_SYMLINK_NOFOLLOW) != 0) {
    return {std::strerror(errno)};
  }
  // Before it is opened, for opening a pipe or a device can have effects of its own.
  if (!S_ISREG(state.st_mode)) return Unusable(path, "no regular file");
  file = File(openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  if (file.Number() < 0) return {std::strerror(errno)};
  return TrustTrouble(file.Number(), path, trust);
}

}  // namespace autocli
