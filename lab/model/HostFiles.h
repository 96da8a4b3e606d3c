#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

namespace lab {

/// A file of a lab host. It is kept in the lab alone, and is no file of the machine.
struct HostFile {
  std::string path;     ///< absolute, without ".." in it
  std::string content;  ///< at most kMostFileBytes
  bool isReadOnly = false;
};

inline constexpr std::size_t kMostFileBytes = 64 << 10;

/// Throws KorelCtlException when the path is relative, has a ".." or a NUL in it, ends with a
/// slash, or is longer than 1,000 bytes.
void CheckHostPath(const std::string& path);

/// By path.
std::vector<HostFile> FilesOf(Store& store, const Host& host);
/// Throws KorelCtlException: the host has no file of that path, and how to see those it has.
[[noreturn]] void FailNoFile(const Host& host, const std::string& path);
std::optional<HostFile> FindFile(Store& store, const Host& host, const std::string& path);
/// Makes the file, or another one of it. Throws KorelCtlException when the path is not one for a
/// host's file or the content is too large.
void PutFile(Store& store, const Host& host, const HostFile& file);
/// Gives a file that the host has another content, of at most kMostFileBytes; one that it has no
/// longer stays away, as a file does that is removed while it is open.
void SetContent(Store& store, const Host& host, const std::string& path,
                const std::string& content);
/// Throws KorelCtlException when the host has no file of that path.
void RemoveFile(Store& store, const Host& host, const std::string& path);

}  // namespace lab
