#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace Tovrin::Misc {

/// The text that printf would print. Throws KorelCtlException when the format cannot be rendered.
[[gnu::format(printf, 1, 2)]] std::string StrPrintf(const char* format, ...);

/// The pieces, one after the other.
template <typename... Pieces>
std::string StrCat(const Pieces&... pieces) {
  std::string text;
  (text.append(std::string_view(pieces)), ...);
  return text;
}

/// Where a fixed host path ("/etc/...") is found: the path itself on a real host, another one on a
/// host that lives beside others, where the file of that name is opened with plain streams. Such a
/// path is good for the present command in this process. What is written there may reach the host
/// with the next operation, or when the process ends. Throws KorelCtlException when the path is not
/// absolute or has a ".." in it. A host control library may lack it: its address is null then, and
/// each path is used as it is.
[[gnu::weak]] std::string HostPath(const std::string& path);

}  // namespace Tovrin::Misc
