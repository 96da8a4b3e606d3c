#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace Tovrin::Misc {

/// The text that printf would print. Throws KorelCtlException when the format cannot be rendered.
[[gnu::format(printf, 1, 2)]] std::string StrPrintf(const char* format, ...);

/// The pieces, one behind the other.
template <typename... Pieces>
std::string StrCat(const Pieces&... pieces) {
  std::string text;
  (text.append(std::string_view(pieces)), ...);
  return text;
}

/// Where a fixed host path ("/etc/...") is found: the path itself on a real host, a place under the
/// host's own root directory on a host that lives beside others. Throws KorelCtlException when the
/// path is not absolute or has a ".." in it.
std::string HostPath(const std::string& path);

}  // namespace Tovrin::Misc
